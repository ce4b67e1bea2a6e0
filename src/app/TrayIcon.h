#pragma once

#include "core/recording/RecordingStatus.h"
#include "platform/ports/DesktopColorScheme.h"
#include "platform/ports/Subscription.h"

#include <QObject>
#include <QPoint>
#include <QSystemTrayIcon>

namespace kestrum {

// The application's icon in the desktop's tray (StatusNotifierItem where the desktop has it, the X11
// tray otherwise): the status image of the recorder, in the variant that reads on the desktop's colour
// scheme, following both. A click asks for the panel at the pointer, since a tray cannot tell reliably
// where its icon is.
//
// Threads: main thread, with a QApplication. The colour scheme port must outlive it.
class TrayIcon : public QObject {
    Q_OBJECT

  public:
    TrayIcon(DesktopColorScheme& desktop, RecordingStatus status, QObject* parent = nullptr);

    // Whether the desktop has a tray to show the icon in.
    static bool isAvailable();

    void setStatus(RecordingStatus status);
    void show();
    // The image shown now, as "MenuBarReady-dark".
    QString iconName() const { return iconName_; }

  signals:
    // The user clicked the icon; `pointer` is where the pointer was, in the desktop's coordinates.
    void clicked(QPoint pointer);

  private:
    void updateIcon();

    DesktopColorScheme& desktop_;
    Subscription desktopObserver_;
    QSystemTrayIcon icon_;
    // Main thread.
    RecordingStatus status_;
    QString iconName_;
};

}  // namespace kestrum
