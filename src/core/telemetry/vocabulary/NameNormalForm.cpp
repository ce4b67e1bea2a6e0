#include "core/telemetry/vocabulary/NameNormalForm.h"

#include <QString>

namespace kestrum {

std::string normalizedName(std::string_view name) {
    // QString::trimmed drops every character with the Unicode white space property, line ends included.
    const QByteArray bytes =
        QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())).trimmed().toLower().toUtf8();
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

}  // namespace kestrum
