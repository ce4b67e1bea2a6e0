#pragma once

#include "media/mpv/MpvVideoPlayerItem.h"

#include <QtQmlIntegration>

namespace kestrum::ui {

// `VideoPlayerLayer`: the movie picture of an MpvVideoPlayer, aspect preserved on black, for the review
// window's player surface. Its one property, `player`, takes the player object (see MpvVideoPlayerItem).
struct VideoPlayerLayerType {
    Q_GADGET
    QML_FOREIGN(kestrum::MpvVideoPlayerItem)
    QML_NAMED_ELEMENT(VideoPlayerLayer)
};

}  // namespace kestrum::ui
