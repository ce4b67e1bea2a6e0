#pragma once

#include <QString>

#include <array>
#include <optional>

namespace kestrum {

// The application's theme, stored as its raw string at "kestrumAppearance". `system` follows the
// desktop's choice; `light` and `dark` force one.
enum class KestrumAppearance { system, light, dark };

// All cases in the order of the picker.
inline constexpr std::array<KestrumAppearance, 3> kKestrumAppearances = {
    KestrumAppearance::system, KestrumAppearance::light, KestrumAppearance::dark};

inline QString rawValue(KestrumAppearance appearance) {
    switch (appearance) {
        case KestrumAppearance::system:
            return QStringLiteral("system");
        case KestrumAppearance::light:
            return QStringLiteral("light");
        case KestrumAppearance::dark:
            return QStringLiteral("dark");
    }
    return {};
}

// The picker's label.
inline QString displayText(KestrumAppearance appearance) {
    switch (appearance) {
        case KestrumAppearance::system:
            return QStringLiteral("System");
        case KestrumAppearance::light:
            return QStringLiteral("Light");
        case KestrumAppearance::dark:
            return QStringLiteral("Dark");
    }
    return {};
}

// The case whose raw value is exactly `raw`; absent for any other text.
inline std::optional<KestrumAppearance> parseKestrumAppearance(const QString& raw) {
    for (const KestrumAppearance appearance : kKestrumAppearances) {
        if (rawValue(appearance) == raw) return appearance;
    }
    return std::nullopt;
}

}  // namespace kestrum
