#pragma once

#include "AnswerSource.h"
#include "FaultSchedule.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QSslConfiguration>
#include <QTcpServer>
#include <QTimer>

#include <memory>
#include <optional>
#include <vector>

class QTcpSocket;

namespace kestrum::simulator {

// A small HTTP/1.1 responder on 127.0.0.1, over TLS when given a configuration (the game's service) and
// plain otherwise (the art host): GET requests, keep-alive, answers from an AnswerSource with the faults
// of the schedule applied. Main thread.
class SimulatorServer final : public QObject {
    Q_OBJECT

  public:
    static constexpr int kSlowAnswerDelayMs = 3000;

    SimulatorServer(AnswerSource& source, FaultSchedule faults, std::optional<QSslConfiguration> tls,
                    quint16 port);

    // Starts listening; false with the reason when the port cannot be bound.
    bool start(QString* errorMessage);
    quint16 port() const { return port_; }

  private:
    void acceptConnections();
    void serve(QTcpSocket* socket);
    void respond(QTcpSocket* socket, const QString& path);
    void write(QTcpSocket* socket, const SimulatorAnswer& answer);
    void applyPortSchedule();
    double secondsSinceStart() const;

    AnswerSource& source_;
    FaultSchedule faults_;
    quint16 port_;
    std::unique_ptr<QTcpServer> server_;
    QTimer portTimer_;
    QElapsedTimer sinceStart_;
    std::vector<QPointer<QTcpSocket>> connections_;
};

}  // namespace kestrum::simulator
