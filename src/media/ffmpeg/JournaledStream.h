#pragma once

#include "base/common/Result.h"
#include "media/MovieJournal.h"

extern "C" {
#include <libavformat/avformat.h>
}

namespace kestrum::ffmpeg {

// A movie stream as its journal describes it: the codec parameters and the time base the muxer wrote
// the stream with, as named numbers plus the extradata, and back. What the muxer derives its header and
// index from must be here, so that a rebuilt index describes the same stream.

// The description of `stream` once the container header is written (the muxer may have settled fields).
MovieJournalTrack journalTrackOf(const AVStream& stream);

// Fills a new stream of a muxer from a journal's description; an Error when a required number is
// missing or out of range.
Status applyJournalTrack(const MovieJournalTrack& track, AVStream& stream);

}  // namespace kestrum::ffmpeg
