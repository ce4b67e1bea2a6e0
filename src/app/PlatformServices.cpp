#include "app/PlatformServices.h"

#include "media/ffmpeg/FfmpegMovieRecovery.h"
#include "media/ffmpeg/FfmpegMovieWriterFactory.h"
#include "platform/fake/FakeAudioStream.h"
#include "platform/fake/FakeFolderPicker.h"
#include "platform/fake/FakeMicrophoneAccess.h"
#include "platform/fake/FakeScreenCaptureAccess.h"
#include "platform/fake/FakeSettingsOpener.h"
#include "platform/fake/FakeShareableContent.h"
#include "platform/fake/FakeSystemLog.h"
#include "platform/fake/FakeWindowStream.h"
#include "platform/fake/FakeWorkspace.h"
#include "platform/linux/pulse/PulseAudioStreamFactory.h"
#include "platform/linux/pulse/PulseMicrophoneAccess.h"
#include "platform/linux/syslog/SyslogSystemLog.h"
#include "platform/linux/x11/LinuxWorkspace.h"
#include "platform/linux/x11/X11ScreenCaptureAccess.h"
#include "platform/linux/x11/X11ShareableContent.h"
#include "platform/linux/x11/X11WindowStreamFactory.h"

namespace kestrum {

PlatformServices makeLinuxPlatformServices() {
    PlatformServices services;
    services.workspace = std::make_unique<LinuxWorkspace>();
    services.shareableContent = std::make_unique<X11ShareableContent>();
    services.windowStreams = std::make_unique<X11WindowStreamFactory>();
    services.audioStreams = std::make_unique<PulseAudioStreamFactory>();
    services.screenCaptureAccess = std::make_unique<X11ScreenCaptureAccess>();
    services.microphoneAccess = std::make_unique<PulseMicrophoneAccess>();
    // No desktop settings page governs capture on Linux, and the folder chooser belongs to the settings
    // window: until it exists the recordings folder is the default or the stored one.
    services.settingsOpener = std::make_unique<FakeSettingsOpener>();
    services.folderPicker = std::make_unique<FakeFolderPicker>();
    services.systemLog = std::make_shared<SyslogSystemLog>();
    services.movieWriters = std::make_unique<ffmpeg::FfmpegMovieWriterFactory>();
    services.movieRecovery = std::make_unique<ffmpeg::FfmpegMovieRecovery>();
    return services;
}

PlatformServices makeFakePlatformServices() {
    PlatformServices services;
    services.workspace = std::make_unique<FakeWorkspace>();
    services.shareableContent = std::make_unique<FakeShareableContent>();
    services.windowStreams = std::make_unique<FakeWindowStreamFactory>();
    services.audioStreams = std::make_unique<FakeAudioStreamFactory>();
    services.screenCaptureAccess = std::make_unique<FakeScreenCaptureAccess>(false);
    services.microphoneAccess = std::make_unique<FakeMicrophoneAccess>();
    services.settingsOpener = std::make_unique<FakeSettingsOpener>();
    services.folderPicker = std::make_unique<FakeFolderPicker>();
    services.systemLog = std::make_shared<FakeSystemLog>();
    services.movieWriters = std::make_unique<ffmpeg::FfmpegMovieWriterFactory>();
    services.movieRecovery = std::make_unique<ffmpeg::FfmpegMovieRecovery>();
    return services;
}

PlatformServices makePlatformServices() {
    if (qEnvironmentVariable("KESTRUM_PLATFORM") == QLatin1String("fake")) return makeFakePlatformServices();
    return makeLinuxPlatformServices();
}

}  // namespace kestrum
