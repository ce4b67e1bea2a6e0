#include "core/settings/UserDefaultsFileFormat.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QJsonValue>

#include <cmath>
#include <limits>

namespace kestrum {

namespace {

constexpr QLatin1String kBoolTag("bool");
constexpr QLatin1String kIntegerTag("integer");
constexpr QLatin1String kDoubleTag("double");
constexpr QLatin1String kStringTag("string");
constexpr QLatin1String kStringListTag("stringList");
constexpr QLatin1String kDataTag("data");

QJsonValue encodeDouble(double value) {
    if (std::isnan(value)) return QStringLiteral("nan");
    if (std::isinf(value)) return value > 0 ? QStringLiteral("inf") : QStringLiteral("-inf");
    return value;
}

QJsonObject encodeValue(const UserDefaultsValue& value) {
    switch (valueTypeOf(value)) {
        case UserDefaultsValueType::Boolean:
            return {{kBoolTag, std::get<bool>(value)}};
        case UserDefaultsValueType::Integer:
            return {{kIntegerTag, std::get<qint64>(value)}};
        case UserDefaultsValueType::Double:
            return {{kDoubleTag, encodeDouble(std::get<double>(value))}};
        case UserDefaultsValueType::String:
            return {{kStringTag, std::get<QString>(value)}};
        case UserDefaultsValueType::StringList:
            return {{kStringListTag, QJsonArray::fromStringList(std::get<QStringList>(value))}};
        case UserDefaultsValueType::Data:
            return {{kDataTag, QString::fromLatin1(std::get<QByteArray>(value).toBase64())}};
    }
    return {};
}

std::optional<double> decodeDouble(const QJsonValue& json) {
    if (json.isDouble()) return json.toDouble();
    const QString text = json.toString();
    if (text == QLatin1String("nan")) return std::numeric_limits<double>::quiet_NaN();
    if (text == QLatin1String("inf")) return std::numeric_limits<double>::infinity();
    if (text == QLatin1String("-inf")) return -std::numeric_limits<double>::infinity();
    return std::nullopt;
}

std::optional<qint64> decodeInteger(const QJsonValue& json) {
    if (!json.isDouble()) return std::nullopt;
    // toInteger gives the fallback for a fraction or a number beyond 64 bits; try two fallbacks so that
    // a stored value equal to one of them is still told apart.
    const qint64 first = json.toInteger(0);
    if (first == json.toInteger(1)) return first;
    return std::nullopt;
}

std::optional<QStringList> decodeStringList(const QJsonValue& json) {
    if (!json.isArray()) return std::nullopt;
    QStringList strings;
    for (const QJsonValue element : json.toArray()) {
        if (!element.isString()) return std::nullopt;
        strings.append(element.toString());
    }
    return strings;
}

std::optional<QByteArray> decodeData(const QJsonValue& json) {
    if (!json.isString()) return std::nullopt;
    auto decoded =
        QByteArray::fromBase64Encoding(json.toString().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded) return std::nullopt;
    return std::move(decoded.decoded);
}

std::optional<UserDefaultsValue> decodePayload(const QString& tag, const QJsonValue& json) {
    if (tag == kBoolTag)
        return json.isBool() ? std::optional<UserDefaultsValue>(json.toBool()) : std::nullopt;
    if (tag == kIntegerTag) return decodeInteger(json);
    if (tag == kDoubleTag) return decodeDouble(json);
    if (tag == kStringTag)
        return json.isString() ? std::optional<UserDefaultsValue>(json.toString()) : std::nullopt;
    if (tag == kStringListTag) return decodeStringList(json);
    if (tag == kDataTag) return decodeData(json);
    return std::nullopt;
}

}  // namespace

QByteArray encodeUserDefaults(const UserDefaultsMap& values) {
    QJsonObject root;
    for (auto it = values.cbegin(); it != values.cend(); ++it) root.insert(it.key(), encodeValue(it.value()));
    return QJsonDocument(root).toJson(QJsonDocument::Indented);
}

Result<UserDefaultsMap> decodeUserDefaults(const QByteArray& bytes) {
    QJsonParseError parseError{};
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        return Error::withDescription(
            QStringLiteral("not JSON: %1 at offset %2").arg(parseError.errorString()).arg(parseError.offset));
    }
    if (!document.isObject()) return Error::withDescription(QStringLiteral("the top level is not an object"));
    UserDefaultsMap values;
    const QJsonObject root = document.object();
    for (auto it = root.constBegin(); it != root.constEnd(); ++it) {
        const QJsonObject typed = it.value().toObject();
        std::optional<UserDefaultsValue> value;
        if (it.value().isObject() && typed.size() == 1)
            value = decodePayload(typed.begin().key(), typed.begin().value());
        if (!value) {
            return Error::withDescription(
                QStringLiteral("the value of \"%1\" is not a known typed value").arg(it.key()));
        }
        values.insert(it.key(), std::move(*value));
    }
    return values;
}

}  // namespace kestrum
