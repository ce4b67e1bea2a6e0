#include "core/assets/DataDragonImageLoader.h"

#include <utility>

namespace kestrum {

DataDragonImageLoader::DataDragonImageLoader(DataDragonAssetStore& store, Clock& clock)
    : store_(store), clock_(clock), state_(std::make_shared<State>()) {}

DataDragonImageLoader::~DataDragonImageLoader() {
    state_->imageChanged = nullptr;
    stop();
}

QString DataDragonImageLoader::taskIdentity(const Request& request) {
    return request.version.value_or(QStringLiteral("current")) + QLatin1Char('/') +
           DataDragonAssetStore::kindWord(request.kind) + QLatin1Char('/') + request.identifier;
}

void DataDragonImageLoader::show(const Request& request) {
    const QString identity = taskIdentity(request);
    if (identity_ == identity && load_) return;
    stop();
    identity_ = identity;
    setImage(*state_, std::nullopt);
    const std::uint64_t generation = state_->generation;
    load_ = Job<void>::start([state = state_, store = &store_, clock = &clock_, request,
                              generation](CancellationToken token) -> QCoro::Task<void> {
        return run(state, store, clock, request, generation, token);
    });
}

void DataDragonImageLoader::stop() {
    // A new generation makes whatever the old load still brings stale.
    ++state_->generation;
    if (load_) load_->cancel();
    identity_.reset();
}

const std::optional<QImage>& DataDragonImageLoader::image() const {
    return state_->image;
}

void DataDragonImageLoader::setImageChangedHandler(std::function<void()> handler) {
    state_->imageChanged = std::move(handler);
}

QCoro::Task<void> DataDragonImageLoader::run(std::shared_ptr<State> state, DataDragonAssetStore* store,
                                             Clock* clock, Request request, std::uint64_t generation,
                                             CancellationToken token) {
    for (int attempt = 1; attempt <= 2; ++attempt) {
        if (attempt == 2) {
            if (token.isCancelled()) co_return;
            // A sleep cut short by a cancellation still goes on to the second attempt; its result is
            // dropped below as stale.
            QCoro::Task<bool> pause = clock->sleep(kRetryDelay, token);
            co_await pause;
        }
        QCoro::Task<std::optional<QImage>> fetch =
            store->image(request.kind, request.identifier, request.version);
        std::optional<QImage> loaded = co_await fetch;
        if (state->generation != generation) co_return;
        if (loaded) {
            setImage(*state, std::move(loaded));
            co_return;
        }
    }
}

void DataDragonImageLoader::setImage(State& state, std::optional<QImage> image) {
    const bool changed = state.image.has_value() || image.has_value();
    state.image = std::move(image);
    if (changed && state.imageChanged) state.imageChanged();
}

}  // namespace kestrum
