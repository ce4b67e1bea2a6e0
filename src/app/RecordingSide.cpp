#include "app/RecordingSide.h"

#include "base/log/CaptureLog.h"
#include "core/settings/UserDefaults.h"
#include "core/shell/PermissionTexts.h"
#include "platform/linux/pulse/BackgroundMicrophoneAccess.h"

namespace kestrum {

namespace {

GameCapturerEnvironment capturerEnvironment(PlatformServices& services, RecordingSavePath& savePath) {
    return GameCapturerEnvironment{*services.workspace,
                                   *services.shareableContent,
                                   *services.windowStreams,
                                   *services.audioStreams,
                                   *services.screenCaptureAccess,
                                   *services.microphoneAccess,
                                   *services.movieWriters,
                                   savePath,
                                   UserDefaults::standard(),
                                   Clock::system(),
                                   RecordingSavePath::inProgressFolderPath()};
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
      sessionEndGuard_(capturer_, *services_.sessionEndInhibitor) {
    // A microphone answer read in the background shows at once, not at the next poll.
    if (auto* microphone = dynamic_cast<BackgroundMicrophoneAccess*>(services_.microphoneAccess.get())) {
        QObject::connect(microphone, &BackgroundMicrophoneAccess::statusChanged, &permissions_,
                         &RecordingPermissions::refresh);
    }
    coordinator_ = std::make_unique<RecordingCoordinator>(*services_.workspace,
                                                          *services_.screenCaptureAccess, sessionEndGuard_,
                                                          liveClient_, storageBudget_, Clock::system());
}

RecordingSide::~RecordingSide() {
    coordinator_.reset();
}

QCoro::Task<void> RecordingSide::prepareForTermination() {
    auto prepared = coordinator_->prepareForTermination();
    co_await std::move(prepared);
    waitForCaptureLogWrites();
}

}  // namespace kestrum
