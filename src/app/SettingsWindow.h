#pragma once

#include "core/shell/SettingsModel.h"

#include <QObject>
#include <QQuickView>

#include <memory>

class QQmlEngine;

namespace kestrum {

// The settings window (SettingsView): titled "Kestrum Settings", identifier "settings", 580 by 760 where
// the screen allows and never taller than its available height (the form scrolls). Built on the first
// request and only hidden on close, so later openings are instant; each opening tells the model, which
// scrolls the form back to its top, measures storage and polls the permissions until the window closes.
//
// Threads: main thread. The engine and the model must outlive it.
class SettingsWindow : public QObject {
    Q_OBJECT

  public:
    SettingsWindow(QQmlEngine& engine, SettingsModel& model, QObject* parent = nullptr);
    ~SettingsWindow() override;

    // Shows the window (sized to the screen it opens on) and raises it.
    void show();
    QQuickView& view() { return *view_; }
    QString errors() const;

  private:
    void fitToScreen();

    std::unique_ptr<QQuickView> view_;
    bool hasBeenPlaced_ = false;  // main thread
};

}  // namespace kestrum
