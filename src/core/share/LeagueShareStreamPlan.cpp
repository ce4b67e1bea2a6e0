#include "core/share/LeagueShareStreamPlan.h"

#include <algorithm>
#include <cmath>

namespace kestrum {

namespace {

// Absorbs the rounding of the scale factor, so that a side scaled exactly onto the box is not floored
// one pixel short.
constexpr double kScaleRoundingSlack = 1e-6;

// Half a point: window managers report whole points, so anything smaller is rounding noise.
constexpr double kWindowSizeTolerance = 0.5;

int evenSide(double scaled) {
    const int floored = static_cast<int>(std::floor(scaled + kScaleRoundingSlack));
    const int even = floored - floored % 2;
    return floored < 3 ? 2 : even;
}

bool sameWindowSize(QSizeF a, QSizeF b) {
    return std::abs(a.width() - b.width()) < kWindowSizeTolerance &&
           std::abs(a.height() - b.height()) < kWindowSizeTolerance;
}

}  // namespace

QSize leagueShareBoxSize(LeagueShareResolution resolution) {
    int index = 0;
    switch (resolution) {
        case LeagueShareResolution::p720:
            index = 0;
            break;
        case LeagueShareResolution::p1080:
            index = 1;
            break;
        case LeagueShareResolution::p1440:
            index = 2;
            break;
    }
    return {1280 + 640 * index, 720 + 360 * index};
}

QSize fitLeagueShareSource(QSizeF sourceSize, QSize box) {
    if (!(sourceSize.width() > 0) || !(sourceSize.height() > 0)) return box;
    const double factor = std::min(box.width() / sourceSize.width(), box.height() / sourceSize.height());
    return {evenSide(sourceSize.width() * factor), evenSide(sourceSize.height() * factor)};
}

WindowStreamConfiguration leagueShareConfiguration(const LeagueShareStreamPlan& plan) {
    const QSize size = fitLeagueShareSource(plan.windowSize, leagueShareBoxSize(plan.resolution));
    WindowStreamConfiguration configuration;
    configuration.width = size.width();
    configuration.height = size.height();
    configuration.frameRate = rawValue(plan.frameRate);
    configuration.showsCursor = false;
    // The share window shrinks the picture to its own size anyway; a window smaller than the box comes
    // at its own size rather than enlarged, so that the picture is scaled once, not twice.
    configuration.enlargesSmallerSource = false;
    return configuration;
}

LeagueShareStreamAction decideLeagueShareStreamAction(const std::optional<LeagueShareStreamPlan>& applied,
                                                      const LeagueShareStreamPlan& wanted) {
    if (!applied || applied->windowID != wanted.windowID || applied->processID != wanted.processID ||
        applied->includesAudio != wanted.includesAudio) {
        return LeagueShareStreamAction::replaceStream;
    }
    if (applied->resolution != wanted.resolution || applied->frameRate != wanted.frameRate ||
        !sameWindowSize(applied->windowSize, wanted.windowSize)) {
        return LeagueShareStreamAction::updateConfiguration;
    }
    return LeagueShareStreamAction::keep;
}

}  // namespace kestrum
