#include "ShareRig.h"

#include <QCoreApplication>
#include "core/recording/RecordingBundleIdentifiers.h"

#include <QCoroTask>

#include <chrono>

namespace kestrum::test {

ShareableWindow leagueWindow(std::uint32_t windowID, qint32 processID, const QString& bundleIdentifier,
                             QSizeF size) {
    ShareableWindow window;
    window.windowID = windowID;
    window.title = QStringLiteral("League");
    window.frame = QRectF(QPointF(40, 30), size);
    window.isOnScreen = true;
    window.owningApplication = ShareableApplication{processID, bundleIdentifier, QStringLiteral("League")};
    return window;
}

ShareableWindow clientWindow(QSizeF size) {
    return leagueWindow(kClientWindow, kClientProcess, RecordingBundleIdentifiers::leagueClientUx, size);
}

ShareableWindow gameWindow(QSizeF size) {
    return leagueWindow(kGameWindow, kGameProcess, RecordingBundleIdentifiers::gameClient, size);
}

ShareableContentSnapshot snapshotOf(std::vector<ShareableWindow> windows) {
    ShareableContentSnapshot snapshot;
    snapshot.windows = std::move(windows);
    return snapshot;
}

ShareRig::ShareRig()
    : defaults(std::make_unique<UserDefaults>(folder.filePath(QStringLiteral("defaults.json")))),
      settings(std::make_unique<LeagueShareSettings>(*defaults)),
      coordinator(std::make_unique<LeagueShareCoordinator>(
          LeagueShareEnvironment{access, content, streams, workspace, audioRoute, *settings, clock})) {}

ShareRig::~ShareRig() {
    // The monitoring loop sleeps on the manual clock; the stop wakes it and lets it end, so that no
    // suspended coroutine outlives the clock.
    stopAndWait();
    coordinator.reset();
    QCoreApplication::processEvents();
}

void ShareRig::tick() {
    clock.advance(std::chrono::seconds(1));
}

void ShareRig::drain() {
    coordinator->outputQueue().sync([] {});
    QCoreApplication::processEvents();
}

void ShareRig::showWindows(std::vector<ShareableWindow> windows) {
    content.setContent(snapshotOf(std::move(windows)));
}

void ShareRig::stopAndWait() {
    QCoro::waitFor(coordinator->stopSharing());
}

}  // namespace kestrum::test
