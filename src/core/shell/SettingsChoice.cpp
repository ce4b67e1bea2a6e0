#include "core/shell/SettingsChoice.h"

namespace kestrum {

SettingsChoice::SettingsChoice(UserDefaults& defaults, QString key, QString title,
                               std::vector<Option> options, UserDefaultsValue defaultValue, QObject* parent)
    : QObject(parent),
      defaults_(defaults),
      key_(std::move(key)),
      title_(std::move(title)),
      options_(std::move(options)),
      defaultValue_(std::move(defaultValue)) {
    selectedIndex_ = readSelectedIndex();
    connect(&defaults_, &UserDefaults::valueChanged, this, [this](const QString& changedKey) {
        if (changedKey != key_) return;
        const int index = readSelectedIndex();
        if (index == selectedIndex_) return;
        selectedIndex_ = index;
        emit selectedIndexChanged();
    });
}

QStringList SettingsChoice::labels() const {
    QStringList labels;
    for (const Option& option : options_) labels << option.label;
    return labels;
}

void SettingsChoice::select(int index) {
    if (index < 0 || index >= static_cast<int>(options_.size())) return;
    defaults_.setObject(options_[static_cast<std::size_t>(index)].rawValue, key_);
}

int SettingsChoice::readSelectedIndex() const {
    const UserDefaultsValue stored = defaults_.objectForKey(key_).value_or(defaultValue_);
    for (std::size_t index = 0; index < options_.size(); ++index) {
        if (names(options_[index], stored)) return static_cast<int>(index);
    }
    return -1;
}

bool SettingsChoice::names(const Option& option, const UserDefaultsValue& stored) const {
    // Read as the key's readers read it: a string option by the stored text, an integer option by the
    // stored value's integer conversion (a stored 60.0 or "60" names 60).
    if (const auto* text = std::get_if<QString>(&option.rawValue)) {
        return std::holds_alternative<QString>(stored) && std::get<QString>(stored) == *text;
    }
    if (const auto* number = std::get_if<qint64>(&option.rawValue)) return toInteger(stored) == *number;
    return false;
}

}  // namespace kestrum
