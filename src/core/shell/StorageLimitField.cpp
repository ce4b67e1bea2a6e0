#include "core/shell/StorageLimitField.h"

#include "core/settings/SettingsKeys.h"
#include "core/settings/SettingsReaders.h"

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <optional>

namespace kestrum {

namespace {

// A number as typed: in the user's language first ("12,5" in German), then in the C form ("12.5").
std::optional<double> parseNumber(const QString& text) {
    const QString trimmed = text.trimmed();
    bool ok = false;
    double value = QLocale().toDouble(trimmed, &ok);
    if (!ok) value = QLocale::c().toDouble(trimmed, &ok);
    if (!ok || !std::isfinite(value)) return std::nullopt;
    return value;
}

}  // namespace

StorageLimitField::Shape StorageLimitField::maximumShape() {
    return {SettingsKeys::recordingStorageMaximumGigabytes,
            QStringLiteral("Maximum"),
            QStringLiteral("GB"),
            QStringLiteral("Maximum storage"),
            48,
            10,
            2000,
            5,
            readRecordingStorageMaximumGigabytes,
            [](const UserDefaults& defaults) { return !readRecordingStorageLimitEnabled(defaults); },
            SettingsKeys::recordingStorageLimitEnabled};
}

StorageLimitField::Shape StorageLimitField::warningShape() {
    return {SettingsKeys::recordingStorageWarningPercentage,
            QStringLiteral("Warn at"),
            QStringLiteral("%"),
            QStringLiteral("Warning percentage"),
            36,
            50,
            95,
            5,
            readRecordingStorageWarningPercentage,
            {},
            {}};
}

StorageLimitField::StorageLimitField(UserDefaults& defaults, Shape shape, QObject* parent)
    : QObject(parent), defaults_(defaults), shape_(std::move(shape)) {
    reload();
    connect(&defaults_, &UserDefaults::valueChanged, this, [this](const QString& key) {
        if (key == shape_.key || (!shape_.unlimitedKey.isEmpty() && key == shape_.unlimitedKey)) reload();
    });
}

QString StorageLimitField::text() const {
    if (isUnlimited_) return QStringLiteral("Unlimited");
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);  // a field of 48 points holds "2000", not "2,000"
    return locale.toString(value_, 'g', 15);
}

void StorageLimitField::commit(const QString& text) {
    const std::optional<double> typed = parseNumber(text);
    if (!typed) {
        emit changed();  // the field shows the stored value again
        return;
    }
    store(clamped(*typed));
    emit changed();  // also when the stored value stayed: the field shows the clamped number
}

void StorageLimitField::stepUp() {
    store(clamped(value_ + shape_.step));
}

void StorageLimitField::stepDown() {
    store(clamped(value_ - shape_.step));
}

double StorageLimitField::clamped(double value) const {
    return std::min(std::max(value, shape_.minimum), shape_.maximum);
}

void StorageLimitField::reload() {
    const double value = shape_.reader(defaults_);
    const bool unlimited = shape_.readsUnlimited && shape_.readsUnlimited(defaults_);
    if (value == value_ && unlimited == isUnlimited_) return;
    value_ = value;
    isUnlimited_ = unlimited;
    emit changed();
}

void StorageLimitField::store(double value) {
    defaults_.setDouble(value, shape_.key);
}

}  // namespace kestrum
