#include "core/dashboard/MatchCardListModel.h"

#include "core/dashboard/DashboardContextMenu.h"
#include "core/dashboard/DashboardTexts.h"
#include "core/dashboard/MatchCardPresentation.h"

#include <QSet>

#include <utility>

namespace kestrum {

namespace {

namespace card = MatchCardPresentation;

const QList<int> kSwipeRoles = {
    MatchCardListModel::swipeOffsetRole,       MatchCardListModel::swipeSideRole,
    MatchCardListModel::swipeIconProgressRole, MatchCardListModel::swipeIconScaleRole,
    MatchCardListModel::swipeIconOpacityRole,
};

const QList<int> kFavoriteRoles = {MatchCardListModel::isFavoriteRole, MatchCardListModel::favoriteHelpRole,
                                   MatchCardListModel::leadingSymbolRole,
                                   MatchCardListModel::leadingActionNameRole,
                                   MatchCardListModel::contextMenuRole};

QString text(const std::optional<QString>& value) {
    return value.value_or(QString());
}

QString swipeSideName(SwipeSide side) {
    switch (side) {
        case SwipeSide::leading:
            return QStringLiteral("leading");
        case SwipeSide::trailing:
            return QStringLiteral("trailing");
        case SwipeSide::none:
            break;
    }
    return {};
}

}  // namespace

MatchCardListModel::MatchCardListModel(RecordingLibraryModel& library, DashboardDeletionScheduler& deletions,
                                       DashboardSwipeRows& swipes,
                                       std::function<bool(const QString&)> isDamaged, QObject* parent)
    : QAbstractListModel(parent),
      library_(library),
      deletions_(deletions),
      swipes_(swipes),
      isDamaged_(std::move(isDamaged)) {
    for (const auto signal :
         {&RecordingLibraryModel::matchesChanged, &RecordingLibraryModel::selectedCollectionChanged,
          &RecordingLibraryModel::selectedGameModeFilterChanged,
          &RecordingLibraryModel::selectedLaneFilterChanged,
          &RecordingLibraryModel::selectedChampionFilterChanged}) {
        connect(&library_, signal, this, &MatchCardListModel::rebuild);
    }
    connect(&library_, &RecordingLibraryModel::favoritesChanged, this, [this] {
        rebuild();
        if (!rows_.empty()) emit dataChanged(index(0), index(count() - 1), kFavoriteRoles);
    });
    connect(&library_, &RecordingLibraryModel::selectedMatchChanged, this,
            &MatchCardListModel::refreshSelection);
    connect(&deletions_, &DashboardDeletionScheduler::pendingChanged, this,
            [this](const QString& path) { refreshCard(path); });
    connect(&swipes_, &DashboardSwipeRows::swipeChanged, this,
            [this](const QString& path) { refreshCard(path, kSwipeRoles); });
    rebuild();
    refreshSelection();
}

int MatchCardListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QHash<int, QByteArray> MatchCardListModel::roleNames() const {
    return {
        {moviePathRole, "moviePath"},
        {sectionRole, "section"},
        {titleRole, "title"},
        {mapArtNameRole, "mapArtName"},
        {mapLabelRole, "mapLabel"},
        {championIdentifierRole, "championIdentifier"},
        {championVersionRole, "championVersion"},
        {roleArtNameRole, "roleArtName"},
        {roleLabelRole, "roleLabel"},
        {kdaLineRole, "kdaLine"},
        {kdaRatioRole, "kdaRatio"},
        {kdaHelpRole, "kdaHelp"},
        {isSelectedRole, "isSelected"},
        {isFavoriteRole, "isFavorite"},
        {favoriteSymbolRole, "favoriteSymbol"},
        {favoriteHelpRole, "favoriteHelp"},
        {isPendingDeletionRole, "isPendingDeletion"},
        {pendingTitleRole, "pendingTitle"},
        {pendingCountdownRole, "pendingCountdown"},
        {pendingSymbolRole, "pendingSymbol"},
        {isDamagedRole, "isDamaged"},
        {damagedTextRole, "damagedText"},
        {accessibleLabelRole, "accessibleLabel"},
        {leadingSymbolRole, "leadingSymbol"},
        {trailingSymbolRole, "trailingSymbol"},
        {leadingActionNameRole, "leadingActionName"},
        {trailingActionNameRole, "trailingActionName"},
        {swipeOffsetRole, "swipeOffset"},
        {swipeSideRole, "swipeSide"},
        {swipeIconProgressRole, "swipeIconProgress"},
        {swipeIconScaleRole, "swipeIconScale"},
        {swipeIconOpacityRole, "swipeIconOpacity"},
        {swipeIconSizeRole, "swipeIconSize"},
        {contextMenuRole, "contextMenu"},
    };
}

QVariant MatchCardListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() < 0 || index.row() >= count()) return {};
    const Row& row = rows_[static_cast<std::size_t>(index.row())];
    if (role >= swipeOffsetRole && role <= swipeIconSizeRole) return swipeValue(row, role);
    if (role >= isPendingDeletionRole && role <= pendingSymbolRole) return deletionValue(row, role);
    return cardValue(row, role);
}

