#pragma once

#include "platform/ports/HandlerList.h"
#include "platform/ports/SingleInstanceChannel.h"

#include <QLocalServer>
#include <QObject>

#include <optional>

namespace kestrum {

// One Kestrum per user and settings profile, over a local socket in the user's runtime folder
// ($XDG_RUNTIME_DIR, private to the user). The first instance listens there; a later launch connects, sends
// one line of JSON
// ({"request":"showDashboard","startupID":"...","eventTimeMs":123}) and waits for "ok". A socket nobody
// listens on (left by an instance that crashed), or an instance that does not answer within the time-out,
// counts as gone: the socket is replaced and this process listens. A lock file beside the socket keeps two
// launches at the same moment from both deciding to listen.
//
// Threads: main thread; `claim` blocks for at most the lock's and the answer's time-outs.
class LocalSocketSingleInstanceChannel final : public QObject, public SingleInstanceChannel {
    Q_OBJECT

  public:
    static constexpr int kAnswerTimeoutMs = 3000;
    // The longest request line accepted; a client that sends more is cut off.
    static constexpr qsizetype kMaximumRequestBytes = 4096;

    // `socketPath` empty: the default path.
    explicit LocalSocketSingleInstanceChannel(QString socketPath = {}, int answerTimeoutMs = kAnswerTimeoutMs,
                                              QObject* parent = nullptr);
    ~LocalSocketSingleInstanceChannel() override;

    Outcome claim(const Request& request) override;
    [[nodiscard]] Subscription observeRequests(Handler handler) override;

    // The runtime folder + "/kestrum-" + a short hash of the settings folder (XDG_CONFIG_HOME).
    static QString defaultSocketPath();

    static QByteArray encodeRequest(const Request& request);
    // Absent for anything but a complete request line.
    static std::optional<Request> decodeRequest(const QByteArray& line);

  private:
    // True when an instance listening at the socket acknowledged the request.
    bool forward(const Request& request) const;
    bool listen();
    void acceptConnections();

    const QString socketPath_;
    const int answerTimeoutMs_;
    QLocalServer server_;  // a child, so that it moves with the channel to another thread
    HandlerList<Request> handlers_;
};

}  // namespace kestrum
