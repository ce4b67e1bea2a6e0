// The application shell's costs the user can feel: a second launch handing over to the running instance,
// the main thread's read of the microphone state while the sound server hangs, the task-switcher rules
// run at every window close, and making the settings form. Prints `figure <name> <value> <unit>` lines,
// medians of repeated runs.
#include "BenchTiming.h"
#include "base/async/ManualClock.h"
#include "core/notifications/NotificationCenter.h"
#include "core/recording/RecordingFolderStore.h"
#include "core/recording/RecordingPermissions.h"
#include "core/recording/RecordingStorageBudgetSource.h"
#include "core/shell/ActivationPolicyRules.h"
#include "core/shell/SettingsModel.h"
#include "platform/fake/FakeAutostartEntry.h"
#include "platform/fake/FakeFileActions.h"
#include "platform/fake/FakeFolderPicker.h"
#include "platform/fake/FakeMicrophoneAccess.h"
#include "platform/fake/FakeScreenCaptureAccess.h"
#include "platform/fake/FakeSettingsOpener.h"
#include "platform/linux/instance/LocalSocketSingleInstanceChannel.h"
#include "platform/linux/pulse/BackgroundMicrophoneAccess.h"
#include "platform/linux/pulse/PulseMicrophoneAccess.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QThread>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <memory>

namespace {

using namespace kestrum;
using kestrum::bench::medianMilliseconds;

void figure(const char* name, double value, const char* unit) {
    std::printf("figure %s %.4f %s\n", name, value, unit);
    std::fflush(stdout);
}

// A later launch's claim, from request to acknowledgement, against an instance listening on a thread of
// its own (as the running instance's main thread would).
double instanceForwardMilliseconds(const QString& socketPath) {
    QThread listenerThread;
    listenerThread.start();
    auto* listener = new LocalSocketSingleInstanceChannel(socketPath);
    listener->moveToThread(&listenerThread);
    QMetaObject::invokeMethod(
        listener, [listener] { listener->claim({}); }, Qt::BlockingQueuedConnection);
    LocalSocketSingleInstanceChannel launch(socketPath);
    int forwarded = 0;
    const double milliseconds = medianMilliseconds(30, [&] {
        const auto outcome = launch.claim({QStringLiteral("bench_TIME1"), 1u});
        forwarded += outcome == SingleInstanceChannel::Outcome::forwarded ? 1 : 0;
    });
    QMetaObject::invokeMethod(
        listener, [listener] { delete listener; }, Qt::BlockingQueuedConnection);
    listenerThread.quit();
    listenerThread.wait();
    return forwarded == 30 ? milliseconds : -1;  // -1: the hand-over failed, no figure
}

// The longest main-thread read of the microphone state while the sound server accepts and never answers.
double microphoneReadMicroseconds(const QString& socketPath) {
    const int server = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray encoded = socketPath.toLocal8Bit();
    std::memcpy(address.sun_path, encoded.constData(), static_cast<std::size_t>(encoded.size()));
    ::bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof(address));
    ::listen(server, 16);
    qputenv("PULSE_SERVER", (QStringLiteral("unix:") + socketPath).toLocal8Bit());
    double longest = 0;
    {
        BackgroundMicrophoneAccess access(
            std::make_shared<PulseMicrophoneAccess>(std::chrono::milliseconds(300)));
        for (int read = 0; read < 200; ++read) {
            longest = std::max(longest, medianMilliseconds(1, [&] { (void)access.status(); }) * 1000);
            QCoreApplication::processEvents();
        }
    }
    ::close(server);
    qunsetenv("PULSE_SERVER");
    return longest;
}

double closeRuleMicroseconds() {
    std::vector<ApplicationWindow> windows;
    for (int index = 0; index < 12; ++index) {
        windows.push_back({static_cast<ApplicationWindowID>(index + 1),
                           QStringLiteral("Window %1").arg(index), QStringLiteral("window-%1").arg(index),
                           index % 2 == 0, false});
    }
    windows.push_back({99, QStringLiteral("Kestrum Dashboard"), QStringLiteral("dashboard"), true, false});
    const std::optional<ApplicationWindow> closing = windows.back();
    constexpr int calls = 10000;
    int accessory = 0;
    const double milliseconds = medianMilliseconds(5, [&] {
        for (int call = 0; call < calls; ++call)
            accessory += policyAfterWindowWillClose(closing, windows) ? 1 : 0;
    });
    return accessory > 0 ? milliseconds * 1000 / calls : 0;
}

double settingsFormMilliseconds(const QString& folder) {
    UserDefaults defaults(folder + QStringLiteral("/defaults.json"));
    FakeFolderPicker picker;
    RecordingFolderStore folderStore(defaults, picker);
    FakeScreenCaptureAccess screen;
    FakeMicrophoneAccess microphone;
    FakeSettingsOpener opener;
    RecordingPermissions permissions(screen, microphone, opener);
    RecordingStorageBudgetSource budget(folderStore, defaults);
    NotificationCenter notifications;
    FakeFileActions fileActions;
    FakeAutostartEntry autostart;
    ManualClock clock;
    return medianMilliseconds(20, [&] {
        SettingsModel model({defaults, folderStore, permissions, budget, notifications, fileActions,
                             autostart, clock, linuxPermissionTexts(), QStringLiteral("0.1.0")});
    });
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QTemporaryDir directory;
    if (!directory.isValid()) return 1;
    figure("instance_forward", instanceForwardMilliseconds(directory.path() + QStringLiteral("/instance")),
           "ms");
    figure("microphone_status_main_thread_longest", microphoneReadMicroseconds(directory.path() + "/pulse"),
           "us");
    figure("close_rule_13_windows", closeRuleMicroseconds(), "us");
    figure("settings_form_make", settingsFormMilliseconds(directory.path()), "ms");
    return 0;
}
