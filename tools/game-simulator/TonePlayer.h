#pragma once

#include "GameClock.h"

#include <QString>

#include <atomic>
#include <memory>
#include <thread>

struct pa_simple;

namespace kestrum::simulator {

// A tone at the start of every game second on the default PulseAudio sink, in step with the game clock:
// each sample is computed for the game time at which the server will play it (now plus the stream's
// latency), so the tone begins when the clock stripe shows a whole second. Silent while loading and
// after the end. A thread of its own ("game tone") writes 10 ms blocks until the player is destroyed;
// the clock must outlive it.
class TonePlayer {
  public:
    static constexpr int kToneHz = 880;
    static constexpr int kToneMs = 100;
    static constexpr int kSampleRate = 48000;

    // Starts playing; absent, with the reason, when no sound server answers or it has no sink. Never
    // starts a sound server.
    static std::unique_ptr<TonePlayer> start(const GameClock& clock, QString* reason);

    ~TonePlayer();
    TonePlayer(const TonePlayer&) = delete;
    TonePlayer& operator=(const TonePlayer&) = delete;

    // The sample value (-1..1) of the tone at game time `gameSeconds`; silence before 0.
    static double sampleAt(double gameSeconds);

  private:
    TonePlayer(const GameClock& clock, pa_simple* stream);
    void run();

    const GameClock& clock_;
    pa_simple* stream_;  // owned; used only by the thread once it runs
    std::atomic<bool> stopRequested_{false};
    std::thread thread_;
};

}  // namespace kestrum::simulator
