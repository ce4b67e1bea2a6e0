#include "core/json/JsonFailure.h"

#include <QString>

#include <utility>

namespace kestrum::json {

bool JsonFailure::fail(std::string reason) {
    reason_ = std::move(reason);
    innermostFirst_.clear();
    return false;
}

void JsonFailure::addKey(std::string_view key) {
    innermostFirst_.push_back({key, 0, false});
}

void JsonFailure::addIndex(std::size_t index) {
    innermostFirst_.push_back({{}, index, true});
}

std::string JsonFailure::path() const {
    std::string text;
    for (auto it = innermostFirst_.rbegin(); it != innermostFirst_.rend(); ++it) {
        if (it->isIndex) {
            text += '[';
            text += std::to_string(it->index);
            text += ']';
            continue;
        }
        if (!text.empty()) text += '.';
        text += it->key;
    }
    return text;
}

std::string JsonFailure::description() const {
    const std::string where = path();
    return (where.empty() ? std::string("(root)") : where) + ": " + reason_;
}

Error JsonFailure::toError() const {
    return Error{QStringLiteral("KestrumJSONErrorDomain"), 1, QString::fromStdString(description()), nullptr};
}

}  // namespace kestrum::json
