#include "core/share/LeagueShareWindowGeometry.h"

#include <algorithm>
#include <cmath>

namespace kestrum {

namespace {

constexpr int kScreenInset = 24;
constexpr int kLargestWidth = 960;
constexpr int kLargestHeight = 540;

// Moves `start`..`start + length` into `low`..`high` when it fits; else aligns it with `low`.
int constrainedStart(int start, int length, int low, int high) {
    if (start + length > high) start = high - length;
    return std::max(start, low);
}

}  // namespace

bool isLeagueShareRatioChange(double current, double next) {
    return !(std::abs(next - current) < kLeagueShareRatioTolerance);
}

std::optional<QSize> leagueShareWindowSize(double ratio, const QRect& visibleArea) {
    if (!std::isnormal(ratio) || ratio < 0) return std::nullopt;
    const QRect inset = visibleArea.adjusted(kScreenInset, kScreenInset, -kScreenInset, -kScreenInset);
    if (inset.width() <= 0 || inset.height() <= 0) return std::nullopt;
    const int boxWidth = std::min(kLargestWidth, inset.width());
    const int boxHeight = std::min(kLargestHeight, inset.height());
    const double boxRatio = static_cast<double>(boxWidth) / boxHeight;
    if (boxRatio > ratio)
        return QSize(std::max(1, static_cast<int>(std::lround(ratio * boxHeight))), boxHeight);
    return QSize(boxWidth, std::max(1, static_cast<int>(std::lround(boxWidth / ratio))));
}

std::optional<QRect> leagueShareWindowFrame(double ratio, const QRect& visibleArea,
                                            const QRect& currentFrame) {
    const std::optional<QSize> size = leagueShareWindowSize(ratio, visibleArea);
    if (!size) return std::nullopt;
    QRect frame(QPoint(0, 0), *size);
    frame.moveCenter(currentFrame.center());
    frame.moveLeft(constrainedStart(frame.left(), frame.width(), visibleArea.left(),
                                    visibleArea.left() + visibleArea.width()));
    frame.moveTop(constrainedStart(frame.top(), frame.height(), visibleArea.top(),
                                   visibleArea.top() + visibleArea.height()));
    return frame;
}

}  // namespace kestrum
