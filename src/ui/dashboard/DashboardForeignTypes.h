#pragma once

#include "core/dashboard/DashboardController.h"
#include "core/dashboard/DashboardPlayback.h"
#include "core/dashboard/DashboardSidebarModel.h"
#include "core/dashboard/MatchCardListModel.h"
#include "core/dashboard/VideoPlayerSurfaceModel.h"

// QML_FOREIGN lives in QtQml (not in QtQmlIntegration) in Qt 6.4; moc must see its definition.
#include <QtQml/qqml.h>
#include <QtQml/qqmlregistration.h>

// The review window's core objects as its views know them: declarations for QML's type registrar (and so
// for qmllint and the compiled bindings). The window's owner makes every one in C++; none is created in
// QML. They stand together because each is a declaration only.
namespace kestrum::ui {

struct DashboardControllerForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::DashboardController)
    QML_NAMED_ELEMENT(DashboardController)
    QML_UNCREATABLE("made by the review window's owner")
};

struct DashboardPlaybackForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::DashboardPlayback)
    QML_NAMED_ELEMENT(DashboardPlayback)
    QML_UNCREATABLE("made by the dashboard controller")
};

struct DashboardSidebarModelForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::DashboardSidebarModel)
    QML_NAMED_ELEMENT(DashboardSidebarModel)
    QML_UNCREATABLE("made by the dashboard controller")
};

struct MatchCardListModelForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::MatchCardListModel)
    QML_NAMED_ELEMENT(MatchCardListModel)
    QML_UNCREATABLE("made by the sidebar model")
};

struct VideoPlayerSurfaceModelForeign {
    Q_GADGET
    QML_FOREIGN(kestrum::VideoPlayerSurfaceModel)
    QML_NAMED_ELEMENT(VideoPlayerSurfaceModel)
    QML_UNCREATABLE("made by the dashboard controller")
};

}  // namespace kestrum::ui
