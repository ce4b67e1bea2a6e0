#pragma once

#include "core/library/MatchVideo.h"
#include "core/library/detail/RecordingDetail.h"

#include <QFuture>
#include <QImage>

#include <functional>
#include <memory>
#include <optional>

namespace kestrum {

class RecordingDetailLoader;

// What the review window loads for a selected recording: its detail (telemetry and the movie's shape)
// and a picture to show while the movie is not ready. The detail loader's in the application; a test
// gives futures it finishes when it likes, to decide the order in which loads end.
//
// Threads: called on the main thread; the futures may finish on any thread and are awaited on the main
// thread. A null detail counts as one that could not be loaded.
struct DashboardRecordingLoads {
    std::function<QFuture<std::shared_ptr<const RecordingDetail>>(const MatchVideo&)> detail;
    std::function<QFuture<std::optional<QImage>>(const MatchVideo&)> thumbnail;

    // Through `loader`, which must outlive every future asked for; the thumbnail is made from the
    // movie's start when no cache has one.
    static DashboardRecordingLoads from(RecordingDetailLoader& loader);
};

}  // namespace kestrum
