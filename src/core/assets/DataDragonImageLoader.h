#pragma once

#include "base/async/Clock.h"
#include "base/async/Job.h"
#include "core/assets/DataDragonAssetStore.h"

#include <QImage>
#include <QString>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace kestrum {

// What a view of one piece of game art shows: the image once it has arrived, nothing (the placeholder)
// before and after a failure. The view sets the request it shows; the loader fetches through the asset
// store and tries a second time, 0.35 seconds later, when the first attempt gives nothing.
//
// A load belongs to the request's identity (`taskIdentity`): a new identity cancels the running load and
// starts over with no image; the same identity again changes nothing. A cancelled load may still finish
// its attempts, but its result is dropped.
//
// Threads: the main thread, like the store. The store and the clock must outlive the loader; a load
// still running when the loader goes keeps only its own state alive and reports to no one.
class DataDragonImageLoader {
  public:
    using AssetKind = DataDragonAssetStore::AssetKind;

    struct Request {
        AssetKind kind = AssetKind::champion;
        QString identifier;
        // Absent: the store's current version.
        std::optional<QString> version;
    };

    static constexpr std::chrono::milliseconds kRetryDelay{350};

    explicit DataDragonImageLoader(DataDragonAssetStore& store, Clock& clock = Clock::system());
    ~DataDragonImageLoader();
    DataDragonImageLoader(const DataDragonImageLoader&) = delete;
    DataDragonImageLoader& operator=(const DataDragonImageLoader&) = delete;

    // `version` or "current", "/", the kind word, "/", `identifier`.
    static QString taskIdentity(const Request& request);

    // Shows `request`: with a new identity, cancels the running load, clears the image and starts a load.
    void show(const Request& request);

    // The view went away: cancels the running load and drops whatever it brings.
    void stop();

    const std::optional<QImage>& image() const;

    // Called on every change of `image()`, the clearing at a new identity included.
    void setImageChangedHandler(std::function<void()> handler);

    // The running or last load, to be awaited by whoever needs its end (tests); absent before any.
    std::optional<Job<void>> currentLoad() const { return load_; }

  private:
    // Shared with the running load, so that a loader that goes first leaves it nothing dangling.
    struct State {
        std::uint64_t generation = 0;
        std::optional<QImage> image;
        std::function<void()> imageChanged;
    };

    static QCoro::Task<void> run(std::shared_ptr<State> state, DataDragonAssetStore* store, Clock* clock,
                                 Request request, std::uint64_t generation, CancellationToken token);
    static void setImage(State& state, std::optional<QImage> image);

    DataDragonAssetStore& store_;
    Clock& clock_;
    std::shared_ptr<State> state_;
    std::optional<QString> identity_;
    std::optional<Job<void>> load_;
};

}  // namespace kestrum
