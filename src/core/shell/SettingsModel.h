#pragma once

#include "base/async/Clock.h"
#include "core/shell/FolderSettingsModel.h"
#include "core/shell/PermissionSettingsModel.h"
#include "core/shell/SettingsChoice.h"
#include "core/shell/SettingsSlider.h"
#include "core/shell/SettingsToggle.h"
#include "core/shell/StartupSettingsModel.h"
#include "core/shell/StorageSettingsModel.h"
#include "core/shell/StorageUsageRefresh.h"

#include <QObject>
#include <QStringList>
#include <QUrl>

namespace kestrum {

// The settings window's form: one object per control or section, in the order of the form, each bound to
// its stored key; the "About" texts; and what happens each time the window opens (the form scrolls back
// to its top, storage is measured, the permissions are polled every 2 seconds until it closes).
//
// The form's sections, in order, with `sectionTitles` giving their headings: "Appearance" (theme); the
// permission rows, with no heading; "Video" (resolution, frame rate); "Share" (resolution, frame rate,
// system audio); "Video" again for the audio switches and volumes (the repeated heading is kept);
// "Recordings folder"; "Storage"; "Startup"; "About".
//
// Threads: main thread. Everything given must outlive it.
class SettingsModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QStringList sectionTitles READ sectionTitles CONSTANT)
    Q_PROPERTY(kestrum::SettingsChoice* theme READ theme CONSTANT)
    Q_PROPERTY(kestrum::PermissionSettingsModel* permissions READ permissions CONSTANT)
    Q_PROPERTY(kestrum::SettingsChoice* videoResolution READ videoResolution CONSTANT)
    Q_PROPERTY(kestrum::SettingsChoice* videoFrameRate READ videoFrameRate CONSTANT)
    Q_PROPERTY(kestrum::SettingsChoice* shareResolution READ shareResolution CONSTANT)
    Q_PROPERTY(kestrum::SettingsChoice* shareFrameRate READ shareFrameRate CONSTANT)
    Q_PROPERTY(kestrum::SettingsToggle* shareIncludesAudio READ shareIncludesAudio CONSTANT)
    Q_PROPERTY(kestrum::SettingsToggle* recordSystemAudio READ recordSystemAudio CONSTANT)
    Q_PROPERTY(kestrum::SettingsSlider* systemAudioVolume READ systemAudioVolume CONSTANT)
    Q_PROPERTY(kestrum::SettingsToggle* recordMicrophone READ recordMicrophone CONSTANT)
    Q_PROPERTY(kestrum::SettingsSlider* microphoneVolume READ microphoneVolume CONSTANT)
    Q_PROPERTY(kestrum::FolderSettingsModel* folder READ folder CONSTANT)
    Q_PROPERTY(kestrum::StorageSettingsModel* storage READ storage CONSTANT)
    Q_PROPERTY(kestrum::StartupSettingsModel* startup READ startup CONSTANT)
    Q_PROPERTY(QString versionTitle READ versionTitle CONSTANT)
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(QString notice READ notice CONSTANT)
    Q_PROPERTY(QString linkTitle READ linkTitle CONSTANT)
    Q_PROPERTY(QUrl linkUrl READ linkUrl CONSTANT)

  public:
    // What the form stands on. The version is the application's ("0.1.0"); empty when unknown.
    struct Environment {
        UserDefaults& defaults;
        RecordingFolderStore& folderStore;
        RecordingPermissions& permissions;
        const RecordingStorageBudgetSource& storageBudget;
        NotificationCenter& notifications;
        FileActions& fileActions;
        AutostartEntry& autostart;
        Clock& clock;
        PermissionTexts permissionTexts;
        QString version;
    };

    explicit SettingsModel(Environment environment, QObject* parent = nullptr);

    QStringList sectionTitles() const;
    SettingsChoice* theme() { return &theme_; }
    PermissionSettingsModel* permissions() { return &permissions_; }
    SettingsChoice* videoResolution() { return &videoResolution_; }
    SettingsChoice* videoFrameRate() { return &videoFrameRate_; }
    SettingsChoice* shareResolution() { return &shareResolution_; }
    SettingsChoice* shareFrameRate() { return &shareFrameRate_; }
    SettingsToggle* shareIncludesAudio() { return &shareIncludesAudio_; }
    SettingsToggle* recordSystemAudio() { return &recordSystemAudio_; }
    SettingsSlider* systemAudioVolume() { return &systemAudioVolume_; }
    SettingsToggle* recordMicrophone() { return &recordMicrophone_; }
    SettingsSlider* microphoneVolume() { return &microphoneVolume_; }
    FolderSettingsModel* folder() { return &folder_; }
    StorageSettingsModel* storage() { return &storage_; }
    StartupSettingsModel* startup() { return &startup_; }
    StorageUsageRefresh& storageRefresh() { return storageRefresh_; }

    QString versionTitle() const { return QStringLiteral("Version"); }
    // The application's version, or "—" when it has none.
    QString version() const;
    QString notice() const;
    QString linkTitle() const { return QStringLiteral("Riot Games Developer Policies"); }
    QUrl linkUrl() const { return QUrl(QStringLiteral("https://developer.riotgames.com/policies/general")); }

    // The window opened (every time): the form goes back to its top with no field holding the focus,
    // storage is measured, the folder and the login start are read again, and the permissions are
    // polled until `closed`.
    Q_INVOKABLE void opened();
    Q_INVOKABLE void closed();

  signals:
    // The view scrolls to the top of the form and takes the focus from any text field.
    void scrollToTopRequested();

  private:
    const QString version_;
    StorageUsageRefresh storageRefresh_;
    SettingsChoice theme_;
    PermissionSettingsModel permissions_;
    SettingsChoice videoResolution_;
    SettingsChoice videoFrameRate_;
    SettingsChoice shareResolution_;
    SettingsChoice shareFrameRate_;
    SettingsToggle shareIncludesAudio_;
    SettingsToggle recordSystemAudio_;
    SettingsSlider systemAudioVolume_;
    SettingsToggle recordMicrophone_;
    SettingsSlider microphoneVolume_;
    FolderSettingsModel folder_;
    StorageSettingsModel storage_;
    StartupSettingsModel startup_;
};

}  // namespace kestrum
