#include "SimulatorServer.h"

#include "ServiceAnswers.h"

#include <QHostAddress>
#include <QSslServer>
#include <QSslSocket>
#include <QTcpSocket>

#include <algorithm>

namespace kestrum::simulator {

namespace {

QByteArray reasonPhrase(int status) {
    switch (status) {
        case 200:
            return "OK";
        case 404:
            return "Not Found";
        case 500:
            return "Internal Server Error";
        default:
            return "Status";
    }
}

}  // namespace

SimulatorServer::SimulatorServer(AnswerSource& source, FaultSchedule faults,
                                 std::optional<QSslConfiguration> tls, quint16 port)
    : source_(source), faults_(std::move(faults)), port_(port) {
    if (tls) {
        auto server = std::make_unique<QSslServer>();
        server->setSslConfiguration(*tls);
        server_ = std::move(server);
    } else {
        server_ = std::make_unique<QTcpServer>();
    }
    QObject::connect(server_.get(), &QTcpServer::pendingConnectionAvailable, this,
                     &SimulatorServer::acceptConnections);
    portTimer_.setInterval(50);
    QObject::connect(&portTimer_, &QTimer::timeout, this, &SimulatorServer::applyPortSchedule);
}

bool SimulatorServer::start(QString* errorMessage) {
    sinceStart_.start();
    if (!faults_.portClosedAt(0) && !server_->listen(QHostAddress::LocalHost, port_)) {
        if (errorMessage) *errorMessage = server_->errorString();
        return false;
    }
    port_ = server_->isListening() ? server_->serverPort() : port_;
    portTimer_.start();
    return true;
}

double SimulatorServer::secondsSinceStart() const {
    return static_cast<double>(sinceStart_.elapsed()) / 1000.0;
}

void SimulatorServer::applyPortSchedule() {
    const bool closed = faults_.portClosedAt(secondsSinceStart());
    if (closed && server_->isListening()) {
        server_->close();
        for (const auto& socket : connections_) {
            if (socket) socket->abort();
        }
        connections_.clear();
    } else if (!closed && !server_->isListening()) {
        server_->listen(QHostAddress::LocalHost, port_);
    }
}

void SimulatorServer::acceptConnections() {
    while (QTcpSocket* socket = server_->nextPendingConnection()) {
        std::erase_if(connections_, [](const QPointer<QTcpSocket>& open) { return open.isNull(); });
        connections_.emplace_back(socket);
        QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        QObject::connect(socket, &QTcpSocket::readyRead, this, [this, socket] { serve(socket); });
        if (socket->bytesAvailable() > 0) serve(socket);
    }
}

void SimulatorServer::serve(QTcpSocket* socket) {
    // The buffer of a partly received request lives on the socket itself.
    QByteArray buffer = socket->property("pending").toByteArray() + socket->readAll();
    for (qsizetype end = buffer.indexOf("\r\n\r\n"); end >= 0; end = buffer.indexOf("\r\n\r\n")) {
        const QByteArray head = buffer.left(end);
        buffer.remove(0, end + 4);
        const QList<QByteArray> requestLine = head.left(head.indexOf("\r\n")).split(' ');
        if (requestLine.size() < 2 || requestLine[0] != "GET") {
            write(socket, {405, QByteArray()});
            continue;
        }
        const QByteArray& target = requestLine[1];
        respond(socket, QString::fromUtf8(target.contains('?') ? target.left(target.indexOf('?')) : target));
    }
    socket->setProperty("pending", buffer);
}

void SimulatorServer::respond(QTcpSocket* socket, const QString& path) {
    const SimulatorAnswer answer = source_.answer(path);
    const auto fault = faults_.faultFor(ServiceAnswers::endpointWord(path), secondsSinceStart());
    if (!fault) return write(socket, answer);
    switch (*fault) {
        case FaultSchedule::Kind::Malformed:
            return write(socket, {200, QByteArrayLiteral("{\"Events\": [{\"EventID\"")});
        case FaultSchedule::Kind::Http500:
            return write(socket, {500, QByteArrayLiteral("{\"errorCode\":\"INTERNAL\"}")});
        case FaultSchedule::Kind::Slow: {
            QTimer::singleShot(kSlowAnswerDelayMs, socket, [this, socket, answer] { write(socket, answer); });
            return;
        }
        case FaultSchedule::Kind::Hang:
        case FaultSchedule::Kind::Closed:
            return;
    }
}

void SimulatorServer::write(QTcpSocket* socket, const SimulatorAnswer& answer) {
    if (socket->state() != QAbstractSocket::ConnectedState) return;
    QByteArray head =
        "HTTP/1.1 " + QByteArray::number(answer.status) + ' ' + reasonPhrase(answer.status) + "\r\n";
    head += "Content-Type: " + answer.contentType + "\r\n";
    head += "Content-Length: " + QByteArray::number(answer.body.size()) + "\r\n";
    head += "Connection: keep-alive\r\n\r\n";
    socket->write(head + answer.body);
}

}  // namespace kestrum::simulator