QVariant MatchCardListModel::cardValue(const Row& row, int role) const {
    const MatchVideo& match = row.match;
    const bool isFavorite = library_.isFavorite(match);
    switch (role) {
        case moviePathRole:
            return match.url;
        case sectionRole:
            return row.section;
        case titleRole:
            return MatchCardPresentation::cardTitle(QString::fromStdString(displayTitle(match)));
        case mapArtNameRole:
            return text(card::mapArt(match).artName);
        case mapLabelRole:
            return card::mapArt(match).label;
        case championIdentifierRole:
            return card::championIdentifier(match);
        case championVersionRole:
            return QString();
        case roleArtNameRole:
            return text(card::roleArt(match.role).artName);
        case roleLabelRole:
            return text(card::roleArt(match.role).label);
        case kdaLineRole:
            return card::kdaLine(match);
        case kdaRatioRole:
            return card::kdaRatio(match);
        case kdaHelpRole:
            return card::kKdaHelp;
        case isSelectedRole:
            return selectedPath_ == match.url;
        case isFavoriteRole:
            return isFavorite;
        case favoriteSymbolRole:
            return QStringLiteral("star.fill");
        case favoriteHelpRole:
            return card::favoriteTitle(isFavorite);
        // Damaged as the library found it (a cut-off movie that could not be rebuilt), or as a player
        // found it when it tried.
        case isDamagedRole:
            return match.isDamaged() || isDamaged_(match.url);
        case damagedTextRole:
            return match.isDamaged() || isDamaged_(match.url) ? DashboardTexts::kDamagedCardText : QString();
        case accessibleLabelRole:
            return card::accessibilityLabel(match);
        case leadingSymbolRole:
            return isFavorite ? QStringLiteral("star.slash.fill") : QStringLiteral("star.fill");
        case trailingSymbolRole:
            return deletions_.isPending(match.url) ? QStringLiteral("arrow.uturn.backward")
                                                   : QStringLiteral("trash.fill");
        case leadingActionNameRole:
            return MatchCardPresentation::favoriteTitle(isFavorite);
        case trailingActionNameRole:
            return MatchCardPresentation::deletionActionTitle(deletions_.isPending(match.url));
        case contextMenuRole:
            return dashboardContextMenuValues(isFavorite);
        default:
            return {};
    }
}

QVariant MatchCardListModel::swipeValue(const Row& row, int role) const {
    if (role == swipeIconSizeRole) return RecordingRowSwipe::kIconSize;
    const RecordingRowSwipe* swipe = swipes_.find(row.match.url);
    switch (role) {
        case swipeOffsetRole:
            return swipe ? swipe->offset() : 0.0;
        case swipeSideRole:
            return swipeSideName(swipe ? swipe->side() : SwipeSide::none);
        case swipeIconProgressRole:
            return swipe ? swipe->iconProgress() : 0.0;
        case swipeIconScaleRole:
            return swipe ? swipe->iconScale() : 0.84;
        case swipeIconOpacityRole:
            return swipe ? swipe->iconOpacity() : 0.0;
        default:
            return {};
    }
}

