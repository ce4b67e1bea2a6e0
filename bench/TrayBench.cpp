// The tray application as it waits for a game: how long from launch until its icon is in the tray, and
// what it costs while it waits with the tray only (no window open), with 300 other processes running and
// 1,000 recordings in its folder. kestrum runs on a private X server with a real X11 tray (trayer), on the
// fake capture adapters, in a private home. Then the review window on those 1,000 recordings: from the
// request (what a later launch, or the panel's "Open Dashboard", hands the running instance) until the
// window is mapped, the first time and again after it was closed. Prints `figure <name> <value> <unit>`.
//
// KESTRUM_BENCH_IDLE_SECONDS sets the idle measure's length (default 20; the target is stated over 300).
#include "platform/linux/instance/LocalSocketSingleInstanceChannel.h"
#include "support/DisplayServers.h"
#include "support/X11Desktop.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>

#include <unistd.h>

#include <cstdio>
#include <memory>
#include <vector>

namespace {

void figure(const char* name, double value, const char* unit) {
    std::printf("figure %s %.4f %s\n", name, value, unit);
    std::fflush(stdout);
}

// User plus system CPU time of `pid` so far, in clock ticks; -1 when unreadable.
long long cpuTicks(qint64 pid) {
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly)) return -1;
    const QByteArray line = stat.readAll();
    // The fields after the command (which may hold spaces) start after its closing parenthesis.
    const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    if (fields.size() < 13) return -1;
    return fields[11].toLongLong() + fields[12].toLongLong();  // utime, stime
}

double residentMegabytes(qint64 pid) {
    QFile status(QStringLiteral("/proc/%1/status").arg(pid));
    if (!status.open(QIODevice::ReadOnly)) return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:")) return line.mid(6).trimmed().split(' ').value(0).toDouble() / 1024.0;
    }
    return -1;
}

// `count` recordings as the recorder names them, one game every 9 hours back from now: a few real ones
// made by kestrum-seed-library (short movies beside synthetic games' documents), each linked under many
// names, so that the library reads real movies and documents without writing 1,000 movies.
bool fillRecordingsFolder(const QString& home, int count) {
    const QString folder = home + QStringLiteral("/Videos/Kestrum");
    const QString seeds = home + QStringLiteral("/seeds");
    QProcess seed;
    seed.start(QStringLiteral(KESTRUM_SEED_LIBRARY_PATH), {seeds, QStringLiteral("3")});
    if (!seed.waitForFinished(300000) || seed.exitCode() != 0 || !QDir().mkpath(folder)) return false;
    const QStringList movies = QDir(seeds).entryList({QStringLiteral("*_CLASSIC_*.mov")}, QDir::Files);
    if (movies.isEmpty()) return false;
    const QDateTime newest = QDateTime::currentDateTime();
    for (int index = 0; index < count; ++index) {
        const QString source = seeds + QLatin1Char('/') + movies.at(index % movies.size());
        const QString target =
            folder + QLatin1Char('/') +
            newest.addSecs(-index * 9 * 3600).toString(QStringLiteral("yyyy-MM-dd_HH-mm-ss")) +
            source.mid(source.indexOf(QStringLiteral("_CLASSIC_")));
        if (::link(qPrintable(source), qPrintable(target)) != 0 ||
            ::link(qPrintable(source.chopped(3) + QStringLiteral("json")),
                   qPrintable(target.chopped(3) + QStringLiteral("json"))) != 0) {
            return false;
        }
    }
    return true;
}

