#pragma once

#include "core/settings/LeagueShareResolution.h"
#include "core/settings/UserDefaults.h"
#include "core/settings/VideoFrameRate.h"

namespace kestrum {

// The share's three settings over the user defaults: "leagueShareResolution" (`p720` when missing or
// unknown), "leagueShareFrameRate" (`fps60` only for a stored 60) and "leagueShareIncludesAudio" (true
// when missing or no Boolean). Nothing is cached: every getter reads the store, every setter writes at
// once, so the coordinator sees a change at its next refresh. Main thread, as the store's owner.
class LeagueShareSettings {
  public:
    explicit LeagueShareSettings(UserDefaults& defaults) : defaults_(defaults) {}

    LeagueShareResolution resolution() const;
    VideoFrameRate frameRate() const;
    bool includesAudio() const;

    void setResolution(LeagueShareResolution resolution);
    void setFrameRate(VideoFrameRate frameRate);
    void setIncludesAudio(bool includesAudio);

    // The store, for observers of its `valueChanged` signal.
    UserDefaults& defaults() const { return defaults_; }

  private:
    UserDefaults& defaults_;
};

}  // namespace kestrum
