#include "app/DashboardScreenshotScript.h"

#include "app/DashboardWindow.h"
#include "ui/WindowScreenshot.h"
#include "ui/style/assets/DataDragonAssets.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QQuickItem>

#include <cstdio>

namespace kestrum {

DashboardScreenshotScript::DashboardScreenshotScript(DashboardWindow& window, DashboardLaunchOptions options,
                                                     QObject* parent)
    : QObject(parent), window_(window), options_(std::move(options)) {
    poll_.setInterval(kPollMs);
}

void DashboardScreenshotScript::start() {
    sinceStart_.start();
    connect(&poll_, &QTimer::timeout, this, &DashboardScreenshotScript::waitForLibrary);
    poll_.start();
}

void DashboardScreenshotScript::waitForLibrary() {
    const bool hasCards = window_.controller().sidebar()->cards()->count() > 0;
    if (!hasCards && sinceStart_.elapsed() < kLibraryWaitMs) return;
    poll_.stop();
    poll_.disconnect(this);
    runSteps();
}

void DashboardScreenshotScript::runSteps() {
    DashboardController& controller = window_.controller();
    DashboardSidebarModel& sidebar = *controller.sidebar();
    if (options_.selectRow) sidebar.clickCard(*options_.selectRow);
    if (options_.pendingRow) sidebar.performSwipeAction(*options_.pendingRow, QStringLiteral("trailing"));
    if (options_.opensFilters) sidebar.setRecordingFiltersPresented(true);
    // The movie's state and the seek wait for the load; the rest shows at once.
    connect(&poll_, &QTimer::timeout, this, &DashboardScreenshotScript::afterLoad);
    poll_.start();
}

void DashboardScreenshotScript::afterLoad() {
    DashboardController& controller = window_.controller();
    if (controller.showsLoadingOverlay() && sinceStart_.elapsed() < kScreenshotTimeoutMs) return;
    poll_.stop();
    if (options_.atSeconds) controller.surface()->seek(*options_.atSeconds);
    if (options_.pinsScoreboard) controller.setScoreboardPinned(true);
    if (options_.hoverRow) hoverCard(*options_.hoverRow);
    if (options_.contextMenuRow) clickCard(*options_.contextMenuRow, Qt::RightButton);
    if (options_.opensSpeedMenu) controller.timeline()->setPlaybackRatePresented(true);
    if (options_.opensGuide) controller.setGuidePresented(true);
    sinceSteps_.start();
    if (options_.screenshotPath) takeScreenshot();
}

std::optional<QPointF> DashboardScreenshotScript::cardCentre(int row) const {
    const QVariant path = window_.controller().sidebar()->cards()->value(row, QStringLiteral("moviePath"));
    auto* list = window_.view().rootObject()->findChild<QQuickItem*>(QStringLiteral("matchCardList"));
    if (!list || !path.isValid()) return std::nullopt;
    const QString name = QStringLiteral("matchCard:") + path.toString();
    for (QQuickItem* card : list->property("contentItem").value<QQuickItem*>()->childItems()) {
        if (card->objectName() != name) continue;
        // The card's body lies under its session header, when it has one.
        const qreal headerHeight = card->property("headerHeight").toReal();
        return card->mapToScene(
            QPointF(card->width() / 2, headerHeight + (card->height() - headerHeight) / 2));
    }
    return std::nullopt;
}

void DashboardScreenshotScript::hoverCard(int row) {
    const std::optional<QPointF> centre = cardCentre(row);
    if (!centre) return;
    QMouseEvent move(QEvent::MouseMove, *centre, window_.view().mapToGlobal(*centre), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window_.view(), &move);
}

void DashboardScreenshotScript::clickCard(int row, Qt::MouseButton button) {
    const std::optional<QPointF> centre = cardCentre(row);
    if (!centre) return;
    const QPointF global = window_.view().mapToGlobal(*centre);
    QMouseEvent press(QEvent::MouseButtonPress, *centre, global, button, button, Qt::NoModifier);
    QCoreApplication::sendEvent(&window_.view(), &press);
    QMouseEvent release(QEvent::MouseButtonRelease, *centre, global, button, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window_.view(), &release);
}

bool DashboardScreenshotScript::isSettled() const {
    return sinceSteps_.isValid() && sinceSteps_.elapsed() >= kSettleMs &&
           ui::DataDragonAssets::instance().loadsInFlight() == 0;
}

void DashboardScreenshotScript::takeScreenshot() {
    auto* screenshot = new ui::WindowScreenshot(
        window_.view(), [this] { return isSettled(); }, kScreenshotTimeoutMs, this);
    const QString path = *options_.screenshotPath;
    connect(screenshot, &ui::WindowScreenshot::grabbed, this, [path](const QImage& picture) {
        if (!ui::savePicture(picture, path)) {
            std::fprintf(stderr, "kestrum: cannot write the screenshot to %s\n", qPrintable(path));
            QCoreApplication::exit(1);
            return;
        }
        QCoreApplication::exit(0);
    });
}

}  // namespace kestrum
