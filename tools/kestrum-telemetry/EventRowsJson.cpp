#include "EventRowsJson.h"

#include "core/telemetry/SessionDocumentCodec.h"

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace kestrum::tools {

Result<std::string> encodeEventRows(const std::vector<RecordingEvent>& events) {
    RecordingSessionData document;
    document.events = events;
    auto encoded = encodeSessionData(document);
    if (!encoded.ok()) return encoded.error();
    // Cut the "events" array out of the document, so that rows are written by the one codec there is.
    rapidjson::Document parsed;
    parsed.Parse(encoded.value().data(), encoded.value().size());
    if (parsed.HasParseError() || !parsed.IsObject() || !parsed.HasMember("events")) {
        return Error::withDescription(QStringLiteral("the session document codec wrote no events array"));
    }
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    parsed["events"].Accept(writer);
    return std::string(buffer.GetString(), buffer.GetSize());
}

}  // namespace kestrum::tools
