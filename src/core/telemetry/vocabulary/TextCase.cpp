#include "core/telemetry/vocabulary/TextCase.h"

#include <QString>

namespace kestrum {

namespace {

QString fromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string toUtf8(const QString& text) {
    const QByteArray bytes = text.toUtf8();
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

}  // namespace

std::string upperCased(std::string_view text) {
    return toUtf8(fromUtf8(text).toUpper());
}

std::string lowerCased(std::string_view text) {
    return toUtf8(fromUtf8(text).toLower());
}

std::string capitalizedWords(std::string_view text) {
    const QString lowered = fromUtf8(text).toLower();
    QString result;
    result.reserve(lowered.size());
    bool atWordStart = true;
    // Walks by code point so that a first letter outside the basic plane is title-cased whole.
    for (qsizetype i = 0; i < lowered.size();) {
        const char32_t codePoint = lowered.at(i).isHighSurrogate() && i + 1 < lowered.size()
                                       ? QChar::surrogateToUcs4(lowered.at(i), lowered.at(i + 1))
                                       : lowered.at(i).unicode();
        i += QChar::requiresSurrogates(codePoint) ? 2 : 1;
        const bool separator = QChar::isSpace(codePoint);
        const char32_t written = (atWordStart && !separator) ? QChar::toTitleCase(codePoint) : codePoint;
        result.append(QString::fromUcs4(&written, 1));
        atWordStart = separator;
    }
    return toUtf8(result);
}

bool containsIgnoringCase(std::string_view text, std::string_view needle) {
    return fromUtf8(text).contains(fromUtf8(needle), Qt::CaseInsensitive);
}

}  // namespace kestrum
