#pragma once

#include "core/shell/FolderSettingsModel.h"
#include "core/shell/MenuBarModel.h"
#include "core/shell/PermissionSettingsModel.h"
#include "core/shell/SettingsChoice.h"
#include "core/shell/SettingsModel.h"
#include "core/shell/SettingsSlider.h"
#include "core/shell/SettingsToggle.h"
#include "core/shell/StartupSettingsModel.h"
#include "core/shell/StorageLimitField.h"
#include "core/shell/StorageSettingsModel.h"

// QML_FOREIGN lives in QtQml (not in QtQmlIntegration) in Qt 6.4; moc must see its definition, and the
// registration it expands to needs the rest of qqml.h.
#include <QtQml/qqml.h>

// The shell's objects of the core as the views know them. The core holds no QML: these declarations name
// its classes for QML's type registrar (and so for qmllint and the compiled bindings). Every one is made
// in C++ by the application and handed to a view; none is created in QML. They stand together in one
// file because each is a declaration only, with no code of its own.
namespace kestrum::ui {

struct MenuBarModelForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::MenuBarModel)
    QML_NAMED_ELEMENT(MenuBarModel)
    QML_UNCREATABLE("made by the tray")
};

struct SettingsModelForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::SettingsModel)
    QML_NAMED_ELEMENT(SettingsModel)
    QML_UNCREATABLE("made by the settings window")
};

struct SettingsChoiceForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::SettingsChoice)
    QML_NAMED_ELEMENT(SettingsChoice)
    QML_UNCREATABLE("made by the settings model")
};

struct SettingsToggleForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::SettingsToggle)
    QML_NAMED_ELEMENT(SettingsToggle)
    QML_UNCREATABLE("made by the settings model")
};

struct SettingsSliderForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::SettingsSlider)
    QML_NAMED_ELEMENT(SettingsSlider)
    QML_UNCREATABLE("made by the settings model")
};

struct StorageLimitFieldForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::StorageLimitField)
    QML_NAMED_ELEMENT(StorageLimitField)
    QML_UNCREATABLE("made by the storage section")
};

struct FolderSettingsModelForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::FolderSettingsModel)
    QML_NAMED_ELEMENT(FolderSettingsModel)
    QML_UNCREATABLE("made by the settings model")
};

struct StorageSettingsModelForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::StorageSettingsModel)
    QML_NAMED_ELEMENT(StorageSettingsModel)
    QML_UNCREATABLE("made by the settings model")
};

struct PermissionSettingsModelForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::PermissionSettingsModel)
    QML_NAMED_ELEMENT(PermissionSettingsModel)
    QML_UNCREATABLE("made by the settings model")
};

struct StartupSettingsModelForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::StartupSettingsModel)
    QML_NAMED_ELEMENT(StartupSettingsModel)
    QML_UNCREATABLE("made by the settings model")
};

}  // namespace kestrum::ui