// From the request to show the review window, handed to the running instance over its channel, until a
// window of the review window's size is mapped (polled every few milliseconds through xdotool, which adds
// up to about 10 ms); -1 when it did not show within 20 s.
double reviewWindowShownMilliseconds() {
    kestrum::LocalSocketSingleInstanceChannel launch;
    QElapsedTimer elapsed;
    elapsed.start();
    if (launch.claim({}) != kestrum::SingleInstanceChannel::Outcome::forwarded) return -1;
    while (elapsed.elapsed() < 20000) {
        if (kestrum::test::visibleWindow(QStringLiteral("^Kestrum$")).width() >= 1050) {
            return static_cast<double>(elapsed.elapsed());
        }
        QThread::msleep(2);
    }
    return -1;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    for (const char* tool : {"Xvfb", "openbox", "trayer"}) {
        if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty()) {
            std::fprintf(stderr, "kestrum-bench-tray needs %s (scripts/install-deps.sh)\n", tool);
            return 1;
        }
    }
    QTemporaryDir home(QDir::tempPath() + QStringLiteral("/kestrum-bench-tray-XXXXXX"));
    kestrum::test::XvfbServer display;
    if (!home.isValid() || !display.start(1920, 1080) || !display.startWindowManager()) {
        std::fprintf(stderr, "no private X server: %s\n", qPrintable(display.failure()));
        return 1;
    }
    QProcess tray;
    tray.start(QStringLiteral("trayer"),
               {QStringLiteral("--edge"), QStringLiteral("top"), QStringLiteral("--align"),
                QStringLiteral("right"), QStringLiteral("--SetDockType"), QStringLiteral("true")});
    QThread::msleep(1000);
    if (!fillRecordingsFolder(home.path(), 1000)) {
        std::fprintf(stderr, "could not make the 1,000 recordings\n");
        return 1;
    }
    std::vector<std::unique_ptr<QProcess>> others;
    for (int index = 0; index < 300; ++index) {
        others.push_back(std::make_unique<QProcess>());
        others.back()->start(QStringLiteral("sleep"), {QStringLiteral("100000")});
    }

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home.path());
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home.path() + QStringLiteral("/.config"));
    environment.insert(QStringLiteral("XDG_CACHE_HOME"), home.path() + QStringLiteral("/.cache"));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home.path());
    environment.insert(QStringLiteral("KESTRUM_PLATFORM"), QStringLiteral("fake"));
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    QProcess kestrum;
    kestrum.setProcessEnvironment(environment);
    QByteArray output;
    QElapsedTimer sinceLaunch;
    sinceLaunch.start();
    kestrum.start(QStringLiteral(KESTRUM_BINARY_PATH), {});
    while (!output.contains("Kestrum is in the tray") && sinceLaunch.elapsed() < 20000 &&
           kestrum.state() != QProcess::NotRunning) {
        kestrum.waitForReadyRead(50);
        output += kestrum.readAllStandardOutput();
    }
    if (!output.contains("Kestrum is in the tray")) {
        std::fprintf(stderr, "kestrum did not reach the tray:\n%s\n", output.constData());
        return 1;
    }
    figure("launch_to_tray_icon", static_cast<double>(sinceLaunch.elapsed()), "ms");

    // Settle, then measure the wait for a game.
    QThread::msleep(3000);
    const int idleSeconds = qEnvironmentVariableIntValue("KESTRUM_BENCH_IDLE_SECONDS") > 0
                                ? qEnvironmentVariableIntValue("KESTRUM_BENCH_IDLE_SECONDS")
                                : 20;
    const long long ticksBefore = cpuTicks(kestrum.processId());
    QThread::sleep(static_cast<unsigned long>(idleSeconds));
    const long long ticksAfter = cpuTicks(kestrum.processId());
    const double ticksPerSecond = static_cast<double>(sysconf(_SC_CLK_TCK));
    figure("idle_tray_cpu",
           100.0 * static_cast<double>(ticksAfter - ticksBefore) / ticksPerSecond / idleSeconds,
           "percent_of_one_core");
    figure("idle_tray_resident_memory", residentMegabytes(kestrum.processId()), "MB");

    // The running instance's channel lives in its runtime folder, which this process now shares.
    qputenv("XDG_RUNTIME_DIR", home.path().toLocal8Bit());
    figure("review_window_first_open_1000_recordings", reviewWindowShownMilliseconds(), "ms");
    QThread::msleep(3000);
    // openbox closes the focused window on Alt+F4, as a user would; the review window hides and is kept.
    kestrum::test::xdotool({QStringLiteral("key"), QStringLiteral("alt+F4")});
    QThread::msleep(1500);
    if (kestrum::test::visibleWindow(QStringLiteral("^Kestrum$")).width() >= 1050) {
        std::fprintf(stderr, "the review window did not close\n");
    } else {
        figure("review_window_open_again", reviewWindowShownMilliseconds(), "ms");
    }
    figure("review_window_resident_memory", residentMegabytes(kestrum.processId()), "MB");

    kestrum.terminate();
    if (!kestrum.waitForFinished(20000)) {
        std::fprintf(stderr, "kestrum did not quit within 20 s of SIGTERM:\n%s\n",
                     (output + kestrum.readAllStandardOutput()).constData());
        kestrum.kill();
        kestrum.waitForFinished(5000);
    }
    tray.terminate();
    tray.waitForFinished(5000);
    for (auto& other : others) other->kill();
    for (auto& other : others) other->waitForFinished(1000);
    return 0;
}
