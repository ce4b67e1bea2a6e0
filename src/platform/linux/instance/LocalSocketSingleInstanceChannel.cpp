#include "platform/linux/instance/LocalSocketSingleInstanceChannel.h"

#include "base/log/CaptureLog.h"

#include <QCryptographicHash>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QLockFile>
#include <QStandardPaths>

namespace kestrum {

namespace {

constexpr int kLockTimeoutMs = 5000;
const QByteArray kAcknowledgement = QByteArrayLiteral("ok\n");

}  // namespace

LocalSocketSingleInstanceChannel::LocalSocketSingleInstanceChannel(QString socketPath, int answerTimeoutMs,
                                                                   QObject* parent)
    : QObject(parent),
      socketPath_(socketPath.isEmpty() ? defaultSocketPath() : std::move(socketPath)),
      answerTimeoutMs_(answerTimeoutMs),
      server_(this) {
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&server_, &QLocalServer::newConnection, this,
            &LocalSocketSingleInstanceChannel::acceptConnections);
}

LocalSocketSingleInstanceChannel::~LocalSocketSingleInstanceChannel() {
    server_.close();  // removes the socket file: the next launch listens at once
}

QString LocalSocketSingleInstanceChannel::defaultSocketPath() {
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
           QStringLiteral("/kestrum-instance");
}

SingleInstanceChannel::Outcome LocalSocketSingleInstanceChannel::claim(const Request& request) {
    QDir().mkpath(QFileInfo(socketPath_).absolutePath());
    QLockFile lock(socketPath_ + QStringLiteral(".lock"));
    if (!lock.tryLock(kLockTimeoutMs)) {
        logCaptureError(QStringLiteral("Could not take the single-instance lock %1 (error %2).")
                            .arg(socketPath_ + QStringLiteral(".lock"))
                            .arg(static_cast<int>(lock.error())));
        return Outcome::failed;
    }
    if (forward(request)) return Outcome::forwarded;
    // Nobody answered: whatever is left at the path belongs to no live instance.
    QLocalServer::removeServer(socketPath_);
    if (!listen()) return Outcome::failed;
    return Outcome::listening;
}

Subscription LocalSocketSingleInstanceChannel::observeRequests(Handler handler) {
    return handlers_.add(std::move(handler));
}

bool LocalSocketSingleInstanceChannel::forward(const Request& request) const {
    QLocalSocket socket;
    socket.connectToServer(socketPath_);
    if (!socket.waitForConnected(answerTimeoutMs_)) return false;
    socket.write(encodeRequest(request));
    if (!socket.waitForBytesWritten(answerTimeoutMs_)) return false;
    QByteArray answer;
    while (!answer.contains('\n')) {
        if (!socket.waitForReadyRead(answerTimeoutMs_)) return false;
        answer += socket.readAll();
    }
    return answer.startsWith(kAcknowledgement);
}

bool LocalSocketSingleInstanceChannel::listen() {
    if (server_.listen(socketPath_)) return true;
    logCaptureError(QStringLiteral("Could not listen for other launches of Kestrum at %1: %2")
                        .arg(socketPath_, server_.errorString()));
    return false;
}

void LocalSocketSingleInstanceChannel::acceptConnections() {
    while (QLocalSocket* socket = server_.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
            if (!socket->canReadLine()) {
                if (socket->bytesAvailable() > kMaximumRequestBytes) socket->abort();
                return;
            }
            const std::optional<Request> request = decodeRequest(socket->readLine(kMaximumRequestBytes));
            if (!request) {
                socket->abort();  // not a launch of ours: no answer, no action
                return;
            }
            socket->write(kAcknowledgement);
            socket->flush();
            socket->disconnectFromServer();
            handlers_.deliver(*request);
        });
    }
}

namespace {

QString requestName(SingleInstanceChannel::Request::Kind kind) {
    using Kind = SingleInstanceChannel::Request::Kind;
    switch (kind) {
        case Kind::showDashboard:
            return QStringLiteral("showDashboard");
        case Kind::startLeagueShare:
            return QStringLiteral("startLeagueShare");
    }
    return {};
}

}  // namespace

QByteArray LocalSocketSingleInstanceChannel::encodeRequest(const Request& request) {
    const ActivationToken& token = request.token;
    QJsonObject object{{QStringLiteral("request"), requestName(request.kind)},
                       {QStringLiteral("startupID"), token.startupID}};
    if (token.eventTimeMs)
        object.insert(QStringLiteral("eventTimeMs"), static_cast<qint64>(*token.eventTimeMs));
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

std::optional<SingleInstanceChannel::Request> LocalSocketSingleInstanceChannel::decodeRequest(
    const QByteArray& line) {
    if (!line.endsWith('\n')) return std::nullopt;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(line, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject()) return std::nullopt;
    const QJsonObject object = document.object();
    Request request;
    const QJsonValue name = object.value(QStringLiteral("request"));
    if (name == requestName(Request::Kind::startLeagueShare)) {
        request.kind = Request::Kind::startLeagueShare;
    } else if (name != requestName(Request::Kind::showDashboard)) {
        return std::nullopt;
    }
    const QJsonValue startupID = object.value(QStringLiteral("startupID"));
    if (!startupID.isString() && !startupID.isUndefined()) return std::nullopt;
    ActivationToken& token = request.token;
    token.startupID = startupID.toString();
    const QJsonValue eventTime = object.value(QStringLiteral("eventTimeMs"));
    if (!eventTime.isUndefined()) {
        const double time = eventTime.toDouble(-1);
        if (time < 0 || time > 4294967295.0 || time != static_cast<double>(static_cast<qint64>(time))) {
            return std::nullopt;
        }
        token.eventTimeMs = static_cast<quint32>(time);
    }
    return request;
}

}  // namespace kestrum
