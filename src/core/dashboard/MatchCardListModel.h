#pragma once

#include "core/dashboard/DashboardDeletionScheduler.h"
#include "core/dashboard/DashboardSwipeRows.h"
#include "core/library/RecordingLibraryModel.h"

#include <QAbstractListModel>
#include <QHash>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace kestrum {

// The sidebar's cards: one row per recording displayed (the chosen collection through the filters),
// newest first, with the session header as the row's section, for a ListView with sections. A row holds
// only its entry and section; every text is made when a delegate asks for it, so a thousand recordings
// cost what the visible cards cost. A change that keeps the list (a favourite, the selection, a pending
// deletion's countdown, a swipe's frame) reports only the rows it touches.
//
// Roles:
//   "moviePath", "section" (the session header; a header that repeats gets an invisible U+200B suffix so
//   each session is its own section), "title",
//   "mapArtName" (empty: no art), "mapLabel", "championIdentifier" (the portrait's key; empty: none),
//   "championVersion" (empty: the art store's current version), "roleArtName", "roleLabel" (empty: none),
//   "kdaLine", "kdaRatio", "kdaHelp",
//   "isSelected", "isFavorite", "favoriteSymbol" ("star.fill"), "favoriteHelp",
//   "isPendingDeletion", "pendingTitle" ("Deleting"), "pendingCountdown" (whole seconds, "%lld"),
//   "pendingSymbol" ("arrow.uturn.backward"),
//   "isDamaged", "damagedText", "accessibleLabel",
//   "leadingSymbol", "trailingSymbol", "leadingActionName", "trailingActionName",
//   "swipeOffset", "swipeSide" ("leading", "trailing" or ""), "swipeIconProgress", "swipeIconScale",
//   "swipeIconOpacity", "swipeIconSize", "contextMenu" (list of {label, symbol, action}).
//
// Threads: the main thread. The library, the deletions and the swipes must outlive the model.
class MatchCardListModel : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

  public:
    enum Role {
        moviePathRole = Qt::UserRole + 1,
        sectionRole,
        titleRole,
        mapArtNameRole,
        mapLabelRole,
        championIdentifierRole,
        championVersionRole,
        roleArtNameRole,
        roleLabelRole,
        kdaLineRole,
        kdaRatioRole,
        kdaHelpRole,
        isSelectedRole,
        isFavoriteRole,
        favoriteSymbolRole,
        favoriteHelpRole,
        isPendingDeletionRole,
        pendingTitleRole,
        pendingCountdownRole,
        pendingSymbolRole,
        isDamagedRole,
        damagedTextRole,
        accessibleLabelRole,
        leadingSymbolRole,
        trailingSymbolRole,
        leadingActionNameRole,
        trailingActionNameRole,
        swipeOffsetRole,
        swipeSideRole,
        swipeIconProgressRole,
        swipeIconScaleRole,
        swipeIconOpacityRole,
        swipeIconSizeRole,
        contextMenuRole,
    };

    MatchCardListModel(RecordingLibraryModel& library, DashboardDeletionScheduler& deletions,
                       DashboardSwipeRows& swipes, std::function<bool(const QString&)> isDamaged,
                       QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int count() const { return static_cast<int>(rows_.size()); }
    // The entry of a row; absent for a row out of range.
    std::optional<MatchVideo> matchAt(int row) const;
    // The row of a movie; -1 when it is not displayed.
    Q_INVOKABLE int rowOf(const QString& moviePath) const;
    // The value of a role by its name, for tests and for a view outside a delegate.
    Q_INVOKABLE QVariant value(int row, const QString& roleName) const;
    // The champion portraits the cards need, each once, in the order of the cards: one prefetch through
    // the art store (whose current version they all use).
    Q_INVOKABLE QStringList championIdentifiers() const;

    // Builds the rows again from the library; called on every change of the displayed list.
    void rebuild();
    // Reports a change of what the card of `moviePath` shows.
    void refreshCard(const QString& moviePath, const QList<int>& roles = {});

  signals:
    void countChanged();

  private:
    struct Row {
        MatchVideo match;
        QString section;
        friend bool operator==(const Row&, const Row&) = default;
    };

    QVariant cardValue(const Row& row, int role) const;
    QVariant swipeValue(const Row& row, int role) const;
    QVariant deletionValue(const Row& row, int role) const;
    std::vector<Row> buildRows() const;
    void refreshSelection();

    RecordingLibraryModel& library_;
    DashboardDeletionScheduler& deletions_;
    DashboardSwipeRows& swipes_;
    std::function<bool(const QString&)> isDamaged_;
    // All main thread.
    std::vector<Row> rows_;
    QHash<QString, int> rowByPath_;
    std::optional<QString> selectedPath_;
};

}  // namespace kestrum
