#include "core/json/JsonDocument.h"

#include "core/json/ExactNumberHandler.h"

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <QString>

namespace kestrum::json {

namespace {

Error parseError(std::size_t offset, const QString& reason) {
    return Error{QStringLiteral("KestrumJSONErrorDomain"), 2,
                 QStringLiteral("invalid JSON at byte offset %1: %2").arg(offset).arg(reason), nullptr};
}

}  // namespace

Status parseJson(std::string_view bytes, rapidjson::Document& document) {
    rapidjson::MemoryStream stream(bytes.data(), bytes.size());
    rapidjson::Reader reader;
    ExactNumberHandler handler(document);
    rapidjson::ParseResult result;
    const auto generate = [&](rapidjson::Document&) {
        result = reader.Parse<kParseFlags>(stream, handler);
        return !result.IsError();
    };
    document.Populate(generate);
    return parseOutcome(result, stream.Tell(), bytes.size(), handler.numberTooBig(), document);
}

Status parseOutcome(const rapidjson::ParseResult& result, std::size_t stoppedAt, std::size_t inputBytes,
                    bool numberTooBig, rapidjson::Document& document) {
    if (!result.IsError()) {
        // The reader takes a NUL byte for the end of its input; anything from there on is not JSON.
        if (stoppedAt == inputBytes) return Status::success();
        document.SetNull();
        return parseError(
            stoppedAt,
            QString::fromUtf8(rapidjson::GetParseError_En(rapidjson::kParseErrorDocumentRootNotSingular)));
    }
    if (numberTooBig) {
        return parseError(result.Offset(),
                          QString::fromUtf8(rapidjson::GetParseError_En(rapidjson::kParseErrorNumberTooBig)));
    }
    return parseError(result.Offset(), QString::fromUtf8(rapidjson::GetParseError_En(result.Code())));
}

}  // namespace kestrum::json
