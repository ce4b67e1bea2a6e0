#include "DashboardViewModels.h"

namespace kestrum::test {

namespace {

QVariant object(QObject* value) {
    return QVariant::fromValue(value);
}

}  // namespace

DashboardViewModels::DashboardViewModels() {
    DashboardController& controller = dashboard_.controller();
    controller.appear();
    dashboard_.showLibrary({recording(QStringLiteral("/recordings/first.mov")),
                            recording(QStringLiteral("/recordings/second.mov"), 600)});
}

QVariantMap DashboardViewModels::propertiesFor(const QString& resourcePath) {
    if (!resourcePath.contains(QLatin1String("/Dashboard/"))) return {};
    DashboardController& controller = dashboard_.controller();
    const QString name = resourcePath.section(QLatin1Char('/'), -1);
    if (name == QLatin1String("DashboardView.qml") || name == QLatin1String("FileActionAlert.qml") ||
        name == QLatin1String("DashboardGuideCard.qml"))
        return {{QStringLiteral("controller"), object(&controller)}};
    if (name == QLatin1String("DashboardSidebar.qml"))
        return {{QStringLiteral("model"), object(controller.sidebar())}};
    if (name == QLatin1String("CustomVideoPlayer.qml") || name == QLatin1String("PlayerSurface.qml"))
        return {{QStringLiteral("model"), object(controller.surface())}};
    if (name == QLatin1String("DashboardToastView.qml"))
        return {{QStringLiteral("playback"), object(controller.playback())}};
    if (name == QLatin1String("MatchCard.qml")) return cardProperties();
    if (name == QLatin1String("CardContextMenu.qml") || name == QLatin1String("CollectionPicker.qml") ||
        name == QLatin1String("SidebarFilterPanel.qml")) {
        return {{QStringLiteral("sidebar"), object(controller.sidebar())}};
    }
    return {};
}

// The first card as its delegate is given it: every role, its row and section, and the sidebar.
QVariantMap DashboardViewModels::cardProperties() {
    DashboardSidebarModel& sidebar = *dashboard_.controller().sidebar();
    MatchCardListModel& cards = *sidebar.cards();
    QVariantMap card{{QStringLiteral("sidebar"), object(&sidebar)}, {QStringLiteral("index"), 0}};
    for (const QByteArray& role : cards.roleNames()) {
        const QString key = QString::fromLatin1(role);
        card.insert(key, cards.value(0, key));
    }
    return card;
}

}  // namespace kestrum::test
