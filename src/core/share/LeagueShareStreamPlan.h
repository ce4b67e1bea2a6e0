#pragma once

#include "core/settings/LeagueShareResolution.h"
#include "core/settings/VideoFrameRate.h"
#include "platform/ports/WindowStream.h"

#include <QSize>
#include <QSizeF>

#include <cstdint>
#include <optional>

namespace kestrum {

// The picture box of a resolution in pixels: 1280x720, 1920x1080, 2560x1440.
QSize leagueShareBoxSize(LeagueShareResolution resolution);

// The stream's picture size for a source of `sourceSize` points in `box`: the source scaled by the
// smaller of the two side ratios (above 1 too, so a small window is enlarged), each side floored, then
// rounded down to an even number, a side under 3 becoming 2. A source with a side that is not positive
// gets the box itself.
QSize fitLeagueShareSource(QSizeF sourceSize, QSize box);

// Everything a share stream is made from: the source and the three settings. Two plans are compared
// to decide between keeping the stream, reconfiguring it, and replacing it.
struct LeagueShareStreamPlan {
    std::uint32_t windowID = 0;
    qint32 processID = 0;
    QSizeF windowSize;  // the source's frame, points
    LeagueShareResolution resolution = LeagueShareResolution::p720;
    VideoFrameRate frameRate = VideoFrameRate::fps30;
    bool includesAudio = true;
};

// The stream configuration of a plan: the fitted size, the frame rate, no cursor, and no enlarging of a
// window smaller than the fitted size (its pictures then come at the window's own size).
WindowStreamConfiguration leagueShareConfiguration(const LeagueShareStreamPlan& plan);

enum class LeagueShareStreamAction {
    keep,                 // the running stream already matches
    updateConfiguration,  // same window and sound; new size, resolution or frame rate
    replaceStream,        // no stream, another window or process, or the sound setting changed
};

// What to do with the stream running under `applied` (absent: none runs) to serve `wanted`. Window
// sizes count as equal within half a point, below any change a stream could show.
LeagueShareStreamAction decideLeagueShareStreamAction(const std::optional<LeagueShareStreamPlan>& applied,
                                                      const LeagueShareStreamPlan& wanted);

}  // namespace kestrum
