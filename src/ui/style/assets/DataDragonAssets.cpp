#include "ui/style/assets/DataDragonAssets.h"

#include "ui/style/SharedWithQml.h"

namespace kestrum::ui {

DataDragonAssets& DataDragonAssets::instance() {
    static DataDragonAssets* const assets = new DataDragonAssets();
    return *assets;
}

DataDragonAssets* DataDragonAssets::create(QQmlEngine*, QJSEngine*) {
    // The store is chosen before any binding reads the version, so that reading never announces a change.
    instance().store();
    return sharedWithQml(instance());
}

DataDragonAssetStore& DataDragonAssets::store() {
    if (!store_) setStore(DataDragonAssetStore::shared());
    return *store_;
}

void DataDragonAssets::setStore(DataDragonAssetStore& store) {
    if (store_ == &store) return;
    disconnect(versionConnection_);
    store_ = &store;
    versionConnection_ = connect(store_, &DataDragonAssetStore::currentVersionChanged, this,
                                 &DataDragonAssets::currentVersionChanged);
    emit currentVersionChanged();
}

QString DataDragonAssets::currentVersion() {
    return store().currentVersion();
}

void DataDragonAssets::refreshVersion() {
    DataDragonAssetStore* const target = &store();
    Job<QString>::start(
        [target](CancellationToken) -> QCoro::Task<QString> { return target->refreshVersion(); });
}

void DataDragonAssets::track(Job<void> load) {
    ++loadsInFlight_;
    emit loadsInFlightChanged();
    Job<void>::start([this, load](CancellationToken) { return awaitLoad(this, load); });
}

QCoro::Task<void> DataDragonAssets::awaitLoad(DataDragonAssets* assets, Job<void> load) {
    co_await load;
    --assets->loadsInFlight_;
    emit assets->loadsInFlightChanged();
}

}  // namespace kestrum::ui
