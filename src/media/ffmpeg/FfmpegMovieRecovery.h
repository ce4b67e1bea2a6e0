#pragma once

#include "media/MovieRecovery.h"

namespace kestrum::ffmpeg {

// MovieRecovery on FFmpeg's own "mov" muxer. The movie was written by that muxer with packets in a
// known order; replaying the journal's packets through a new instance of it, with the same streams and
// the same timestamps, makes it lay them out at the same places and derive the index the writer would
// have written. The replay hands it stand-in bytes of each packet's written size (RecoveryFileOutput
// keeps them out of the file), so the media data is never read nor copied. A rehearsal replay first
// checks the journal against the file: the same header, every packet where the journal says.
class FfmpegMovieRecovery final : public MovieRecovery {
  public:
    Result<RecoveredMovie> recover(const QString& moviePath) const override;
};

}  // namespace kestrum::ffmpeg
