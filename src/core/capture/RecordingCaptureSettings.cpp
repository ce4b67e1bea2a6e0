#include "core/capture/RecordingCaptureSettings.h"

#include "base/log/CaptureLog.h"
#include "core/settings/SettingsKeys.h"
#include "core/settings/SettingsReaders.h"

namespace kestrum {

bool decideMicrophoneUse(bool wanted, MicrophoneAccess::Status status) {
    if (!wanted) return false;
    switch (status) {
        case MicrophoneAccess::Status::authorized:
            return true;
        case MicrophoneAccess::Status::restricted:
        case MicrophoneAccess::Status::denied:
            logCaptureInfo(
                QStringLiteral("Microphone access is unavailable; continuing without microphone audio."));
            return false;
        case MicrophoneAccess::Status::notDetermined:
            logCaptureInfo(QStringLiteral(
                "Microphone access has not been requested; continuing without microphone audio."));
            return false;
    }
    logCaptureInfo(
        QStringLiteral("Microphone authorization is unknown; continuing without microphone audio."));
    return false;
}

RecordingCaptureSettings readRecordingCaptureSettings(const UserDefaults& defaults,
                                                      const MicrophoneAccess& microphoneAccess) {
    RecordingCaptureSettings settings;
    settings.systemAudio = readRecordSystemAudio(defaults);
    // The authorisation is asked only when the microphone is wanted, as a refusal is logged.
    const bool microphoneWanted = readRecordMicrophone(defaults);
    settings.microphone = microphoneWanted && decideMicrophoneUse(true, microphoneAccess.status());
    settings.resolution = readRecordingVideoResolution(defaults);
    settings.frameRate = readRecordingVideoFrameRate(defaults);
    settings.systemAudioVolume = loadVolume(defaults, SettingsKeys::systemAudioVolume);
    settings.microphoneVolume = loadVolume(defaults, SettingsKeys::microphoneVolume);
    return settings;
}

}  // namespace kestrum
