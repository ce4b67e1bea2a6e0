#include "core/library/MatchVideo.h"

#include "core/library/LibraryText.h"
#include "core/telemetry/vocabulary/QueueTitle.h"
#include "core/telemetry/vocabulary/TextCase.h"

namespace kestrum {

std::string displayTitle(const MatchVideo& video) {
    if (!video.queueID) return video.matchTitle.value_or("Recorded Match");
    const std::string queue(queueTitle(*video.queueID));
    if (!video.matchTitle || video.matchTitle->empty()) return queue;

    std::vector<std::string> pieces = splitTitle(*video.matchTitle);
    if (equalIgnoringCase(pieces.front(), queue)) return *video.matchTitle;

    std::string details = *video.matchTitle;
    const std::string head = upperCased(pieces.front());
    if (head == "CLASSIC" || head == "ARAM") {
        pieces.erase(pieces.begin());
        details = joinTitle(pieces);
    }
    if (details.empty()) return queue;
    return queue + std::string(kTitleSeparator) + details;
}

}  // namespace kestrum
