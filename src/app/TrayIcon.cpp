#include "app/TrayIcon.h"

#include "core/shell/MenuBarStatusImage.h"

#include <QCursor>
#include <QIcon>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

#include <array>

namespace kestrum {

namespace {

// The sizes trays ask for: 16 and 22 px, and both at twice the scale.
constexpr std::array<int, 4> kIconSizesPx{16, 22, 32, 44};

// Drawn here rather than through the SVG icon engine, so that the icon does not depend on that plugin
// being installed.
QIcon renderedIcon(const QString& name) {
    QSvgRenderer renderer(QStringLiteral(":/kestrum/tray/%1.svg").arg(name));
    QIcon icon;
    for (const int sizePx : kIconSizesPx) {
        QPixmap pixmap(sizePx, sizePx);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

}  // namespace

TrayIcon::TrayIcon(DesktopColorScheme& desktop, RecordingStatus status, QObject* parent)
    : QObject(parent), desktop_(desktop), status_(status) {
    desktopObserver_ =
        desktop_.observe([this](std::optional<DesktopColorScheme::Preference>) { updateIcon(); });
    connect(&icon_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick ||
            reason == QSystemTrayIcon::MiddleClick) {
            emit clicked(QCursor::pos());
        }
    });
    updateIcon();
}

bool TrayIcon::isAvailable() {
    return QSystemTrayIcon::isSystemTrayAvailable();
}

void TrayIcon::setStatus(RecordingStatus status) {
    if (status == status_) return;
    status_ = status;
    updateIcon();
}

void TrayIcon::show() {
    icon_.show();
}

void TrayIcon::updateIcon() {
    const QString name = trayIconName(status_, desktop_.preference());
    icon_.setToolTip(QStringLiteral("Kestrum: ") + rawValue(status_));
    if (name == iconName_) return;
    iconName_ = name;
    icon_.setIcon(renderedIcon(name));
}

}  // namespace kestrum
