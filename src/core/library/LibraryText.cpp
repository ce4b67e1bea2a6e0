#include "core/library/LibraryText.h"

#include <QString>

namespace kestrum {

std::vector<std::string> splitTitle(std::string_view title) {
    std::vector<std::string> pieces;
    std::size_t start = 0;
    while (true) {
        const std::size_t found = title.find(kTitleSeparator, start);
        if (found == std::string_view::npos) {
            pieces.emplace_back(title.substr(start));
            return pieces;
        }
        pieces.emplace_back(title.substr(start, found - start));
        start = found + kTitleSeparator.size();
    }
}

std::string joinTitle(const std::vector<std::string>& pieces) {
    std::string joined;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (i > 0) joined += kTitleSeparator;
        joined += pieces[i];
    }
    return joined;
}

std::optional<std::string> joinPresent(const std::vector<std::optional<std::string>>& pieces) {
    std::vector<std::string> present;
    for (const auto& piece : pieces) {
        if (piece) present.push_back(*piece);
    }
    if (present.empty()) return std::nullopt;
    return joinTitle(present);
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    const QString left = QString::fromUtf8(a.data(), static_cast<qsizetype>(a.size()));
    const QString right = QString::fromUtf8(b.data(), static_cast<qsizetype>(b.size()));
    return QString::compare(left, right, Qt::CaseInsensitive) == 0;
}

}  // namespace kestrum
