#pragma once

#include "core/dashboard/DashboardDeletionScheduler.h"
#include "core/dashboard/DashboardPlayback.h"
#include "core/dashboard/DashboardSidebarLayout.h"
#include "core/dashboard/DashboardSidebarNavigation.h"
#include "core/dashboard/DashboardSwipeRows.h"
#include "core/dashboard/MatchCardListModel.h"
#include "core/dashboard/SidebarFilterChoices.h"
#include "core/library/RecordingLibraryModel.h"
#include "core/review/ReviewRowListModel.h"
#include "platform/ports/FileActions.h"

#include <QObject>
#include <QString>

#include <functional>

namespace kestrum {

// The sidebar as its views bind it: the head ("Library" and the guide's button), the collection picker,
// the filter pop-up, the header of the collection's section with its count, the cards, and where the list
// scrolls. Every input of the sidebar comes here by row of `cards` and is decided here or by the
// navigation, the deletions and the library.
//
// `collections` roles: "collection" (0 full matches, 1 favourites), "title", "symbol", "countText",
// "isSelected". `filterChoices` roles: "group" ("Mode", "Lane", "Champion"), "label", "isSelected".
//
// Threads: the main thread. Everything given must outlive the model.
class DashboardSidebarModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString guideButtonHelp READ guideButtonHelp CONSTANT)
    Q_PROPERTY(QString guideButtonSymbol READ guideButtonSymbol CONSTANT)
    Q_PROPERTY(double width READ width CONSTANT)
    Q_PROPERTY(double contentWidth READ contentWidth CONSTANT)
    Q_PROPERTY(double edgeInset READ edgeInset CONSTANT)
    Q_PROPERTY(double cardSpacing READ cardSpacing CONSTANT)
    Q_PROPERTY(double contentMargin READ contentMargin CONSTANT)
    Q_PROPERTY(double cardHorizontalPadding READ cardHorizontalPadding CONSTANT)
    Q_PROPERTY(double cardElementSpacing READ cardElementSpacing CONSTANT)

    Q_PROPERTY(kestrum::ReviewRowListModel* collections READ collections CONSTANT)
    Q_PROPERTY(QString sectionTitle READ sectionTitle NOTIFY headerChanged)
    Q_PROPERTY(QString sectionSymbol READ sectionSymbol NOTIFY headerChanged)
    Q_PROPERTY(QString sectionCountText READ sectionCountText NOTIFY headerChanged)

    Q_PROPERTY(kestrum::ReviewRowListModel* filterChoices READ filterChoices CONSTANT)
    Q_PROPERTY(QString filtersTitle READ filtersTitle CONSTANT)
    Q_PROPERTY(QString filtersSymbol READ filtersSymbol CONSTANT)
    Q_PROPERTY(bool hasActiveFilters READ hasActiveFilters NOTIFY filtersChanged)
    Q_PROPERTY(bool isRecordingFiltersPresented READ isRecordingFiltersPresented WRITE
                   setRecordingFiltersPresented NOTIFY filtersPresentedChanged)

    Q_PROPERTY(kestrum::MatchCardListModel* cards READ cards CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY emptyStateChanged)
    Q_PROPERTY(QString emptyMessage READ emptyMessage NOTIFY emptyStateChanged)

    Q_PROPERTY(QString scrollTargetKind READ scrollTargetKind NOTIFY scrollTargetChanged)
    Q_PROPERTY(int scrollTargetRow READ scrollTargetRow NOTIFY scrollTargetChanged)
    Q_PROPERTY(quint64 scrollSerial READ scrollSerial NOTIFY scrollTargetChanged)

  public:
    struct Collaborators {
        RecordingLibraryModel& library;
        DashboardSidebarNavigation& navigation;
        DashboardDeletionScheduler& deletions;
        DashboardSwipeRows& swipes;
        DashboardPlayback& playback;
        FileActions& fileActions;
        std::function<bool(const QString&)> isDamaged;
        // The guide's button.
        std::function<void()> presentGuide;
    };

    explicit DashboardSidebarModel(Collaborators collaborators, QObject* parent = nullptr);

    QString title() const { return QStringLiteral("Library"); }
    QString guideButtonHelp() const { return QStringLiteral("Open Kestrum Guide"); }
    QString guideButtonSymbol() const { return QStringLiteral("questionmark.circle"); }
    double width() const { return DashboardSidebarLayout::width; }
    double contentWidth() const { return DashboardSidebarLayout::contentWidth; }
    double edgeInset() const { return DashboardSidebarLayout::sidebarEdgeInset; }
    double cardSpacing() const { return DashboardSidebarLayout::cardSpacing; }
    double contentMargin() const { return DashboardSidebarLayout::contentMargin; }
    double cardHorizontalPadding() const { return DashboardSidebarLayout::matchCardHorizontalPadding; }
    double cardElementSpacing() const { return DashboardSidebarLayout::matchCardElementSpacing; }

    ReviewRowListModel* collections() const { return collections_; }
    QString sectionTitle() const;
    QString sectionSymbol() const;
    QString sectionCountText() const;

    ReviewRowListModel* filterChoices() const { return filterChoices_; }
    QString filtersTitle() const { return QStringLiteral("Filters"); }
    QString filtersSymbol() const { return QStringLiteral("line.3.horizontal.decrease.circle"); }
    bool hasActiveFilters() const;
    bool isRecordingFiltersPresented() const { return isRecordingFiltersPresented_; }
    void setRecordingFiltersPresented(bool presented);

    MatchCardListModel* cards() const { return cards_; }
    bool isEmpty() const { return cards_->count() == 0; }
    // The library's own word on an empty list: the last scan's error, if any.
    QString emptyMessage() const;

    QString scrollTargetKind() const;
    int scrollTargetRow() const;
    quint64 scrollSerial() const { return c_.navigation.scrollSerial(); }

    // Keys of the list (Up, Down and Delete), clicks and the guide.
    Q_INVOKABLE void moveUp();
    Q_INVOKABLE void moveDown();
    Q_INVOKABLE void deleteCommand();
    Q_INVOKABLE void clickCard(int row);
    Q_INVOKABLE void toggleFavorite(int row);
    Q_INVOKABLE void triggerContextAction(int row, int action);
    Q_INVOKABLE void selectCollection(int collection);
    Q_INVOKABLE void chooseFilter(int row);
    Q_INVOKABLE void clearFilters();
    Q_INVOKABLE void presentGuide();

    // The swipe on a card: the pointer's press, moves and release, in coordinates that do not move with
    // the card (the list's); the press is where the translation counts from, whatever threshold a drag
    // handler has. `cancelSwipe` when the drag is taken away; `performSwipeAction` for the accessibility
    // actions ("leading" or "trailing").
    Q_INVOKABLE void pressCard(int row, double x, double y);
    Q_INVOKABLE void dragCard(int row, double x, double y);
    Q_INVOKABLE void releaseCard(int row, double x, double y);
    Q_INVOKABLE void cancelSwipe(int row);
    Q_INVOKABLE void performSwipeAction(int row, const QString& side);

  signals:
    void headerChanged();
    void filtersChanged();
    void filtersPresentedChanged();
    void emptyStateChanged();
    void scrollTargetChanged();

  private:
    void publishCollections();
    void publishFilterChoices();
    RecordingLibraryFilters currentFilters() const;
    std::optional<QString> pathAt(int row) const;

    Collaborators c_;
    MatchCardListModel* cards_;                 // child
    ReviewRowListModel* collections_;           // child
    ReviewRowListModel* filterChoices_;         // child
    std::vector<SidebarFilterChoice> choices_;  // main thread: what filterChoices shows
    bool isRecordingFiltersPresented_ = false;  // main thread
};

}  // namespace kestrum
