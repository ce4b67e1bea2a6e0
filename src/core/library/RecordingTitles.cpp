#include "core/library/RecordingTitles.h"

#include "core/library/LibraryPositions.h"
#include "core/library/LibraryText.h"
#include "core/telemetry/vocabulary/ChampionNames.h"
#include "core/telemetry/vocabulary/GameModeTitle.h"
#include "core/telemetry/vocabulary/QueueTitle.h"
#include "core/telemetry/vocabulary/TextCase.h"

#include <array>
#include <utility>

namespace kestrum {

namespace {

constexpr std::string_view kLeagueMatch = "League Match";
constexpr std::string_view kCustomClassicHead = "Custom \xC2\xB7 Tournament Draft \xC2\xB7 Summoner's Rift";
constexpr std::int64_t kCustomGameMinimumAttempts = 5;

constexpr std::array<std::string_view, 11> kGeneratedTitleHeads{
    "CLASSIC", "LEAGUE MATCH", "CUSTOM GAME", "CUSTOM",        "ARAM",        "ARAM MAYHEM",
    "KIWI",    "ARENA",        "CHERRY",      "PRACTICE TOOL", "PRACTICETOOL"};

// The head that a mode word alone decides, whatever the post-game record says.
std::optional<std::string> modeHead(const std::string& upperMode, const RecordingSessionData& session) {
    if (upperMode == "KIWI") return "ARAM Mayhem";
    if (upperMode == "PRACTICETOOL") return "Practice Tool";
    if (upperMode == "CHERRY") return "Arena";
    if (upperMode == "CLASSIC" && isCustomGame(session)) return std::string(kCustomClassicHead);
    return std::nullopt;
}

std::string titleHead(const RecordingSessionData& session, const ParsedRecordingFileName& fileName) {
    if (fileName.gameMode) {
        if (auto head = modeHead(upperCased(*fileName.gameMode), session)) return *head;
    }
    if (!session.matchData) {
        return fileName.gameMode ? gameModeTitle(*fileName.gameMode) : std::string(kLeagueMatch);
    }
    const std::string_view queue = queueTitle(session.matchData->queueID);
    if (queue == kLeagueMatch && fileName.gameMode) return gameModeTitle(*fileName.gameMode);
    return std::string(queue);
}

std::optional<std::string> championDisplay(const ParsedRecordingFileName& fileName) {
    if (!fileName.champion) return std::nullopt;
    return championDisplayName(*fileName.champion);
}

std::optional<std::string> laneDisplay(const ParsedRecordingFileName& fileName) {
    if (!fileName.lane) return std::nullopt;
    return laneDisplayName(*fileName.lane);
}

}  // namespace

std::optional<std::string> fileNameTitle(const ParsedRecordingFileName& fileName) {
    if (!fileName.champion) return std::nullopt;
    std::optional<std::string> mode;
    if (fileName.gameMode) mode = gameModeTitle(*fileName.gameMode);
    return joinPresent({mode, championDisplay(fileName), laneDisplay(fileName)});
}

bool isCustomGame(const RecordingSessionData& session) {
    if (session.matchData) return session.matchData->queueID == 0;
    if (!session.enrichment || !session.enrichment->lastError) return false;
    const RecordingEnrichmentState& enrichment = *session.enrichment;
    if (enrichment.lastError->find("HTTP 404") == std::string::npos) return false;
    return enrichment.status == RecordingEnrichmentState::Status::failed ||
           enrichment.attempts >= kCustomGameMinimumAttempts;
}

std::string sessionTitle(const RecordingSessionData& session, const ParsedRecordingFileName& fileName) {
    return *joinPresent({titleHead(session, fileName), championDisplay(fileName), laneDisplay(fileName)});
}

bool looksGeneratedTitle(std::string_view title) {
    const std::string head = upperCased(splitTitle(title).front());
    for (const std::string_view generated : kGeneratedTitleHeads) {
        if (generated == head) return true;
    }
    return false;
}

std::optional<std::string> repairedTitle(const RecordingSessionData& session,
                                         const ParsedRecordingFileName& fileName) {
    if (session.mediaKind == kHighlightMediaKind) return std::nullopt;
    std::string worked = sessionTitle(session, fileName);
    if (!session.title) return worked;
    if (*session.title != worked && looksGeneratedTitle(*session.title)) return worked;
    return std::nullopt;
}

}  // namespace kestrum
