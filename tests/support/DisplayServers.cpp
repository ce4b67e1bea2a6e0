#include "support/DisplayServers.h"

#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>

#include <unistd.h>
#include <cstdlib>

namespace kestrum::test {

namespace {

// Runs a program to its end; true on status 0.
bool runQuietly(const QString& program, const QStringList& arguments, int timeoutMs = 10000) {
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished(timeoutMs) && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

// Polls `condition` every 100 ms for up to `timeoutMs`; the servers come up in their own processes, so
// no event loop is needed meanwhile.
template <class Condition>
bool pollUntil(Condition condition, int timeoutMs) {
    for (int waitedMs = 0;; waitedMs += 100) {
        if (condition()) return true;
        if (waitedMs >= timeoutMs) return false;
        QThread::msleep(100);
    }
}

void terminate(std::unique_ptr<QProcess>& process) {
    if (!process) return;
    process->terminate();
    if (!process->waitForFinished(3000)) {
        process->kill();
        process->waitForFinished(3000);
    }
    process.reset();
}

}  // namespace

XvfbServer::~XvfbServer() {
    stop();
}

bool XvfbServer::start(int width, int height) {
    if (QStandardPaths::findExecutable(QStringLiteral("Xvfb")).isEmpty()) {
        failure_ = QStringLiteral("Xvfb is not installed");
        return false;
    }
    // Xvfb picks a free display number itself and writes it to the file descriptor given.
    int pipeEnds[2];
    if (pipe(pipeEnds) != 0) {
        failure_ = QStringLiteral("no pipe");
        return false;
    }
    server_ = std::make_unique<QProcess>();
    server_->setStandardOutputFile(QProcess::nullDevice());
    server_->setStandardErrorFile(QProcess::nullDevice());
    server_->setChildProcessModifier([writeEnd = pipeEnds[1], readEnd = pipeEnds[0]] {
        close(readEnd);
        dup2(writeEnd, 3);
    });
    server_->start(QStringLiteral("Xvfb"),
                   {QStringLiteral("-displayfd"), QStringLiteral("3"), QStringLiteral("-screen"),
                    QStringLiteral("0"), QStringLiteral("%1x%2x24").arg(width).arg(height),
                    QStringLiteral("-nolisten"), QStringLiteral("tcp"), QStringLiteral("-noreset"),
                    QStringLiteral("+extension"), QStringLiteral("Composite")});
    close(pipeEnds[1]);
    QByteArray number;
    char byte = 0;
    while (read(pipeEnds[0], &byte, 1) == 1 && byte != '\n') number.append(byte);
    close(pipeEnds[0]);
    if (number.isEmpty() || !server_->waitForStarted(1000)) {
        failure_ = QStringLiteral("Xvfb did not start");
        terminate(server_);
        return false;
    }
    displayName_ = QStringLiteral(":") + QString::fromLatin1(number);
    hadPreviousDisplay_ = qEnvironmentVariableIsSet("DISPLAY");
    previousDisplay_ = qgetenv("DISPLAY");
    qputenv("DISPLAY", displayName_.toLatin1());
    return true;
}

bool XvfbServer::startWindowManager() {
    if (QStandardPaths::findExecutable(QStringLiteral("openbox")).isEmpty()) {
        failure_ = QStringLiteral("openbox is not installed");
        return false;
    }
    windowManager_ = std::make_unique<QProcess>();
    windowManager_->setStandardOutputFile(QProcess::nullDevice());
    windowManager_->setStandardErrorFile(QProcess::nullDevice());
    windowManager_->start(QStringLiteral("openbox"), {QStringLiteral("--sm-disable")});
    // The manager has taken the screen once it has set the supporting-window property on the root.
    const bool managed = pollUntil(
        [] {
            QProcess xprop;
            xprop.start(QStringLiteral("xprop"),
                        {QStringLiteral("-root"), QStringLiteral("_NET_SUPPORTING_WM_CHECK")});
            xprop.waitForFinished(2000);
            return xprop.readAllStandardOutput().contains("window id");
        },
        10000);
    if (!managed) failure_ = QStringLiteral("openbox did not manage the screen");
    // The manager publishes its check window a moment before it adopts new windows.
    QThread::msleep(300);
    return managed;
}

void XvfbServer::stop() {
    terminate(windowManager_);
    if (!server_) return;
    terminate(server_);
    if (hadPreviousDisplay_) {
        qputenv("DISPLAY", previousDisplay_);
    } else {
        qunsetenv("DISPLAY");
    }
}

PulseAudioServer::~PulseAudioServer() {
    stop();
}

bool PulseAudioServer::start() {
    if (QStandardPaths::findExecutable(QStringLiteral("pulseaudio")).isEmpty()) {
        failure_ = QStringLiteral("pulseaudio is not installed");
        return false;
    }
    runtimeDirectory_ = QDir::tempPath() + QStringLiteral("/kestrum-pulse-") + QString::number(getpid()) +
                        QLatin1Char('-') + QString::number(reinterpret_cast<quintptr>(this), 16);
    QDir().mkpath(runtimeDirectory_);
    const QString socket = runtimeDirectory_ + QStringLiteral("/native");
    server_ = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtimeDirectory_);
    environment.insert(QStringLiteral("PULSE_RUNTIME_PATH"), runtimeDirectory_);
    server_->setProcessEnvironment(environment);
    server_->setStandardOutputFile(QProcess::nullDevice());
    server_->setStandardErrorFile(QProcess::nullDevice());
    // A server of its own, in the foreground, with no configuration files read: the null sink and
    // source and the socket are all it has.
    server_->start(QStringLiteral("pulseaudio"),
                   {QStringLiteral("--daemonize=no"), QStringLiteral("--exit-idle-time=-1"),
                    QStringLiteral("--system=false"), QStringLiteral("-n"), QStringLiteral("--disallow-exit"),
                    QStringLiteral("--load=module-native-protocol-unix auth-anonymous=1 socket=") + socket,
                    QStringLiteral("--load=module-null-sink sink_name=kestrum_null rate=48000"),
                    QStringLiteral("--load=module-null-source source_name=kestrum_microphone rate=48000"),
                    QStringLiteral("--load=module-always-sink")});
    serverAddress_ = QStringLiteral("unix:") + socket;
    qputenv("PULSE_SERVER", serverAddress_.toLocal8Bit());
    const bool answering =
        pollUntil([] { return runQuietly(QStringLiteral("pactl"), {QStringLiteral("info")}, 2000); }, 10000);
    if (!answering) {
        failure_ = QStringLiteral("pulseaudio did not answer");
        stop();
        return false;
    }
    runQuietly(QStringLiteral("pactl"), {QStringLiteral("set-default-sink"), QStringLiteral("kestrum_null")});
    runQuietly(QStringLiteral("pactl"),
               {QStringLiteral("set-default-source"), QStringLiteral("kestrum_microphone")});
    return true;
}

void PulseAudioServer::stop() {
    terminate(server_);
    if (!runtimeDirectory_.isEmpty()) QDir(runtimeDirectory_).removeRecursively();
    runtimeDirectory_.clear();
    qunsetenv("PULSE_SERVER");
}

}  // namespace kestrum::test
