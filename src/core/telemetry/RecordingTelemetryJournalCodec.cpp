#include "core/telemetry/RecordingTelemetryJournalCodec.h"

#include "core/json/JsonDocument.h"
#include "core/telemetry/SessionDocumentFields.h"

#include <algorithm>
#include <set>

namespace kestrum::json {

template <>
struct FieldTable<RecordingMetadata> {
    using R = RecordingMetadata;
    static constexpr auto fields =
        fieldTable<R>(optionalField<&R::champion>("champion"), optionalField<&R::gameID>("gameID"),
                      optionalField<&R::gameMode>("gameMode"), optionalField<&R::position>("position"));
};

template <>
struct FieldTable<RecordingTelemetryJournalLine> {
    using R = RecordingTelemetryJournalLine;
    static constexpr auto fields = fieldTable<R>(
        optionalField<&R::events>("events"), optionalField<&R::metadata>("metadata"),
        optionalField<&R::recordingStartedAt>("recordingStartedAt"), optionalField<&R::snapshot>("snapshot"));
};

}  // namespace kestrum::json

namespace kestrum {

Result<std::string> encodeRecordingTelemetryJournalLine(const RecordingTelemetryJournalLine& line) {
    Result<std::string> encoded = json::encodeDocument(line, 1024);
    if (!encoded.ok()) return encoded;
    std::string text = std::move(encoded).value();
    text.push_back('\n');
    return text;
}

RecordingTelemetryJournalContents decodeRecordingTelemetryJournal(std::string_view bytes) {
    RecordingTelemetryJournalContents contents;
    std::set<std::int64_t> eventIDs;
    while (!bytes.empty()) {
        const std::size_t end = bytes.find('\n');
        const std::string_view text = bytes.substr(0, end);
        bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
        if (text.empty()) continue;
        Result<RecordingTelemetryJournalLine> line =
            json::decodeDocument<RecordingTelemetryJournalLine>(text);
        if (!line.ok()) {
            ++contents.skippedLines;
            continue;
        }
        RecordingTelemetryJournalLine& read = line.value();
        if (read.recordingStartedAt && !contents.recordingStartedAt)
            contents.recordingStartedAt = read.recordingStartedAt;
        if (read.metadata) contents.metadata = std::move(read.metadata);
        if (read.snapshot) contents.telemetry.scoreboard.push_back(std::move(*read.snapshot));
        for (RecordingEvent& event : read.events.value_or(std::vector<RecordingEvent>{})) {
            if (eventIDs.insert(event.id).second) contents.telemetry.events.push_back(std::move(event));
        }
    }
    std::stable_sort(
        contents.telemetry.events.begin(), contents.telemetry.events.end(),
        [](const RecordingEvent& a, const RecordingEvent& b) { return a.videoTime < b.videoTime; });
    return contents;
}

}  // namespace kestrum
