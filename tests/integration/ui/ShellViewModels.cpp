#include "ShellViewModels.h"

#include "core/shell/PermissionTexts.h"

namespace kestrum::test {

namespace {

QVariant object(QObject* object) {
    return QVariant::fromValue(object);
}

constexpr qint64 kGigabyte = 1'000'000'000;

}  // namespace

ShellViewModels::ShellViewModels()
    : defaults(directory.path() + QStringLiteral("/defaults.json")),
      folderStore(defaults, picker),
      permissions(screen, microphone, opener, linuxPermissionTexts().settingsErrorText),
      storageBudget(folderStore, defaults,
                    [measured = measured_](const RecordingStorageQuery&) {
                        const std::scoped_lock lock(measured->mutex);
                        return measured->usage;
                    }),
      panelStorage(storageBudget, defaults, folderStore, notifications),
      menuBar(RecordingStatus::ready, permissions, panelStorage, windows, presenter,
              {[this] { ++dashboardShows; }, [this] { ++settingsOpenings; }, [this] { ++quits; }}),
      settings({defaults, folderStore, permissions, storageBudget, notifications, fileActions, autostart,
                clock, linuxPermissionTexts(), QStringLiteral("0.1.0")}) {
    setUsage({12 * kGigabyte, 100 * kGigabyte, 0.8, false});
}

ShellViewModels::~ShellViewModels() {
    settings.closed();
}

void ShellViewModels::setUsage(const RecordingStorageUsage& usage) {
    const std::scoped_lock lock(measured_->mutex);
    measured_->usage = usage;
}

QVariantMap ShellViewModels::propertiesFor(const QString& fileName) {
    const QString name = fileName.section(QLatin1Char('/'), -1);
    if (name == QLatin1String("MenuBarView.qml")) return {{QStringLiteral("model"), object(&menuBar)}};
    if (name == QLatin1String("SettingsView.qml")) return {{QStringLiteral("model"), object(&settings)}};
    if (name == QLatin1String("SegmentedPicker.qml"))
        return {{QStringLiteral("choice"), object(settings.theme())}};
    if (name == QLatin1String("VolumeRow.qml")) {
        return {{QStringLiteral("slider"), object(settings.systemAudioVolume())}};
    }
    if (name == QLatin1String("StorageLimitInput.qml")) {
        return {{QStringLiteral("field"), object(settings.storage()->maximum())}};
    }
    return {};
}

}  // namespace kestrum::test
