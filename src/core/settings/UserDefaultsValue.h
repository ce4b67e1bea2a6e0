#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

namespace kestrum {

// One stored value of the user defaults. The stored type is kept exactly (1.0 stays a double, 1 an
// integer, true a Boolean), so that a reader sees what a writer stored.
using UserDefaultsValue = std::variant<bool, qint64, double, QString, QStringList, QByteArray>;

enum class UserDefaultsValueType { Boolean, Integer, Double, String, StringList, Data };

UserDefaultsValueType valueTypeOf(const UserDefaultsValue& value);

// The conversions of the typed getters, following the platform's user defaults:
//
// toBool: a Boolean as it is; an integer or a double is true when it is not zero (NaN is true); a
// string is true for "true" or "yes" and false for "false" or "no" (any case, whole string), and
// otherwise true when its leading integer (see toInteger) is not zero, so "1" and "7 days" are true
// and "0.5" is false; a list or data is false.
//
// toInteger: a Boolean gives 0 or 1; a double is truncated toward zero, saturating at the 64-bit
// bounds, NaN gives 0; a string gives its leading integer: leading white space skipped, an optional
// sign, then digits up to the first other character ("3.7" gives 3, " 42px" gives 42, "px" gives 0),
// saturating on overflow; a list or data gives 0.
//
// toDouble: a Boolean gives 0 or 1; an integer its nearest double; a string its leading decimal number
// with optional fraction and exponent, in the C locale ("2.5e3x" gives 2500, "abc" gives 0; an exponent
// too large gives an infinity, too small 0); a list or data gives 0.
//
// toStringValue: a string as it is; an integer its decimal text; a double its shortest text that reads
// back to the same double ("1" for 1.0, "0.1", "1e+20", "nan", "inf"); a Boolean "1" or "0", as the
// platform's numbers print; a list or data gives absent.
bool toBool(const UserDefaultsValue& value);
qint64 toInteger(const UserDefaultsValue& value);
double toDouble(const UserDefaultsValue& value);
std::optional<QString> toStringValue(const UserDefaultsValue& value);

// The value as a Boolean object, or absent when it is "no Boolean". A stored Boolean is one; so are the
// numbers that are exactly 0 or 1 (an integer or a double), because the platform keeps Booleans as
// numbers and bridges a number to a Boolean exactly when it is 0 or 1. Any other number, any string,
// list or data is no Boolean.
std::optional<bool> bridgedBoolean(const UserDefaultsValue& value);

}  // namespace kestrum
