#pragma once

#include "base/async/SerialQueue.h"
#include "base/common/HostTime.h"
#include "base/common/Result.h"
#include "base/media/AudioSampleBuffer.h"
#include "base/media/PixelBuffer.h"

#include <QCoroTask>

#include <memory>

namespace kestrum {

// The kinds of sample a capture stream delivers, with the raw values the stream outputs are registered
// under.
enum class CaptureOutputType : int { screen = 0, audio = 1, microphone = 2 };

// Whether the picture of a video sample changed since the previous one: `complete` when it did, `idle`
// when the stream repeats an unchanged picture, `blank` when the window could not be read (unmapped,
// minimised) and the stream sends nothing worth showing.
enum class CaptureFrameStatus { complete, idle, blank };

// One sample of a capture stream. Video samples carry `imageBuffer` (BGRA at the configured size);
// audio and microphone samples carry `audio`. `presentationTimeNs` is on the host clock: for video the
// frame's moment on the stream's grid of frame times (the picture is taken then, or within one frame
// period after it when the reader runs late), for audio the capture time of the first frame. A sample
// whose data is not ready must be dropped by the receiver.
struct CaptureSample {
    HostTimeNs presentationTimeNs = 0;
    bool dataIsReady = true;
    std::shared_ptr<const PixelBuffer> imageBuffer;
    CaptureFrameStatus frameStatus = CaptureFrameStatus::complete;
    AudioSampleBuffer audio;
};

// The receiver of a stream's samples. Called only on the queue the output was added with, one sample at
// a time; the receiver owns the sample (it may write the audio in place and move it on).
class CaptureStreamOutput {
  public:
    virtual ~CaptureStreamOutput() = default;
    virtual void didOutputSample(CaptureSample& sample, CaptureOutputType type) = 0;
};

// A running source of samples (a window's picture, or the system's sound and microphone).
//
// Contract, for every adapter:
// - `addStreamOutput`, `startCapture` and `stopCapture` are called on the main thread; the two tasks
//   complete on the main thread.
// - The stream delivers each sample by queueing a call of the output on the given queue; it never calls
//   an output on any other thread, and never after `stopCapture` has completed. Samples already queued
//   then may still run: a receiver drops them by its own stopping flag.
// - The outputs are not owned: each must outlive the stream's deliveries, i.e. stay alive until
//   `stopCapture` completed and the queue has run what was queued before.
// - A stream that dies by itself (its window destroyed, the sound server gone) simply stops delivering.
// - Destroying a started stream stops it synchronously.
class CaptureStream {
  public:
    virtual ~CaptureStream() = default;

    // Registers `output` for samples of `type`, delivered on `queue`. An Error when the stream cannot
    // deliver that type (for example a microphone output on a stream made without the microphone).
    virtual Status addStreamOutput(CaptureStreamOutput& output, CaptureOutputType type,
                                   SerialQueue& queue) = 0;
    // Starts the delivery; an Error when the source cannot be opened.
    virtual QCoro::Task<Status> startCapture() = 0;
    // Ends the delivery; an Error when the source had already ended by itself (the stream is stopped
    // all the same).
    virtual QCoro::Task<Status> stopCapture() = 0;

  protected:
    CaptureStream() = default;
    CaptureStream(const CaptureStream&) = default;
    CaptureStream& operator=(const CaptureStream&) = default;
};

}  // namespace kestrum
