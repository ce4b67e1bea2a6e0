#pragma once

#include "base/async/CancellationToken.h"
#include "base/async/Clock.h"
#include "base/common/Result.h"
#include "platform/ports/ShareableContent.h"
#include "platform/ports/Workspace.h"

#include <QCoroTask>

#include <optional>
#include <vector>

namespace kestrum {

// The game's windows among `snapshot.windows`, in the order given: windows with an owner that is one of
// `gameProcessIDs` or carries the game client's bundle identifier, and a frame strictly wider and
// higher than 1 point.
std::vector<ShareableWindow> gameWindowCandidates(const ShareableContentSnapshot& snapshot,
                                                  const std::vector<qint32>& gameProcessIDs);

// Whether the window's title names the game ("League of Legends", case-insensitive, anywhere in it). A
// window with no title is not titled.
bool isTitledGameWindow(const ShareableWindow& window);

// The window of largest area; of equal ones the first listed. Absent for an empty list.
std::optional<ShareableWindow> largestWindow(const std::vector<ShareableWindow>& windows);

// One attempt's verdict: the titled window to take at once, else the best untitled candidate.
struct GameWindowAttempt {
    std::optional<ShareableWindow> titled;
    std::optional<ShareableWindow> largest;
};
GameWindowAttempt evaluateGameWindowAttempt(const ShareableContentSnapshot& snapshot,
                                            const std::vector<qint32>& gameProcessIDs);

// From which attempt (counted from 0) an untitled window is accepted: 10 seconds into the search at its
// half-second pace.
inline constexpr int kFirstAttemptAcceptingUntitledWindow = 20;

struct GameWindowSearchContext {
    ShareableContent& shareableContent;
    const Workspace& workspace;
    Clock& clock;
};

// Looks for the game's window up to `attempts` times, `delay` apart: a titled window at once, an
// untitled one only from attempt 20 or at the last attempt. Absent when none appeared, when the token
// was cancelled, or when a sleep failed; an Error when the shareable content could not be read. Main
// thread.
QCoro::Task<Result<std::optional<ShareableWindow>>> waitForGameWindow(GameWindowSearchContext context,
                                                                      int attempts, Clock::Duration delay,
                                                                      CancellationToken token);

}  // namespace kestrum
