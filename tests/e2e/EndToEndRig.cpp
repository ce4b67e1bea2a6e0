#include "EndToEndRig.h"

#include "base/common/HostTime.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <csignal>

namespace kestrum::test {

namespace {

void endProcess(std::unique_ptr<QProcess>& process, int signalNumber = SIGTERM) {
    if (!process) return;
    if (process->state() != QProcess::NotRunning) {
        ::kill(static_cast<pid_t>(process->processId()), signalNumber);
        if (!process->waitForFinished(15000)) {
            process->kill();
            process->waitForFinished(3000);
        }
    }
    process.reset();
}

bool runTool(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished(10000) && process.exitCode() == 0;
}

}  // namespace

EndToEndRig::~EndToEndRig() {
    endProcess(game_);
    endProcess(otherWindow_);
    endProcess(kestrum_);
    endProcess(tray_);
}

bool EndToEndRig::start() {
    if (!display_.start() || !display_.startWindowManager()) {
        failure_ = display_.failure();
        return false;
    }
    if (!sound_.start()) {
        failure_ = sound_.failure();
        return false;
    }
    // A tray, as a user's desktop has: Kestrum's icon goes there and no window of Kestrum's opens (without
    // one its panel would open as a window at launch and take the focus from the game).
    if (!QStandardPaths::findExecutable(QStringLiteral("trayer")).isEmpty()) {
        tray_ = std::make_unique<QProcess>();
        tray_->start(QStringLiteral("trayer"), {QStringLiteral("--edge"), QStringLiteral("top"),
                                                QStringLiteral("--align"), QStringLiteral("right")});
        const bool trayShown = waitUntil(
            [] {
                return runTool(QStringLiteral("xdotool"),
                               {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                QStringLiteral("--class"), QStringLiteral("trayer")});
            },
            10000);
        if (!trayShown) {
            failure_ = QStringLiteral("trayer did not show");
            return false;
        }
    }
    // The test programs share one home: earlier tests' recordings are not this run's.
    moviesAtStart_ = QDir(recordingsFolder()).entryList({QStringLiteral("*.mov")}, QDir::Files);
    // The programs draw on the private X server, whatever platform this test program itself uses.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    childEnvironment_ = environment;
    kestrum_ = std::make_unique<QProcess>();
    kestrum_->setProcessEnvironment(childEnvironment_);
    kestrum_->setProcessChannelMode(QProcess::MergedChannels);
    QObject::connect(kestrum_.get(), &QProcess::readyReadStandardOutput, [this] { collectKestrumOutput(); });
    kestrum_->start(QStringLiteral(KESTRUM_BINARY_PATH), {});
    if (!waitForKestrumLine(QStringLiteral("Kestrum is running"), 20000)) {
        failure_ = QStringLiteral("kestrum did not start: ") + kestrumOutput_.join(QLatin1Char('\n'));
        return false;
    }
    return true;
}

void EndToEndRig::collectKestrumOutput() {
    partialLine_ += kestrum_->readAllStandardOutput();
    qsizetype end = 0;
    while ((end = partialLine_.indexOf('\n')) >= 0) {
        kestrumOutput_ << QString::fromUtf8(partialLine_.left(end));
        partialLine_.remove(0, end + 1);
    }
}

bool EndToEndRig::startGame(const QString& script, const QStringList& extraArguments) {
    game_ = std::make_unique<QProcess>();
    game_->setProcessEnvironment(childEnvironment_);
    game_->setProcessChannelMode(QProcess::MergedChannels);
    QObject::connect(game_.get(), &QProcess::readyReadStandardOutput,
                     [this] { gameOutput_ += QString::fromUtf8(game_->readAllStandardOutput()); });
    game_->start(QStringLiteral(KESTRUM_SIMULATOR_LAUNCHER),
                 QStringList{QStringLiteral("--script"), script} + extraArguments);
    return waitUntil(
        [&] {
            gameOutput_ += QString::fromUtf8(game_->readAllStandardOutput());
            return game_->state() == QProcess::Running &&
                   gameOutput_.contains(QStringLiteral("listening on"));
        },
        20000);
}

std::optional<qint64> EndToEndRig::waitForGameEnd(int timeoutMs) {
    const bool ended = waitUntil([&] { return game_->state() == QProcess::NotRunning; }, timeoutMs);
    if (!ended) return std::nullopt;
    return hostTimeNow();
}

void EndToEndRig::killGame() {
    endProcess(game_, SIGKILL);
}

qint64 EndToEndRig::gameProcessId() const {
    return game_ ? game_->processId() : 0;
}

bool EndToEndRig::waitForKestrumLine(const QString& text, int timeoutMs) {
    return waitUntil(
        [&] {
            collectKestrumOutput();
            return std::any_of(kestrumOutput_.begin(), kestrumOutput_.end(),
                               [&](const QString& line) { return line.contains(text); });
        },
        timeoutMs);
}

QString EndToEndRig::recordingsFolder() const {
    return QStandardPaths::writableLocation(QStandardPaths::MoviesLocation) + QStringLiteral("/Kestrum");
}

std::optional<QString> EndToEndRig::waitForSavedRecording(int timeoutMs) {
    QString movie;
    const bool saved = waitUntil(
        [&] {
            const QStringList movies =
                QDir(recordingsFolder()).entryList({QStringLiteral("*.mov")}, QDir::Files);
            const auto fresh = std::find_if(movies.begin(), movies.end(), [&](const QString& name) {
                return !moviesAtStart_.contains(name);
            });
            if (fresh == movies.end()) return false;
            movie = recordingsFolder() + QLatin1Char('/') + *fresh;
            return QFile::exists(movie.chopped(3) + QStringLiteral("json"));
        },
        timeoutMs);
    return saved ? std::optional(movie) : std::nullopt;
}

bool EndToEndRig::stopKestrum(int timeoutMs) {
    ::kill(static_cast<pid_t>(kestrum_->processId()), SIGTERM);
    const bool ended = waitUntil([&] { return kestrum_->state() == QProcess::NotRunning; }, timeoutMs);
    collectKestrumOutput();
    return ended && kestrum_->exitStatus() == QProcess::NormalExit && kestrum_->exitCode() == 0;
}

QStringList EndToEndRig::captureLogMessages() const {
    QFile file(testStateDirectory() + QStringLiteral("/Kestrum/Logs/kestrum_system.log"));
    if (!file.open(QIODevice::ReadOnly)) return {};
    static const QRegularExpression prefix(QStringLiteral("^\\[[^\\]]*\\] \\[[A-Z]+\\] \\[Capture\\] "));
    QStringList messages;
    for (const QString& line :
         QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        messages << QString(line).remove(prefix);
    }
    return messages;
}

bool EndToEndRig::activateOtherWindow() {
    if (!otherWindow_) {
        otherWindow_ = std::make_unique<QProcess>();
        otherWindow_->setProcessEnvironment(childEnvironment_);
        otherWindow_->start(QStringLiteral("xmessage"),
                            {QStringLiteral("-name"), QStringLiteral("kestrum-e2e-other"),
                             QStringLiteral("Another application")});
        if (!waitUntil(
                [] {
                    return runTool(
                        QStringLiteral("xdotool"),
                        {QStringLiteral("search"), QStringLiteral("--class"), QStringLiteral("Xmessage")});
                },
                10000)) {
            return false;
        }
    }
    return runTool(
        QStringLiteral("bash"),
        {QStringLiteral("-c"),
         QStringLiteral("xdotool search --class Xmessage | head -1 | xargs xdotool windowactivate")});
}

bool EndToEndRig::activateGameWindow() {
    return runTool(
        QStringLiteral("bash"),
        {QStringLiteral("-c"), QStringLiteral("xdotool search --onlyvisible --name 'League of Legends' | "
                                              "head -1 | xargs xdotool windowactivate")});
}

std::optional<QImage> movieFrameAt(const QString& moviePath, double seconds) {
    QTemporaryDir folder;
    const QString frame = folder.path() + QStringLiteral("/frame.png");
    QProcess ffmpeg;
    ffmpeg.start(QStringLiteral("ffmpeg"),
                 {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-ss"),
                  QString::number(seconds, 'f', 3), QStringLiteral("-i"), moviePath,
                  QStringLiteral("-frames:v"), QStringLiteral("1"), frame});
    if (!ffmpeg.waitForFinished(30000) || ffmpeg.exitCode() != 0) return std::nullopt;
    QImage image(frame);
    if (image.isNull()) return std::nullopt;
    return image;
}

}  // namespace kestrum::test
