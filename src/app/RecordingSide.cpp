#include "app/RecordingSide.h"

#include "base/log/CaptureLog.h"
#include "core/settings/UserDefaults.h"
#include "core/shell/PermissionTexts.h"
#include "platform/linux/pulse/BackgroundMicrophoneAccess.h"

#include <QEventLoop>

namespace kestrum {

namespace {

// End-to-end tests lengthen a finalisation so that they can quit during one; users never set this.
Clock::Duration finalizationDelayForTests() {
    bool valid = false;
    const int delayMs = qEnvironmentVariableIntValue("KESTRUM_TEST_FINALIZATION_DELAY_MS", &valid);
    return valid && delayMs > 0 ? std::chrono::milliseconds(delayMs) : Clock::Duration::zero();
}

GameCapturerEnvironment capturerEnvironment(PlatformServices& services, RecordingSavePath& savePath) {
    return GameCapturerEnvironment{*services.workspace,
                                   *services.shareableContent,
                                   *services.windowStreams,
                                   *services.audioStreams,
                                   *services.screenCaptureAccess,
                                   *services.microphoneAccess,
                                   *services.movieWriters,
                                   *services.movieRecovery,
                                   savePath,
                                   UserDefaults::standard(),
                                   Clock::system(),
                                   RecordingSavePath::inProgressFolderPath(),
                                   finalizationDelayForTests()};
}

}  // namespace

RecordingSide::RecordingSide(PlatformServices services)
    : services_(std::move(services)),
      systemLog_(services_.systemLog),
      folderStore_(UserDefaults::standard(), *services_.folderPicker),
      permissions_(*services_.screenCaptureAccess, *services_.microphoneAccess, *services_.settingsOpener,
                   linuxPermissionTexts().settingsErrorText),
      storageBudget_(folderStore_, UserDefaults::standard()),
      savePath_(folderStore_),
      capturer_(capturerEnvironment(services_, savePath_)),
      sessionEndGuard_(capturer_, *services_.sessionEndInhibitor),
      recovery_(*services_.movieRecovery, savePath_, RecordingSavePath::inProgressFolderPath()) {
    // A microphone answer read in the background shows at once, not at the next poll.
    if (auto* microphone = dynamic_cast<BackgroundMicrophoneAccess*>(services_.microphoneAccess.get())) {
        QObject::connect(microphone, &BackgroundMicrophoneAccess::statusChanged, &permissions_,
                         &RecordingPermissions::refresh);
    }
    coordinator_ = std::make_unique<RecordingCoordinator>(*services_.workspace,
                                                          *services_.screenCaptureAccess, sessionEndGuard_,
                                                          liveClient_, storageBudget_, Clock::system());
    // Beside the coordinator, not before it: a game that is already running is recorded meanwhile, and
    // its own recording is locked, so the recovery never takes it for an orphan.
    recoveryTask_ =
        Job<int>::start([recovery = &recovery_](CancellationToken) { return recovery->recoverOrphans(); });
}

RecordingSide::~RecordingSide() {
    coordinator_.reset();
    // A recovery still running uses the members below; a quit has waited for it already.
    QEventLoop loop;
    while (recoveryTask_ && !recoveryTask_->isFinished()) loop.processEvents(QEventLoop::WaitForMoreEvents);
}

QCoro::Task<void> RecordingSide::prepareForTermination() {
    auto prepared = coordinator_->prepareForTermination();
    co_await std::move(prepared);
    const Job<int> recovery = *recoveryTask_;
    co_await recovery;
    waitForCaptureLogWrites();
}

}  // namespace kestrum
