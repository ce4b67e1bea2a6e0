#include "core/share/LeagueShareSourceChoice.h"

#include "core/capture/GameWindowSearch.h"
#include "core/recording/RecordingBundleIdentifiers.h"

#include <vector>

namespace kestrum {

namespace {

// Smaller windows are splash screens, tool tips and hidden helpers, never the picture to share.
constexpr double kSmallestSourceSidePoints = 100;

bool isLargeEnough(const ShareableWindow& window) {
    return window.frame.width() > kSmallestSourceSidePoints &&
           window.frame.height() > kSmallestSourceSidePoints;
}

}  // namespace

std::optional<LeagueShareSource> chooseLeagueShareSource(const ShareableContentSnapshot& snapshot) {
    std::vector<ShareableWindow> gameWindows;
    std::vector<ShareableWindow> clientWindows;
    for (const ShareableWindow& window : snapshot.windows) {
        if (!window.owningApplication || !isLargeEnough(window)) continue;
        const QString& identifier = window.owningApplication->bundleIdentifier;
        if (identifier == RecordingBundleIdentifiers::gameClient) {
            gameWindows.push_back(window);
        } else if (RecordingBundleIdentifiers::isLeagueClient(identifier)) {
            clientWindows.push_back(window);
        }
    }
    if (std::optional<ShareableWindow> game = largestWindow(gameWindows)) {
        return LeagueShareSource{std::move(*game), LeagueShareSource::Kind::game};
    }
    if (std::optional<ShareableWindow> client = largestWindow(clientWindows)) {
        return LeagueShareSource{std::move(*client), LeagueShareSource::Kind::client};
    }
    return std::nullopt;
}

}  // namespace kestrum
