#include "core/shell/SettingsToggle.h"

namespace kestrum {

SettingsToggle::SettingsToggle(UserDefaults& defaults, QString key, QString title, Reader reader,
                               QObject* parent)
    : QObject(parent),
      defaults_(defaults),
      key_(std::move(key)),
      title_(std::move(title)),
      reader_(std::move(reader)) {
    isOn_ = reader_(defaults_);
    connect(&defaults_, &UserDefaults::valueChanged, this, [this](const QString& changedKey) {
        if (changedKey != key_) return;
        const bool on = reader_(defaults_);
        if (on == isOn_) return;
        isOn_ = on;
        emit isOnChanged();
    });
}

void SettingsToggle::setOn(bool on) {
    defaults_.setBool(on, key_);
}

}  // namespace kestrum
