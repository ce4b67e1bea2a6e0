#pragma once

#include "media/mpv/MpvVideoPlayer.h"
#include "platform/ports/VideoPlayer.h"

#include <memory>

namespace kestrum {

// Makes the review window's players on libmpv: each its own engine, its movie loading at once, paused at
// 0, with no picture decoded until an MpvVideoPlayerItem shows it (a prepared player costs a demuxer and
// a sound decoder, no render context). A missing file gives a player with no item at once; a file that
// turns out damaged leaves it with no item (and its loadError) once mpv has tried it.
//
// Threads: main thread. The players must be destroyed on the main thread, before the QCoreApplication.
class MpvVideoPlayerFactory final : public VideoPlayerFactory {
  public:
    std::unique_ptr<VideoPlayer> makePlayer(const QString& moviePath) override;
    // The same player, typed, for the program that hands it to an item.
    std::unique_ptr<MpvVideoPlayer> makeMpvPlayer(const std::optional<QString>& moviePath);
};

}  // namespace kestrum
