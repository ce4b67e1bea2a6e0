#include "core/assets/DataDragonVersionList.h"

#include "core/json/JsonDocument.h"

#include <string>
#include <vector>

namespace kestrum {

std::optional<QString> newestDataDragonVersion(std::string_view body) {
    const auto versions = json::decodeDocument<std::vector<std::string>>(body);
    if (!versions.ok() || versions.value().empty()) return std::nullopt;
    return QString::fromStdString(versions.value().front());
}

}  // namespace kestrum
