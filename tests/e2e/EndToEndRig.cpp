#include "EndToEndRig.h"

#include "base/common/HostTime.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <sys/resource.h>
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
    for (auto name = kestrumEnvironment_.keyBegin(); name != kestrumEnvironment_.keyEnd(); ++name)
        environment.remove(*name);
    childEnvironment_ = environment;
    return launchKestrum();
}

void EndToEndRig::setKestrumEnvironment(const QString& name, const QString& value) {
    kestrumEnvironment_.insert(name, value);
}

bool EndToEndRig::launchKestrum() {
    kestrum_ = std::make_unique<QProcess>();
    QProcessEnvironment environment = childEnvironment_;
    for (auto entry = kestrumEnvironment_.cbegin(); entry != kestrumEnvironment_.cend(); ++entry)
        environment.insert(entry.key(), entry.value());
    kestrum_->setProcessEnvironment(environment);
    kestrum_->setProcessChannelMode(QProcess::MergedChannels);
    // Runs in the child between fork and exec; an ignored signal stays ignored across exec.
    if (ignoreFileSizeSignal_) kestrum_->setChildProcessModifier([] { ::signal(SIGXFSZ, SIG_IGN); });
    QObject::connect(kestrum_.get(), &QProcess::readyReadStandardOutput, [this] { collectKestrumOutput(); });
    const qsizetype linesBefore = kestrumOutput_.size();
    kestrum_->start(QStringLiteral(KESTRUM_BINARY_PATH), {});
    const bool running = waitUntil(
        [&] {
            collectKestrumOutput();
            return std::any_of(
                kestrumOutput_.begin() + linesBefore, kestrumOutput_.end(),
                [](const QString& line) { return line.contains(QStringLiteral("Kestrum is running")); });
        },
        20000);
    if (!running) {
        failure_ = QStringLiteral("kestrum did not start: ") + kestrumOutput_.join(QLatin1Char('\n'));
        return false;
    }
    return true;
}

void EndToEndRig::killKestrum() {
    collectKestrumOutput();
    if (kestrum_->state() == QProcess::NotRunning) return;
    ::kill(static_cast<pid_t>(kestrum_->processId()), SIGKILL);
    kestrum_->waitForFinished(10000);
    collectKestrumOutput();
}

bool EndToEndRig::restartKestrum() {
    if (kestrum_ && kestrum_->state() != QProcess::NotRunning) return false;
    return launchKestrum();
}

bool EndToEndRig::limitKestrumFileSize(std::optional<qint64> bytes) {
    // Set on the running process rather than inherited from the start: X's shared-memory frames are
    // files too, sized when the capture starts, and a limit below their size would stop the capture.
    const rlimit limit{bytes ? static_cast<rlim_t>(*bytes) : RLIM_INFINITY, RLIM_INFINITY};
    return ::prlimit(static_cast<pid_t>(kestrum_->processId()), RLIMIT_FSIZE, &limit, nullptr) == 0;
}

void EndToEndRig::collectKestrumOutput() {
    if (!kestrum_) return;
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
    // Not running: its process id reads 0, which kill() would take for this whole process group.
    if (!kestrum_ || kestrum_->state() == QProcess::NotRunning) return false;
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

std::optional<QString> EndToEndRig::runAnotherLaunch(const QStringList& arguments, int timeoutMs) {
    QProcess launch;
    QProcessEnvironment environment = childEnvironment_;
    for (auto entry = kestrumEnvironment_.cbegin(); entry != kestrumEnvironment_.cend(); ++entry)
        environment.insert(entry.key(), entry.value());
    launch.setProcessEnvironment(environment);
    launch.setProcessChannelMode(QProcess::MergedChannels);
    launch.start(QStringLiteral(KESTRUM_BINARY_PATH), arguments);
    if (!launch.waitForFinished(timeoutMs) || launch.exitStatus() != QProcess::NormalExit ||
        launch.exitCode() != 0) {
        launch.kill();
        return std::nullopt;
    }
    return QString::fromUtf8(launch.readAllStandardOutput());
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

std::optional<QJsonObject> probeMovie(const QString& moviePath) {
    QProcess ffprobe;
    ffprobe.start(
        QStringLiteral("ffprobe"),
        {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-print_format"),
         QStringLiteral("json"), QStringLiteral("-show_format"), QStringLiteral("-show_streams"), moviePath});
    if (!ffprobe.waitForFinished(30000) || ffprobe.exitCode() != 0) return std::nullopt;
    return QJsonDocument::fromJson(ffprobe.readAllStandardOutput()).object();
}

std::optional<double> probedDurationSeconds(const QString& moviePath) {
    const std::optional<QJsonObject> probed = probeMovie(moviePath);
    if (!probed) return std::nullopt;
    bool valid = false;
    const double seconds =
        (*probed)[QStringLiteral("format")][QStringLiteral("duration")].toString().toDouble(&valid);
    return valid ? std::optional(seconds) : std::nullopt;
}

std::vector<double> probedStreamDurations(const QString& moviePath) {
    std::vector<double> durations;
    const std::optional<QJsonObject> probed = probeMovie(moviePath);
    if (!probed) return durations;
    for (const QJsonValue stream : (*probed)[QStringLiteral("streams")].toArray())
        durations.push_back(stream[QStringLiteral("duration")].toString().toDouble());
    return durations;
}

std::optional<double> timelineStartSeconds(const QStringList& kestrumOutput) {
    static const QRegularExpression line(QStringLiteral("timeline starting at relative ([0-9.]+)s"));
    std::optional<double> latest;
    for (const QString& text : kestrumOutput) {
        const auto match = line.match(text);
        if (match.hasMatch()) latest = match.captured(1).toDouble();
    }
    return latest;
}

}  // namespace kestrum::test
