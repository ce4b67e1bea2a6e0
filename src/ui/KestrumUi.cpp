#include "ui/KestrumUi.h"

#include <QQmlEngine>
#include <QQmlExtensionPlugin>
#include <QQuickWindow>
#include <QSGRendererInterface>

// The modules are static libraries: their plugins register the types only when imported here.
Q_IMPORT_QML_PLUGIN(Kestrum_StylePlugin)
Q_IMPORT_QML_PLUGIN(Kestrum_ReviewPlugin)
Q_IMPORT_QML_PLUGIN(Kestrum_PlayerPlugin)
Q_IMPORT_QML_PLUGIN(Kestrum_DashboardPlugin)
Q_IMPORT_QML_PLUGIN(Kestrum_ShellPlugin)

namespace kestrum::ui {

void useOpenGlSceneGraph() {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
}

void registerQmlModules(QQmlEngine& engine) {
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
}

}  // namespace kestrum::ui