QVariant MatchCardListModel::deletionValue(const Row& row, int role) const {
    const std::optional<long long> secondsLeft = deletions_.secondsLeft(row.match.url);
    switch (role) {
        case isPendingDeletionRole:
            return secondsLeft.has_value();
        case pendingTitleRole:
            return QStringLiteral("Deleting");
        case pendingCountdownRole:
            return secondsLeft ? QString::asprintf("%lld", *secondsLeft) : QString();
        case pendingSymbolRole:
            return QStringLiteral("arrow.uturn.backward");
        default:
            return {};
    }
}

std::optional<MatchVideo> MatchCardListModel::matchAt(int row) const {
    if (row < 0 || row >= count()) return std::nullopt;
    return rows_[static_cast<std::size_t>(row)].match;
}

int MatchCardListModel::rowOf(const QString& moviePath) const {
    return rowByPath_.value(moviePath, -1);
}

QVariant MatchCardListModel::value(int row, const QString& roleName) const {
    const QByteArray name = roleName.toUtf8();
    const QHash<int, QByteArray> names = roleNames();
    for (auto entry = names.cbegin(); entry != names.cend(); ++entry) {
        if (entry.value() == name) return data(index(row), entry.key());
    }
    return {};
}

QStringList MatchCardListModel::championIdentifiers() const {
    QStringList identifiers;
    QSet<QString> seen;
    for (const Row& row : rows_) {
        const QString identifier = card::championIdentifier(row.match);
        if (identifier.isEmpty() || seen.contains(identifier)) continue;
        seen.insert(identifier);
        identifiers.append(identifier);
    }
    return identifiers;
}

std::vector<MatchCardListModel::Row> MatchCardListModel::buildRows() const {
    std::vector<Row> rows;
    QSet<QString> headers;
    for (const RecordingGameSession& session : library_.sessions()) {
        QString header = library_.sessionHeader(session);
        // Two sessions under one header would merge into one section.
        while (headers.contains(header)) header += QChar(0x200B);
        headers.insert(header);
        for (const MatchVideo& match : session.matches) rows.push_back({match, header});
    }
    return rows;
}

void MatchCardListModel::rebuild() {
    std::vector<Row> rows = buildRows();
    const bool sameCards = std::equal(rows.begin(), rows.end(), rows_.begin(), rows_.end(),
                                      [](const Row& a, const Row& b) { return a.match.url == b.match.url; });
    if (sameCards) {
        for (std::size_t i = 0; i < rows.size(); ++i) {
            if (rows[i] == rows_[i]) continue;
            rows_[i] = std::move(rows[i]);
            emit dataChanged(index(static_cast<int>(i)), index(static_cast<int>(i)));
        }
        return;
    }
    const int before = count();
    beginResetModel();
    rows_ = std::move(rows);
    rowByPath_.clear();
    for (std::size_t i = 0; i < rows_.size(); ++i) rowByPath_.insert(rows_[i].match.url, static_cast<int>(i));
    endResetModel();
    if (count() != before) emit countChanged();
}

void MatchCardListModel::refreshCard(const QString& moviePath, const QList<int>& roles) {
    const int row = rowOf(moviePath);
    if (row >= 0) emit dataChanged(index(row), index(row), roles);
}

void MatchCardListModel::refreshSelection() {
    const std::optional<MatchVideo>& selected = library_.selectedMatch();
    std::optional<QString> path;
    if (selected) path = selected->url;
    if (path == selectedPath_) return;
    const std::optional<QString> previous = std::exchange(selectedPath_, path);
    if (previous) refreshCard(*previous, {isSelectedRole});
    if (selectedPath_) refreshCard(*selectedPath_, {isSelectedRole});
}

}  // namespace kestrum
