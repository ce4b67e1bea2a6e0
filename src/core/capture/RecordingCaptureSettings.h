#pragma once

#include "core/settings/RecordingVideoResolution.h"
#include "core/settings/UserDefaults.h"
#include "core/settings/VideoFrameRate.h"
#include "platform/ports/MicrophoneAccess.h"

namespace kestrum {

// The capture choices of one recording, read once at its start: a change in the settings takes effect
// at the next recording.
struct RecordingCaptureSettings {
    bool systemAudio = true;
    // Whether the microphone is recorded: wanted by the user and authorised.
    bool microphone = false;
    RecordingVideoResolution resolution = RecordingVideoResolution::p720;
    VideoFrameRate frameRate = VideoFrameRate::fps30;
    double systemAudioVolume = 1.0;  // linear gain, 0...2
    double microphoneVolume = 1.0;   // linear gain, 0...2

    friend bool operator==(const RecordingCaptureSettings&, const RecordingCaptureSettings&) = default;
};

// Whether a wanted microphone may be used with the authorisation `status`; every refusal of a wanted
// microphone is logged with its reason. An unwanted microphone is off, silently.
bool decideMicrophoneUse(bool wanted, MicrophoneAccess::Status status);

// Reads the stored capture settings and decides the microphone. Main thread (the authorisation query).
RecordingCaptureSettings readRecordingCaptureSettings(const UserDefaults& defaults,
                                                      const MicrophoneAccess& microphoneAccess);

}  // namespace kestrum
