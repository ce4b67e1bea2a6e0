#include "core/telemetry/vocabulary/StructureCode.h"

#include "core/telemetry/vocabulary/TextCase.h"

namespace kestrum {

std::optional<RecordingTeam> structureCodeTeam(const std::optional<std::string>& name) {
    if (!name) return std::nullopt;
    const std::string code = upperCased(*name);
    if (code.find("T100") != std::string::npos || code.find("_T1_") != std::string::npos) {
        return RecordingTeam::blue;
    }
    if (code.find("T200") != std::string::npos || code.find("_T2_") != std::string::npos) {
        return RecordingTeam::red;
    }
    return std::nullopt;
}

RecordingTeam oppositeTeam(RecordingTeam team) {
    return team == RecordingTeam::blue ? RecordingTeam::red : RecordingTeam::blue;
}

}  // namespace kestrum
