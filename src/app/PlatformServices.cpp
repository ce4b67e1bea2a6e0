#include "app/PlatformServices.h"

#include "app/FileDialogFolderPicker.h"
#include "media/ffmpeg/FfmpegMovieRecovery.h"
#include "media/ffmpeg/FfmpegMovieWriterFactory.h"
#include "platform/fake/FakeAudioStream.h"
#include "platform/fake/FakeAutostartEntry.h"
#include "platform/fake/FakeDesktopColorScheme.h"
#include "platform/fake/FakeFileActions.h"
#include "platform/fake/FakeFolderPicker.h"
#include "platform/fake/FakeMicrophoneAccess.h"
#include "platform/fake/FakeScreenCaptureAccess.h"
#include "platform/fake/FakeSessionEndInhibitor.h"
#include "platform/fake/FakeSettingsOpener.h"
#include "platform/fake/FakeShareableContent.h"
#include "platform/fake/FakeSystemLog.h"
#include "platform/fake/FakeWindowStream.h"
#include "platform/fake/FakeWorkspace.h"
#include "platform/linux/freedesktop/FreedesktopFileActions.h"
#include "platform/linux/freedesktop/LogindSessionEndInhibitor.h"
#include "platform/linux/freedesktop/PortalDesktopColorScheme.h"
#include "platform/linux/freedesktop/UnavailableSettingsOpener.h"
#include "platform/linux/freedesktop/XdgAutostartEntry.h"
#include "platform/linux/pulse/BackgroundMicrophoneAccess.h"
#include "platform/linux/pulse/PulseAudioStreamFactory.h"
#include "platform/linux/pulse/PulseLeagueShareAudioRoute.h"
#include "platform/linux/pulse/PulseMicrophoneAccess.h"
#include "platform/linux/syslog/SyslogSystemLog.h"
#include "platform/linux/x11/LinuxWorkspace.h"
#include "platform/linux/x11/X11ScreenCaptureAccess.h"
#include "platform/linux/x11/X11ShareableContent.h"
#include "platform/linux/x11/X11WindowStreamFactory.h"

#include <QCoreApplication>

namespace kestrum {

PlatformServices makeLinuxPlatformServices() {
    PlatformServices services;
    services.workspace = std::make_unique<LinuxWorkspace>();
    services.shareableContent = std::make_unique<X11ShareableContent>();
    services.windowStreams = std::make_unique<X11WindowStreamFactory>();
    services.audioStreams = std::make_unique<PulseAudioStreamFactory>();
    services.leagueShareAudioRoute = std::make_unique<PulseLeagueShareAudioRoute>();
    services.screenCaptureAccess = std::make_unique<X11ScreenCaptureAccess>();
    // A sound server that hangs must not hang the main thread, which asks at every settings poll and at
    // every capture start.
    services.microphoneAccess = std::make_unique<BackgroundMicrophoneAccess>(
        std::make_shared<PulseMicrophoneAccess>(std::chrono::milliseconds(1500)));
    services.settingsOpener = std::make_unique<UnavailableSettingsOpener>();
    services.folderPicker = std::make_unique<FileDialogFolderPicker>();
    services.sessionEndInhibitor = std::make_unique<LogindSessionEndInhibitor>();
    services.fileActions = std::make_unique<FreedesktopFileActions>();
    services.autostart = std::make_unique<XdgAutostartEntry>(QCoreApplication::applicationFilePath());
    services.desktopColorScheme = std::make_unique<PortalDesktopColorScheme>();
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
    services.sessionEndInhibitor = std::make_unique<FakeSessionEndInhibitor>();
    services.fileActions = std::make_unique<FakeFileActions>();
    services.autostart = std::make_unique<FakeAutostartEntry>();
    services.desktopColorScheme = std::make_unique<FakeDesktopColorScheme>();
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
