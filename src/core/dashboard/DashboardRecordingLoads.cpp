#include "core/dashboard/DashboardRecordingLoads.h"

#include "core/library/detail/RecordingDetailLoader.h"

namespace kestrum {

DashboardRecordingLoads DashboardRecordingLoads::from(RecordingDetailLoader& loader) {
    return {
        [&loader](const MatchVideo& match) { return loader.detail(match); },
        [&loader](const MatchVideo& match) { return loader.thumbnail(match, std::nullopt); },
    };
}

}  // namespace kestrum
