#pragma once

#include "base/common/Result.h"
#include "core/settings/RecordingVideoResolution.h"
#include "core/settings/VideoFrameRate.h"
#include "media/MovieWriterFactory.h"
#include "platform/ports/WindowStream.h"

#include <QSize>
#include <QSizeF>
#include <QString>

#include <memory>

namespace kestrum {

// What a recording starts from: the game's window and its stream configuration, the in-progress movie
// file and its writer with the inputs it accepted. Made on the main thread, then taken apart by the
// capturer.
struct RecordingCaptureSetup {
    ShareableWindow window;
    WindowStreamConfiguration streamConfiguration;
    QString outputPath;
    std::unique_ptr<MovieWriter> writer;
    std::shared_ptr<MovieWriterInput> videoInput;        // null when the writer refused it
    std::shared_ptr<MovieWriterInput> systemAudioInput;  // null when not wanted or refused
    std::shared_ptr<MovieWriterInput> microphoneInput;   // null when not wanted or refused
    int width = 0;                                       // output pixels
    int height = 0;
};

// The size in pixels the recording is made at: a window fitted into the resolution's box, keeping its
// aspect ratio and never enlarged; for `native`, the window's own size. Not yet made even.
QSizeF fittedOutputSize(QSizeF sourcePixelSize, RecordingVideoResolution resolution);

// Each side truncated to an integer, then down to an even number; at least 2. Encoders of 4:2:0 video
// need even sides.
QSize evenPixelSize(QSizeF size);

// The in-progress movie file of a new recording: "kestrum_" + an upper-case UUID + ".mov" in `folder`.
QString makeInProgressMoviePath(const QString& folder);

struct CaptureSetupFactories {
    WindowStreamFactory& windowStreams;
    MovieWriterFactory& movieWriters;
    // Where in-progress movies are written; made when missing.
    QString inProgressFolder;
};

// Builds the setup for `window`. An Error when the movie writer cannot be created; refused inputs are
// left out (a refused audio input is logged). Main thread.
Result<RecordingCaptureSetup> prepareCaptureSetup(const ShareableWindow& window,
                                                  RecordingVideoResolution resolution,
                                                  VideoFrameRate frameRate, bool systemAudio, bool microphone,
                                                  const CaptureSetupFactories& factories);

}  // namespace kestrum
