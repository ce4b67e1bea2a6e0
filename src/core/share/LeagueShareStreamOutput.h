#pragma once

#include "core/share/LeagueShareFrameFanout.h"
#include "platform/ports/CaptureStream.h"

#include <cstdint>
#include <functional>

namespace kestrum {

// The receiver of one share stream's pictures, on the output queue. Only complete frames are shown;
// an idle sample (the picture did not change) still counts as updating, a blank one does not. Each
// change of that "updating" state, and only a change, goes to `publishUpdating`, which must hand it to
// the main thread. A stream that is no longer the fanout's current one is ignored altogether.
class LeagueShareStreamOutput final : public CaptureStreamOutput {
  public:
    LeagueShareStreamOutput(LeagueShareFrameFanout& fanout, std::uint64_t streamNumber,
                            std::function<void(bool isUpdating)> publishUpdating)
        : fanout_(fanout), streamNumber_(streamNumber), publishUpdating_(std::move(publishUpdating)) {}

    void didOutputSample(CaptureSample& sample, CaptureOutputType type) override;

    std::uint64_t streamNumber() const { return streamNumber_; }

  private:
    LeagueShareFrameFanout& fanout_;
    const std::uint64_t streamNumber_;
    const std::function<void(bool)> publishUpdating_;
    bool isUpdating_ = false;  // output queue; what was last published
};

}  // namespace kestrum
