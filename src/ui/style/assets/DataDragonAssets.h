#pragma once

#include "core/assets/DataDragonAssetStore.h"

#include <QObject>
#include <QtQmlIntegration>

class QJSEngine;
class QQmlEngine;

namespace kestrum::ui {

// The QML singleton `DataDragonAssets`: the asset store the views' pictures load from, its version, and
// the refresh that a panel starts when it appears with something to show. By default the process-wide
// store; a test or a tool may set another one before the first picture loads.
//
// Threads: main thread. One instance for the process, shared by every QML engine, never destroyed.
class DataDragonAssets : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(DataDragonAssets)
    QML_SINGLETON
    Q_PROPERTY(QString currentVersion READ currentVersion NOTIFY currentVersionChanged)
    Q_PROPERTY(int loadsInFlight READ loadsInFlight NOTIFY loadsInFlightChanged)

  public:
    static DataDragonAssets& instance();
    static DataDragonAssets* create(QQmlEngine* qmlEngine, QJSEngine* jsEngine);

    DataDragonAssetStore& store();
    // The store must outlive every picture that loads from it.
    void setStore(DataDragonAssetStore& store);

    QString currentVersion();
    // Pictures whose load (both attempts) has not ended yet: a screenshot waits for none.
    int loadsInFlight() const { return loadsInFlight_; }

    // Starts the store's version refresh; callers that come while one runs share it.
    Q_INVOKABLE void refreshVersion();

    // Counts one picture's load until `load` ends.
    void track(Job<void> load);

  signals:
    void currentVersionChanged();
    void loadsInFlightChanged();

  private:
    DataDragonAssets() = default;
    static QCoro::Task<void> awaitLoad(DataDragonAssets* assets, Job<void> load);

    DataDragonAssetStore* store_ = nullptr;  // main thread; null: the shared store, made on first use
    QMetaObject::Connection versionConnection_;
    int loadsInFlight_ = 0;  // main thread
};

}  // namespace kestrum::ui
