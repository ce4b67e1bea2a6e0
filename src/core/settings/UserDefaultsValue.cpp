#include "core/settings/UserDefaultsValue.h"

#include <QLocale>
#include <QRegularExpression>

#include <cmath>
#include <limits>

namespace kestrum {

namespace {

template <class... Visitors>
struct Overloaded : Visitors... {
    using Visitors::operator()...;
};
template <class... Visitors>
Overloaded(Visitors...) -> Overloaded<Visitors...>;

constexpr qint64 kMaxInteger = std::numeric_limits<qint64>::max();
constexpr qint64 kMinInteger = std::numeric_limits<qint64>::min();

qint64 truncateToInteger(double value) {
    if (std::isnan(value)) return 0;
    // 2^63 is exact as a double; anything at or beyond it saturates.
    if (value >= 9223372036854775808.0) return kMaxInteger;
    if (value <= -9223372036854775808.0) return kMinInteger;
    return static_cast<qint64>(value);
}

qint64 leadingInteger(const QString& text) {
    qsizetype at = 0;
    while (at < text.size() && text.at(at).isSpace()) ++at;
    bool negative = false;
    if (at < text.size() && (text.at(at) == QLatin1Char('+') || text.at(at) == QLatin1Char('-'))) {
        negative = text.at(at) == QLatin1Char('-');
        ++at;
    }
    // Accumulated as a negative number so that the minimum is reachable; saturates on overflow.
    qint64 magnitude = 0;
    for (; at < text.size(); ++at) {
        const char16_t c = text.at(at).unicode();
        if (c < u'0' || c > u'9') break;
        const int digit = c - u'0';
        if (magnitude < (kMinInteger + digit) / 10) return negative ? kMinInteger : kMaxInteger;
        magnitude = magnitude * 10 - digit;
    }
    if (negative) return magnitude;
    return magnitude == kMinInteger ? kMaxInteger : -magnitude;
}

double leadingDouble(const QString& text) {
    static const QRegularExpression number(QStringLiteral(R"(^\s*([+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d+)?))"));
    const QRegularExpressionMatch match = number.match(text);
    if (!match.hasMatch()) return 0;
    // Out of range the C locale gives an infinity (overflow) or 0 (underflow), as wanted.
    return QLocale::c().toDouble(match.capturedView(1));
}

bool stringToBool(const QString& text) {
    for (const char* word : {"true", "yes"}) {
        if (text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0) return true;
    }
    for (const char* word : {"false", "no"}) {
        if (text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0) return false;
    }
    return leadingInteger(text) != 0;
}

}  // namespace

UserDefaultsValueType valueTypeOf(const UserDefaultsValue& value) {
    // The enumeration lists the types in the order of the variant's alternatives.
    static_assert(std::variant_size_v<UserDefaultsValue> == 6);
    return static_cast<UserDefaultsValueType>(value.index());
}

bool toBool(const UserDefaultsValue& value) {
    return std::visit(Overloaded{
                          [](bool b) { return b; },
                          [](qint64 i) { return i != 0; },
                          [](double d) { return d != 0; },
                          [](const QString& s) { return stringToBool(s); },
                          [](const auto&) { return false; },
                      },
                      value);
}

qint64 toInteger(const UserDefaultsValue& value) {
    return std::visit(Overloaded{
                          [](bool b) -> qint64 { return b ? 1 : 0; },
                          [](qint64 i) { return i; },
                          [](double d) { return truncateToInteger(d); },
                          [](const QString& s) { return leadingInteger(s); },
                          [](const auto&) -> qint64 { return 0; },
                      },
                      value);
}

double toDouble(const UserDefaultsValue& value) {
    return std::visit(Overloaded{
                          [](bool b) { return b ? 1.0 : 0.0; },
                          [](qint64 i) { return static_cast<double>(i); },
                          [](double d) { return d; },
                          [](const QString& s) { return leadingDouble(s); },
                          [](const auto&) { return 0.0; },
                      },
                      value);
}

std::optional<QString> toStringValue(const UserDefaultsValue& value) {
    return std::visit(
        Overloaded{
            [](bool b) -> std::optional<QString> { return b ? QStringLiteral("1") : QStringLiteral("0"); },
            [](qint64 i) -> std::optional<QString> { return QString::number(i); },
            [](double d) -> std::optional<QString> {
                return QString::number(d, 'g', QLocale::FloatingPointShortest);
            },
            [](const QString& s) -> std::optional<QString> { return s; },
            [](const auto&) -> std::optional<QString> { return std::nullopt; },
        },
        value);
}

std::optional<bool> bridgedBoolean(const UserDefaultsValue& value) {
    return std::visit(Overloaded{
                          [](bool b) -> std::optional<bool> { return b; },
                          [](qint64 i) -> std::optional<bool> {
                              if (i == 0 || i == 1) return i == 1;
                              return std::nullopt;
                          },
                          [](double d) -> std::optional<bool> {
                              if (d == 0 || d == 1) return d == 1;
                              return std::nullopt;
                          },
                          [](const auto&) -> std::optional<bool> { return std::nullopt; },
                      },
                      value);
}

}  // namespace kestrum
