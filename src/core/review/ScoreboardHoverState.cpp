#include "core/review/ScoreboardHoverState.h"

#include <utility>

namespace kestrum {

ScoreboardHoverState::ScoreboardHoverState(Clock& clock, std::function<void()> changed)
    : changed_(std::move(changed)), delays_(clock) {}

void ScoreboardHoverState::enter(const QString& playerID) {
    pendingHoverPlayerID_ = playerID;
    delays_.after(kHoverDelay, [this, playerID] {
        if (pendingHoverPlayerID_ == playerID) setHovered(playerID);
    });
}

void ScoreboardHoverState::leave() {
    pendingHoverPlayerID_.reset();
    setHovered(std::nullopt);
}

void ScoreboardHoverState::leave(const QString& playerID) {
    if (pendingHoverPlayerID_ == playerID) pendingHoverPlayerID_.reset();
    if (hoveredPlayerID_ == playerID) setHovered(std::nullopt);
}

void ScoreboardHoverState::markCopied(const QString& playerID) {
    const bool changes = copiedPlayerID_ != playerID;
    copiedPlayerID_ = playerID;
    if (changes && changed_) changed_();
    delays_.after(kCopiedDuration, [this, playerID] {
        if (copiedPlayerID_ != playerID) return;
        copiedPlayerID_.reset();
        if (changed_) changed_();
    });
}

void ScoreboardHoverState::setHovered(const std::optional<QString>& playerID) {
    if (hoveredPlayerID_ == playerID) return;
    hoveredPlayerID_ = playerID;
    if (changed_) changed_();
}

}  // namespace kestrum
