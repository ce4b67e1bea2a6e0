#include "core/capture/GameWindowSearch.h"

#include "core/recording/RecordingBundleIdentifiers.h"

#include <algorithm>

namespace kestrum {

namespace {

double area(const ShareableWindow& window) {
    return window.frame.width() * window.frame.height();
}

std::vector<qint32> runningGameProcessIDs(const Workspace& workspace) {
    std::vector<qint32> ids;
    for (const RunningApplication& application : workspace.runningApplications()) {
        if (application.bundleIdentifier == RecordingBundleIdentifiers::gameClient) {
            ids.push_back(application.processIdentifier);
        }
    }
    return ids;
}

}  // namespace

std::vector<ShareableWindow> gameWindowCandidates(const ShareableContentSnapshot& snapshot,
                                                  const std::vector<qint32>& gameProcessIDs) {
    std::vector<ShareableWindow> candidates;
    for (const ShareableWindow& window : snapshot.windows) {
        if (!window.owningApplication) continue;
        const ShareableApplication& owner = *window.owningApplication;
        const bool ownedByGame = std::find(gameProcessIDs.begin(), gameProcessIDs.end(), owner.processID) !=
                                     gameProcessIDs.end() ||
                                 owner.bundleIdentifier == RecordingBundleIdentifiers::gameClient;
        if (ownedByGame && window.frame.width() > 1 && window.frame.height() > 1)
            candidates.push_back(window);
    }
    return candidates;
}

bool isTitledGameWindow(const ShareableWindow& window) {
    return window.title && window.title->contains(QLatin1String("League of Legends"), Qt::CaseInsensitive);
}

std::optional<ShareableWindow> largestWindow(const std::vector<ShareableWindow>& windows) {
    std::optional<ShareableWindow> best;
    for (const ShareableWindow& window : windows) {
        if (!best || area(window) > area(*best)) best = window;
    }
    return best;
}

GameWindowAttempt evaluateGameWindowAttempt(const ShareableContentSnapshot& snapshot,
                                            const std::vector<qint32>& gameProcessIDs) {
    const std::vector<ShareableWindow> candidates = gameWindowCandidates(snapshot, gameProcessIDs);
    std::vector<ShareableWindow> titled;
    std::copy_if(candidates.begin(), candidates.end(), std::back_inserter(titled), isTitledGameWindow);
    return {largestWindow(titled), largestWindow(candidates)};
}

QCoro::Task<Result<std::optional<ShareableWindow>>> waitForGameWindow(GameWindowSearchContext context,
                                                                      int attempts, Clock::Duration delay,
                                                                      CancellationToken token) {
    std::optional<ShareableWindow> best;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (token.isCancelled()) co_return std::optional<ShareableWindow>{};
        const std::vector<qint32> gameProcessIDs = runningGameProcessIDs(context.workspace);
        Result<ShareableContentSnapshot> content = context.shareableContent.currentContent(true, true);
        if (!content.ok()) co_return content.error();
        GameWindowAttempt verdict = evaluateGameWindowAttempt(content.value(), gameProcessIDs);
        if (verdict.titled) co_return verdict.titled;
        // With no candidates this time, the best of an earlier attempt stands.
        if (verdict.largest) best = std::move(verdict.largest);
        if (attempt >= kFirstAttemptAcceptingUntitledWindow && best) co_return best;
        if (attempt == attempts - 1) co_return best;
        auto sleep = context.clock.sleep(delay, token);
        if (!co_await std::move(sleep)) co_return std::optional<ShareableWindow>{};
    }
    co_return best;
}

}  // namespace kestrum
