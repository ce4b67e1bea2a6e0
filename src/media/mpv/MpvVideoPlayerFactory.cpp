#include "media/mpv/MpvVideoPlayerFactory.h"

#include "media/mpv/MpvHandle.h"

namespace kestrum {

std::unique_ptr<VideoPlayer> MpvVideoPlayerFactory::makePlayer(const QString& moviePath) {
    return makeMpvPlayer(moviePath);
}

std::unique_ptr<MpvVideoPlayer> MpvVideoPlayerFactory::makeMpvPlayer(
    const std::optional<QString>& moviePath) {
    return std::make_unique<MpvVideoPlayer>(MpvHandle::create(), moviePath);
}

}  // namespace kestrum
