#pragma once

#include "core/shell/MenuBarModel.h"

#include <QObject>
#include <QPoint>
#include <QQuickView>

#include <memory>

class QQmlEngine;

namespace kestrum {

// The window that holds the tray's panel (MenuBarView). Beside a tray it is a frameless panel placed by
// the pointer that clicked the icon, kept on the screen, and hidden as soon as it loses the focus, as a
// drop-down does. Without a tray it is a small ordinary window, so that the user always has a way in;
// it then stays until closed. Its identifier is "menubar", its title "Kestrum".
//
// Threads: main thread. The engine and the model must outlive it.
class MenuBarPanelWindow : public QObject {
    Q_OBJECT

  public:
    enum class Kind { trayPanel, ordinaryWindow };

    MenuBarPanelWindow(QQmlEngine& engine, MenuBarModel& model, Kind kind, QObject* parent = nullptr);
    ~MenuBarPanelWindow() override;

    // The tray panel at `pointer`; a click while it shows hides it.
    void toggleAt(QPoint pointer);
    // The ordinary window, centred on the primary screen the first time.
    void showWindow();

    QQuickView& view() { return *view_; }
    // Why the view did not load; empty when it did.
    QString errors() const;

  private:
    std::unique_ptr<QQuickView> view_;
    const Kind kind_;
    bool hasBeenPlaced_ = false;  // main thread
};

}  // namespace kestrum
