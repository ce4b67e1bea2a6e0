// The X11 window stream under a private Xvfb: CPU seconds per second of streaming for the capture thread,
// the whole process and the X server (which does the copy into shared memory), and the spread of the
// intervals between delivered frames. A painter thread redraws the window at the stream's rate, as a game
// would, so every frame is a changed one. Prints `figure <name> <value> <unit>` lines.
#include "platform/linux/x11/X11WindowStream.h"
#include "support/DisplayServers.h"

#include <QCoreApplication>
#include <QCoroTask>
#include <QDir>
#include <QFile>
#include <QThread>

#include <xcb/xcb.h>

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>
#include <vector>

namespace {

using namespace kestrum;

constexpr double kStreamSeconds = 6.0;

// utime + stime of a /proc stat file, in seconds; 0 when it cannot be read.
double cpuSecondsOf(const QString& statPath) {
    QFile file(statPath);
    if (!file.open(QIODevice::ReadOnly)) return 0;
    const QByteArray stat = file.readAll();
    // The fields after the command name, which may hold blanks, start after its closing parenthesis.
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    if (fields.size() < 13) return 0;
    return (fields[11].toDouble() + fields[12].toDouble()) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

// The threads of this process whose name is `name`, by their stat files.
QStringList threadStats(const QString& name) {
    QStringList stats;
    const QString tasks = QStringLiteral("/proc/self/task");
    for (const QString& task : QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile comm(tasks + QLatin1Char('/') + task + QStringLiteral("/comm"));
        if (comm.open(QIODevice::ReadOnly) && QString::fromUtf8(comm.readAll()).trimmed() == name) {
            stats << tasks + QLatin1Char('/') + task + QStringLiteral("/stat");
        }
    }
    return stats;
}

// CPU seconds of every child process of this one (the X server).
double childrenCpuSeconds() {
    double seconds = 0;
    const QString tasks = QStringLiteral("/proc/self/task");
    for (const QString& task : QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile children(tasks + QLatin1Char('/') + task + QStringLiteral("/children"));
        if (!children.open(QIODevice::ReadOnly)) continue;
        for (const QByteArray& pid : children.readAll().split(' ')) {
            if (!pid.trimmed().isEmpty()) {
                seconds +=
                    cpuSecondsOf(QStringLiteral("/proc/%1/stat").arg(QString::fromLatin1(pid.trimmed())));
            }
        }
    }
    return seconds;
}

double processCpuSeconds() {
    return cpuSecondsOf(QStringLiteral("/proc/self/stat"));
}

// Keeps the presentation times of the frames delivered.
class TimeRecorder final : public CaptureStreamOutput {
  public:
    void didOutputSample(CaptureSample& sample, CaptureOutputType) override {
        if (!sample.imageBuffer) return;
        const std::lock_guard lock(mutex_);
        timesNs_.push_back(sample.presentationTimeNs);
    }
    std::vector<HostTimeNs> times() const {
        const std::lock_guard lock(mutex_);
        return timesNs_;
    }

  private:
    mutable std::mutex mutex_;
    std::vector<HostTimeNs> timesNs_;
};

// A window redrawn in alternating colours `frameRate` times a second from a thread of its own.
class PaintedWindow {
  public:
    PaintedWindow(int width, int height, int frameRate)
        : width_(width), height_(height), frameRate_(frameRate) {
        connection_ = xcb_connect(nullptr, nullptr);
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
        window_ = xcb_generate_id(connection_);
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screen->root, 0, 0,
                          static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
        context_ = xcb_generate_id(connection_);
        xcb_create_gc(connection_, context_, window_, 0, nullptr);
        xcb_map_window(connection_, window_);
        std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
        painter_ = std::thread([this] { paint(); });
    }
    ~PaintedWindow() {
        painting_ = false;
        painter_.join();
        xcb_disconnect(connection_);
    }
    std::uint32_t id() const { return window_; }

  private:
    void paint() {
        const auto interval = std::chrono::nanoseconds(1'000'000'000 / frameRate_);
        auto next = std::chrono::steady_clock::now();
        for (std::uint32_t frame = 0; painting_; ++frame) {
            const std::uint32_t colour = frame % 2 ? 0x2060A0 : 0xA06020;
            xcb_change_gc(connection_, context_, XCB_GC_FOREGROUND, &colour);
            const xcb_rectangle_t all{0, 0, static_cast<std::uint16_t>(width_),
                                      static_cast<std::uint16_t>(height_)};
            xcb_poly_fill_rectangle(connection_, window_, context_, 1, &all);
            xcb_flush(connection_);
            next += interval;
            std::this_thread::sleep_until(next);
        }
    }

    int width_;
    int height_;
    int frameRate_;
    xcb_connection_t* connection_ = nullptr;
    xcb_window_t window_ = 0;
    xcb_gcontext_t context_ = 0;
    std::atomic<bool> painting_ = true;
    std::thread painter_;
};

double percentile(std::vector<double> values, double fraction) {
    if (values.empty()) return 0;
    std::sort(values.begin(), values.end());
    return values[std::min(values.size() - 1,
                           static_cast<std::size_t>(fraction * static_cast<double>(values.size())))];
}

void figure(const char* caseName, const char* name, double value, const char* unit) {
    std::printf("figure %s_%s %.4f %s\n", caseName, name, value, unit);
    std::fflush(stdout);
}

void streamCase(const char* caseName, int windowWidth, int windowHeight,
                WindowStreamConfiguration configuration) {
    PaintedWindow window(windowWidth, windowHeight, configuration.frameRate);
    SerialQueue queue(QStringLiteral("com.kestrum.capture.queue"));
    TimeRecorder recorder;
    X11WindowStream stream(ShareableWindow{window.id(), QStringLiteral("bench"), {}, true, std::nullopt},
                           configuration);
    (void)stream.addStreamOutput(recorder, CaptureOutputType::screen, queue);
    const Status started = QCoro::waitFor(stream.startCapture());
    if (!started.ok()) {
        std::fprintf(stderr, "%s: the stream did not start: %s\n", caseName,
                     qPrintable(started.error().description));
        return;
    }
    QThread::msleep(500);  // past the first contexts and segments
    const QStringList captureThread = threadStats(QStringLiteral("kestrum-x11win"));
    const auto threadCpu = [&] {
        return captureThread.isEmpty() ? 0.0 : cpuSecondsOf(captureThread.first());
    };
    const double threadBefore = threadCpu();
    const double processBefore = processCpuSeconds();
    const double serverBefore = childrenCpuSeconds();
    const std::size_t framesBefore = recorder.times().size();
    QThread::msleep(static_cast<unsigned long>(kStreamSeconds * 1000));
    const double threadSeconds = threadCpu() - threadBefore;
    const double processSeconds = processCpuSeconds() - processBefore;
    const double serverSeconds = childrenCpuSeconds() - serverBefore;
    (void)QCoro::waitFor(stream.stopCapture());
    queue.sync([] {});

    const std::vector<HostTimeNs> times = recorder.times();
    std::vector<double> intervalsMs;
    for (std::size_t index = framesBefore + 1; index < times.size(); ++index) {
        intervalsMs.push_back(static_cast<double>(times[index] - times[index - 1]) / 1e6);
    }
    figure(caseName, "capture_thread_cpu", threadSeconds / kStreamSeconds, "cpu_s_per_s");
    figure(caseName, "process_cpu", processSeconds / kStreamSeconds, "cpu_s_per_s");
    figure(caseName, "x_server_cpu", serverSeconds / kStreamSeconds, "cpu_s_per_s");
    figure(caseName, "interval_p50", percentile(intervalsMs, 0.50), "ms");
    figure(caseName, "interval_p99", percentile(intervalsMs, 0.99), "ms");
    figure(caseName, "frames_per_second", static_cast<double>(intervalsMs.size()) / kStreamSeconds, "fps");
    figure(caseName, "deadlines_skipped", static_cast<double>(stream.counters().deadlinesSkipped), "count");
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    kestrum::test::XvfbServer display;
    if (!display.start(2560, 1440)) {
        std::fprintf(stderr, "no X server: %s\n", qPrintable(display.failure()));
        return 1;
    }
    // Xvfb resets itself whenever its last client leaves, and refuses connections meanwhile; this client
    // stays, so that the cases do not meet a reset.
    xcb_connection_t* keeper = xcb_connect(nullptr, nullptr);
    streamCase("window_stream_720p30", 1280, 720, {1280, 720, 30, true});
    streamCase("window_stream_1080p60", 1920, 1080, {1920, 1080, 60, true});
    streamCase("window_stream_1440p_to_720p30", 2560, 1440, {1280, 720, 30, true});
    xcb_disconnect(keeper);
    return 0;
}
