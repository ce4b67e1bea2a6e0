#pragma once

// The review window's content (DashboardView) over a controller, as the benchmarks show it: 1280 by 800,
// loaded, appeared and shown. Main thread, with the Qt Quick modules' engine.

#include "core/dashboard/DashboardController.h"
#include "ui/KestrumUi.h"

#include <QQmlEngine>
#include <QQuickView>

#include <cstdio>
#include <memory>

namespace kestrum::bench {

// Null, after saying why on stderr under the program's name, when the view does not load.
inline std::unique_ptr<QQuickView> showDashboardView(QQmlEngine& engine, DashboardController& controller,
                                                     const char* program) {
    ui::registerQmlModules(engine);
    auto view = std::make_unique<QQuickView>(&engine, nullptr);
    view->setResizeMode(QQuickView::SizeRootObjectToView);
    view->resize(1280, 800);
    view->setInitialProperties({{QStringLiteral("controller"), QVariant::fromValue(&controller)}});
    view->setSource(QUrl(QStringLiteral("qrc:/qt/qml/Kestrum/Dashboard/DashboardView.qml")));
    if (view->status() != QQuickView::Ready) {
        std::fprintf(stderr, "%s: the view did not load\n", program);
        return nullptr;
    }
    controller.appear();
    view->show();
    return view;
}

}  // namespace kestrum::bench
