#include "core/shell/SettingsSlider.h"

#include "core/settings/SettingsReaders.h"

#include <algorithm>
#include <cmath>

namespace kestrum {

SettingsSlider::SettingsSlider(UserDefaults& defaults, QString key, QString title, QObject* parent)
    : QObject(parent), defaults_(defaults), key_(std::move(key)), title_(std::move(title)) {
    value_ = loadVolume(defaults_, key_);
    connect(&defaults_, &UserDefaults::valueChanged, this, [this](const QString& changedKey) {
        if (changedKey != key_) return;
        const double value = loadVolume(defaults_, key_);
        if (value == value_) return;
        value_ = value;
        emit valueChanged();
    });
}

void SettingsSlider::setValue(double value) {
    if (std::isnan(value)) return;
    // Steps counted in twentieths, so that 0.35 is stored as 0.35 and not 0.35000000000000003.
    const double steps = std::round(std::clamp(value, kMinimum, kMaximum) / kStep);
    defaults_.setDouble(steps / std::round(1 / kStep), key_);
}

}  // namespace kestrum
