#include "core/recording/RecordingFileName.h"

#include <QChar>
#include <QLocale>
#include <QStringList>
#include <QStringView>

namespace kestrum {
namespace {

// Letters and digits of any script stand for the alphanumerics; decided per Unicode scalar, so a
// character outside the basic plane is one scalar, not two halves.
bool isAlphanumeric(char32_t scalar) {
    return QChar::isLetterOrNumber(scalar);
}

std::optional<QString> trimmed(const std::optional<std::string>& value) {
    if (!value) return std::nullopt;
    QString text = QString::fromStdString(*value).trimmed();
    if (text.isEmpty()) return std::nullopt;
    return text;
}

}  // namespace

QString recordingDateNamePart(const QDateTime& date) {
    return QLocale().toString(date.toLocalTime(), QStringLiteral("yyyy-MM-dd_HH-mm-ss"));
}

std::optional<QString> sanitizedNamePart(const std::optional<std::string>& value) {
    const std::optional<QString> text = trimmed(value);
    if (!text) return std::nullopt;
    QString replaced;
    for (const char32_t scalar : QStringView(*text).toUcs4()) {
        if (isAlphanumeric(scalar)) {
            replaced.append(QString::fromUcs4(&scalar, 1));
        } else {
            replaced.append(QLatin1Char('_'));
        }
    }
    const QString joined = replaced.split(QLatin1Char('_'), Qt::SkipEmptyParts).join(QLatin1Char('_'));
    if (joined.isEmpty()) return std::nullopt;
    return joined;
}

std::optional<QString> compactedNamePart(const std::optional<std::string>& value) {
    const std::optional<QString> text = trimmed(value);
    if (!text) return std::nullopt;
    QString kept;
    for (const char32_t scalar : QStringView(*text).toUcs4()) {
        if (isAlphanumeric(scalar)) kept.append(QString::fromUcs4(&scalar, 1));
    }
    if (kept.isEmpty()) return std::nullopt;
    return kept.toUpper();
}

QString recordingFileName(const QDateTime& date, const std::optional<RecordingMetadata>& metadata) {
    QStringList parts{recordingDateNamePart(date)};
    if (metadata) {
        if (const auto mode = sanitizedNamePart(metadata->gameMode)) parts.append(*mode);
        if (const auto champion = compactedNamePart(metadata->champion)) parts.append(*champion);
        const auto position = sanitizedNamePart(metadata->position);
        if (position && position->compare(QLatin1String("NONE"), Qt::CaseInsensitive) != 0) {
            parts.append(*position);
        }
    }
    return parts.join(QLatin1Char('_')) + QStringLiteral(".mov");
}

}  // namespace kestrum
