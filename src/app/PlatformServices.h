#pragma once

#include "base/log/SystemLog.h"
#include "media/MovieRecovery.h"
#include "media/MovieWriterFactory.h"
#include "platform/ports/AudioStream.h"
#include "platform/ports/AutostartEntry.h"
#include "platform/ports/DesktopColorScheme.h"
#include "platform/ports/FileActions.h"
#include "platform/ports/FolderPicker.h"
#include "platform/ports/LeagueShareAudioRoute.h"
#include "platform/ports/MicrophoneAccess.h"
#include "platform/ports/ScreenCaptureAccess.h"
#include "platform/ports/SessionEndInhibitor.h"
#include "platform/ports/SettingsOpener.h"
#include "platform/ports/ShareableContent.h"
#include "platform/ports/WindowStream.h"
#include "platform/ports/Workspace.h"

#include <memory>

namespace kestrum {

// The adapters the application runs on: one of each port, made once at start and kept for the life of
// the process. Main thread.
struct PlatformServices {
    std::unique_ptr<Workspace> workspace;
    std::unique_ptr<ShareableContent> shareableContent;
    std::unique_ptr<WindowStreamFactory> windowStreams;
    std::unique_ptr<AudioStreamFactory> audioStreams;
    // League Share's sound, for the share coordinator; null when the platform cannot route one
    // application's sound (the fakes).
    std::unique_ptr<LeagueShareAudioRoute> leagueShareAudioRoute;
    std::unique_ptr<ScreenCaptureAccess> screenCaptureAccess;
    std::unique_ptr<MicrophoneAccess> microphoneAccess;
    std::unique_ptr<SettingsOpener> settingsOpener;
    std::unique_ptr<FolderPicker> folderPicker;
    std::unique_ptr<SessionEndInhibitor> sessionEndInhibitor;
    std::unique_ptr<FileActions> fileActions;
    std::unique_ptr<AutostartEntry> autostart;
    std::unique_ptr<DesktopColorScheme> desktopColorScheme;
    std::shared_ptr<SystemLog> systemLog;
    std::unique_ptr<MovieWriterFactory> movieWriters;
    std::unique_ptr<MovieRecovery> movieRecovery;
};

// The Linux adapters: /proc and X11 for the desktop, XComposite for the window, PulseAudio for sound (the
// microphone's state read off the main thread; League Share's sound in the "Kestrum Share" null sink),
// logind for the session-end hold, the desktop's folder dialog, the freedesktop file actions, autostart entry
// and colour scheme, syslog, FFmpeg for movies. Needs the QApplication (the folder dialog is a widget).
PlatformServices makeLinuxPlatformServices();

// The scripted fakes, empty: nothing runs, nothing can be captured. The honest answer on a system the
// application cannot capture, and what KESTRUM_PLATFORM=fake asks for.
PlatformServices makeFakePlatformServices();

// The services KESTRUM_PLATFORM asks for ("fake"), else the Linux ones.
PlatformServices makePlatformServices();

}  // namespace kestrum
