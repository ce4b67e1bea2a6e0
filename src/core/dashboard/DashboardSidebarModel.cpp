#include "core/dashboard/DashboardSidebarModel.h"

#include "core/dashboard/DashboardContextMenu.h"

#include <QPointF>

#include <utility>

namespace kestrum {

namespace {

using Collection = RecordingLibraryCollection;

QString collectionTitle(Collection collection) {
    return collection == Collection::favorites ? QStringLiteral("Favorite Recordings")
                                               : QStringLiteral("Recordings");
}

QString collectionSymbol(Collection collection) {
    return collection == Collection::favorites ? QStringLiteral("star") : QStringLiteral("rectangle.stack");
}

QString countText(int count) {
    return QString::asprintf("%lld", static_cast<long long>(count));
}

}  // namespace

DashboardSidebarModel::DashboardSidebarModel(Collaborators collaborators, QObject* parent)
    : QObject(parent),
      c_(std::move(collaborators)),
      cards_(new MatchCardListModel(c_.library, c_.deletions, c_.swipes, c_.isDamaged, this)),
      collections_(
          new ReviewRowListModel({"collection", "title", "symbol", "countText", "isSelected"}, this)),
      filterChoices_(new ReviewRowListModel({"group", "label", "isSelected"}, this)) {
    RecordingLibraryModel& library = c_.library;
    for (const auto signal :
         {&RecordingLibraryModel::matchesChanged, &RecordingLibraryModel::favoritesChanged,
          &RecordingLibraryModel::selectedCollectionChanged}) {
        connect(&library, signal, this, [this] {
            publishCollections();
            publishFilterChoices();
            emit headerChanged();
        });
    }
    for (const auto signal : {&RecordingLibraryModel::selectedGameModeFilterChanged,
                              &RecordingLibraryModel::selectedLaneFilterChanged,
                              &RecordingLibraryModel::selectedChampionFilterChanged}) {
        connect(&library, signal, this, [this] {
            publishFilterChoices();
            emit filtersChanged();
        });
    }
    connect(cards_, &MatchCardListModel::countChanged, this, &DashboardSidebarModel::emptyStateChanged);
    connect(&library, &RecordingLibraryModel::scanErrorChanged, this,
            &DashboardSidebarModel::emptyStateChanged);
    connect(&c_.navigation, &DashboardSidebarNavigation::scrollTargetChanged, this,
            &DashboardSidebarModel::scrollTargetChanged);
    publishCollections();
    publishFilterChoices();
}

QString DashboardSidebarModel::sectionTitle() const {
    return collectionTitle(c_.library.selectedCollection());
}

QString DashboardSidebarModel::sectionSymbol() const {
    return collectionSymbol(c_.library.selectedCollection());
}

QString DashboardSidebarModel::sectionCountText() const {
    return countText(c_.library.matchCount(c_.library.selectedCollection()));
}

bool DashboardSidebarModel::hasActiveFilters() const {
    return currentFilters() != RecordingLibraryFilters{};
}

void DashboardSidebarModel::setRecordingFiltersPresented(bool presented) {
    if (presented == isRecordingFiltersPresented_) return;
    isRecordingFiltersPresented_ = presented;
    emit filtersPresentedChanged();
}

QString DashboardSidebarModel::emptyMessage() const {
    return c_.library.scanError().value_or(QString());
}

QString DashboardSidebarModel::scrollTargetKind() const {
    const std::optional<SidebarScrollTarget>& target = c_.navigation.scrollTarget();
    if (!target) return {};
    switch (target->kind) {
        case SidebarScrollTarget::Kind::top:
            return QStringLiteral("top");
        case SidebarScrollTarget::Kind::collection:
            return QStringLiteral("collection");
        case SidebarScrollTarget::Kind::match:
            return QStringLiteral("match");
    }
    return {};
}

int DashboardSidebarModel::scrollTargetRow() const {
    const std::optional<SidebarScrollTarget>& target = c_.navigation.scrollTarget();
    if (!target || target->kind != SidebarScrollTarget::Kind::match) return -1;
    return cards_->rowOf(target->moviePath);
}

void DashboardSidebarModel::moveUp() {
    c_.navigation.move(DashboardSidebarNavigation::Direction::up);
}

void DashboardSidebarModel::moveDown() {
    c_.navigation.move(DashboardSidebarNavigation::Direction::down);
}

void DashboardSidebarModel::deleteCommand() {
    // The list's delete command steps back ten seconds; it deletes nothing.
    c_.playback.skip(-10);
}

void DashboardSidebarModel::clickCard(int row) {
    if (const std::optional<MatchVideo> match = cards_->matchAt(row)) c_.navigation.click(*match);
}

void DashboardSidebarModel::toggleFavorite(int row) {
    if (const std::optional<MatchVideo> match = cards_->matchAt(row)) c_.library.toggleFavorite(*match);
}

void DashboardSidebarModel::triggerContextAction(int row, int action) {
    const std::optional<MatchVideo> match = cards_->matchAt(row);
    if (!match) return;
    switch (static_cast<DashboardContextAction>(action)) {
        case DashboardContextAction::toggleFavorite:
            c_.library.toggleFavorite(*match);
            return;
        case DashboardContextAction::openRecording:
            c_.fileActions.open(match->url);
            return;
        case DashboardContextAction::showInFolder:
            c_.fileActions.reveal(match->url);
            return;
        case DashboardContextAction::copyPath:
            c_.fileActions.copyText(match->url);
            return;
        case DashboardContextAction::moveToTrash:
            c_.deletions.moveRecordingsToTrash({*match});
            return;
    }
}

void DashboardSidebarModel::selectCollection(int collection) {
    if (collection != static_cast<int>(Collection::fullMatches) &&
        collection != static_cast<int>(Collection::favorites))
        return;
    c_.navigation.selectCollection(static_cast<Collection>(collection));
}

void DashboardSidebarModel::chooseFilter(int row) {
    if (row < 0 || row >= static_cast<int>(choices_.size())) return;
    const SidebarFilterChoice& choice = choices_[static_cast<std::size_t>(row)];
    switch (choice.kind) {
        case SidebarFilterChoice::Kind::gameMode:
            c_.library.setSelectedGameModeFilter(choice.value);
            break;
        case SidebarFilterChoice::Kind::lane:
            c_.library.setSelectedLaneFilter(choice.value);
            break;
        case SidebarFilterChoice::Kind::champion:
            c_.library.setSelectedChampionFilter(choice.value);
            break;
    }
}

void DashboardSidebarModel::clearFilters() {
    c_.library.setSelectedGameModeFilter(std::nullopt);
    c_.library.setSelectedLaneFilter(std::nullopt);
    c_.library.setSelectedChampionFilter(std::nullopt);
}

void DashboardSidebarModel::presentGuide() {
    if (c_.presentGuide) c_.presentGuide();
}

void DashboardSidebarModel::pressCard(int row, double x, double y) {
    if (const std::optional<QString> path = pathAt(row)) c_.swipes.press(*path, QPointF(x, y));
}

void DashboardSidebarModel::dragCard(int row, double x, double y) {
    if (const std::optional<QString> path = pathAt(row)) c_.swipes.move(*path, QPointF(x, y));
}

void DashboardSidebarModel::releaseCard(int row, double x, double y) {
    if (const std::optional<QString> path = pathAt(row)) c_.swipes.release(*path, QPointF(x, y));
}

void DashboardSidebarModel::cancelSwipe(int row) {
    if (const std::optional<QString> path = pathAt(row)) c_.swipes.cancel(*path);
}

void DashboardSidebarModel::performSwipeAction(int row, const QString& side) {
    const std::optional<QString> path = pathAt(row);
    if (!path) return;
    if (side == QLatin1String("leading")) c_.swipes.performAction(*path, SwipeSide::leading);
    if (side == QLatin1String("trailing")) c_.swipes.performAction(*path, SwipeSide::trailing);
}

void DashboardSidebarModel::publishCollections() {
    const Collection selected = c_.library.selectedCollection();
    std::vector<ReviewRowListModel::Row> rows;
    for (const Collection collection : {Collection::fullMatches, Collection::favorites}) {
        rows.push_back({static_cast<int>(collection), collectionTitle(collection),
                        collectionSymbol(collection), countText(c_.library.matchCount(collection)),
                        collection == selected});
    }
    collections_->setRows(std::move(rows));
}

void DashboardSidebarModel::publishFilterChoices() {
    choices_ = sidebarFilterChoices(c_.library.collectionMatches(), currentFilters());
    std::vector<ReviewRowListModel::Row> rows;
    for (const SidebarFilterChoice& choice : choices_)
        rows.push_back({choice.group, choice.label, choice.isSelected});
    filterChoices_->setRows(std::move(rows));
}

RecordingLibraryFilters DashboardSidebarModel::currentFilters() const {
    return {c_.library.selectedGameModeFilter(), c_.library.selectedLaneFilter(),
            c_.library.selectedChampionFilter()};
}

std::optional<QString> DashboardSidebarModel::pathAt(int row) const {
    const std::optional<MatchVideo> match = cards_->matchAt(row);
    if (!match) return std::nullopt;
    return match->url;
}

}  // namespace kestrum
