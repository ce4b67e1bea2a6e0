#include "core/telemetry/vocabulary/QueueTitle.h"

namespace kestrum {

std::string_view queueTitle(std::int64_t queueID) {
    switch (queueID) {
        case 0:
            return "Custom Game";
        case 4:
        case 420:
            return "Ranked Solo/Duo";
        case 6:
        case 42:
        case 710:
            return "Ranked 5s";
        case 9:
        case 41:
            return "Ranked 3s";
        case 400:
            return "Normal Draft";
        case 430:
            return "Normal Blind";
        case 440:
            return "Ranked Flex";
        case 450:
            return "ARAM";
        case 480:
        case 490:
            return "Quickplay";
        case 700:
            return "Clash";
        case 830:
        case 840:
        case 850:
            return "Co-op vs. AI";
        case 900:
            return "URF";
        case 1020:
            return "One for All";
        case 1300:
            return "Nexus Blitz";
        case 1400:
            return "Ultimate Spellbook";
        case 1700:
        case 1710:
        case 1740:
            return "Arena";
        case 1810:
        case 1820:
        case 1830:
        case 1840:
            return "Swarm";
        default:
            return "League Match";
    }
}

}  // namespace kestrum
