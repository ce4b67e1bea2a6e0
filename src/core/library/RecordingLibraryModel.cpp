#include "core/library/RecordingLibraryModel.h"

#include "core/library/MatchVideoCodec.h"
#include "core/library/RecordingGameSessions.h"
#include "core/settings/SettingsKeys.h"

#include <QCoroFuture>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace kestrum {

namespace {

std::optional<std::string> storedFilter(const UserDefaults& defaults, const QString& key) {
    const std::optional<QString> value = defaults.stringForKey(key);
    if (!value) return std::nullopt;
    return value->toStdString();
}

}  // namespace

RecordingLibraryModel::RecordingLibraryModel(UserDefaults& defaults, const std::optional<QString>& folderPath,
                                             QObject* parent)
    : QObject(parent), defaults_(defaults), scanner_(std::make_unique<RecordingLibraryScanner>()) {
    scan_ = [scanner = scanner_.get()](const QString& folder) { return scanner->scan(folder); };
    loadStartState(folderPath);
}

RecordingLibraryModel::RecordingLibraryModel(UserDefaults& defaults, const std::optional<QString>& folderPath,
                                             LibraryScan scan, QObject* parent)
    : QObject(parent), defaults_(defaults), scan_(std::move(scan)) {
    loadStartState(folderPath);
}

RecordingLibraryModel::~RecordingLibraryModel() = default;

void RecordingLibraryModel::loadStartState(const std::optional<QString>& folderPath) {
    if (const auto stored = defaults_.stringArrayForKey(SettingsKeys::favoriteRecordingPaths)) {
        favoritePaths_ = QSet<QString>(stored->begin(), stored->end());
    }
    filters_.gameMode = storedFilter(defaults_, SettingsKeys::recordingGameModeFilter);
    filters_.lane = storedFilter(defaults_, SettingsKeys::recordingLaneFilter);
    filters_.champion = storedFilter(defaults_, SettingsKeys::recordingChampionFilter);
    if (folderPath) loadCache(*folderPath);
}

void RecordingLibraryModel::setSelectedMatch(const std::optional<MatchVideo>& match) {
    if (selection_.selectedMatch == match) return;
    selection_.selectedMatch = match;
    emit selectedMatchChanged();
}

void RecordingLibraryModel::setSelectedMatches(const std::vector<MatchVideo>& matches) {
    if (selection_.selectedMatches == matches) return;
    selection_.selectedMatches = matches;
    emit selectedMatchesChanged();
}

void RecordingLibraryModel::setSelectedGameModeFilter(const std::optional<std::string>& filter) {
    if (filters_.gameMode == filter) return;
    filters_.gameMode = filter;
    emit selectedGameModeFilterChanged();
}

void RecordingLibraryModel::setSelectedLaneFilter(const std::optional<std::string>& filter) {
    if (filters_.lane == filter) return;
    filters_.lane = filter;
    emit selectedLaneFilterChanged();
}

void RecordingLibraryModel::setSelectedChampionFilter(const std::optional<std::string>& filter) {
    if (filters_.champion == filter) return;
    filters_.champion = filter;
    emit selectedChampionFilterChanged();
}

std::vector<MatchVideo> RecordingLibraryModel::collectionMatches() const {
    return kestrum::collectionMatches(matches_, selectedCollection_, favoritePaths_);
}

std::vector<MatchVideo> RecordingLibraryModel::visibleMatches() const {
    return kestrum::visibleMatches(matches_, selectedCollection_, favoritePaths_, filters_);
}

std::vector<RecordingGameSession> RecordingLibraryModel::sessions() const {
    return groupSessions(visibleMatches());
}

int RecordingLibraryModel::matchCount(RecordingLibraryCollection collection) const {
    return static_cast<int>(std::count_if(matches_.begin(), matches_.end(), [&](const MatchVideo& match) {
        return belongsTo(match, collection, favoritePaths_);
    }));
}

QString RecordingLibraryModel::sessionHeader(const RecordingGameSession& session) const {
    return kestrum::sessionHeader(session, headerNow_(), headerLocale_);
}

void RecordingLibraryModel::setSessionHeaderContext(std::function<QDateTime()> now, QLocale locale) {
    headerNow_ = std::move(now);
    headerLocale_ = std::move(locale);
}

QCoro::Task<void> RecordingLibraryModel::refresh(QString folderPath) {
    const std::uint64_t generation = ++refreshGeneration_;
    if (loadedFolderPath_ != folderPath) loadCache(folderPath);
    const QPointer<RecordingLibraryModel> self(this);
    QFuture<Result<std::vector<MatchVideo>>> scanning = scan_(folderPath);
    Result<std::vector<MatchVideo>> scanned = co_await scanning;
    // The last started refresh wins, whatever the order in which the scans end.
    if (!self || generation != refreshGeneration_) co_return;
    if (!scanned) {
        setScanError(scanned.error().description);
        co_return;
    }
    setScanError(std::nullopt);
    apply(std::move(scanned).value());
    loadedFolderPath_ = folderPath;
    storeCache(folderPath);
}

void RecordingLibraryModel::clear() {
    ++refreshGeneration_;
    loadedFolderPath_.reset();
    setMatches({});
    setSelection({});
    setScanError(std::nullopt);
}

void RecordingLibraryModel::removeMatches(const QSet<QString>& moviePaths, const QString& folderPath) {
    if (moviePaths.isEmpty()) return;
    ++refreshGeneration_;
    std::vector<MatchVideo> kept;
    kept.reserve(matches_.size());
    for (const auto& match : matches_) {
        if (!moviePaths.contains(match.url)) kept.push_back(match);
    }
    apply(std::move(kept));
    loadedFolderPath_ = folderPath;
    storeCache(folderPath);
}

void RecordingLibraryModel::toggleFavorite(const MatchVideo& match) {
    if (!favoritePaths_.remove(match.url)) favoritePaths_.insert(match.url);
    storeFavorites();
    emit favoritesChanged();
    if (selectedCollection_ == RecordingLibraryCollection::favorites && !favoritePaths_.contains(match.url)) {
        apply(matches_);
    }
}

bool RecordingLibraryModel::isFavorite(const MatchVideo& match) const {
    return favoritePaths_.contains(match.url);
}

void RecordingLibraryModel::selectCollection(RecordingLibraryCollection collection) {
    if (collection == selectedCollection_) return;
    selectedCollection_ = collection;
    emit selectedCollectionChanged();
    const std::vector<MatchVideo> visible = visibleMatches();
    LibrarySelection selection;
    if (!visible.empty()) selection = LibrarySelection{visible.front(), {visible.front()}};
    setSelection(selection);
}

void RecordingLibraryModel::loadCache(const QString& folderPath) {
    loadedFolderPath_ = folderPath;
    const std::optional<QByteArray> data = defaults_.dataForKey(SettingsKeys::recordingLibraryCache);
    if (!data) return;
    Result<LibraryCache> cache =
        decodeLibraryCache(std::string_view(data->constData(), static_cast<std::size_t>(data->size())));
    // A cache that does not decode, or belongs to another folder, is ignored and stays until overwritten.
    if (!cache || QString::fromStdString(cache.value().folderPath) != folderPath) return;
    apply(std::move(cache).value().matches);
}

void RecordingLibraryModel::storeCache(const QString& folderPath) {
    const Result<std::string> encoded = encodeLibraryCache(LibraryCache{folderPath.toStdString(), matches_});
    if (!encoded) return;  // dropped: the next applied refresh writes it again
    defaults_.setData(QByteArray::fromStdString(encoded.value()), SettingsKeys::recordingLibraryCache);
}

void RecordingLibraryModel::apply(std::vector<MatchVideo> newMatches) {
    pruneFavorites(newMatches);
    const LibrarySelection old = selection_;
    setMatches(std::move(newMatches));
    setSelection(LibrarySelection::carriedOver(old, matches_, visibleMatches()));
}

void RecordingLibraryModel::pruneFavorites(const std::vector<MatchVideo>& newMatches) {
    QSet<QString> present;
    for (const auto& match : newMatches) {
        if (favoritePaths_.contains(match.url)) present.insert(match.url);
    }
    // An empty list, as from a folder out of reach, therefore empties the favourites.
    if (present == favoritePaths_) return;
    favoritePaths_ = std::move(present);
    storeFavorites();
}

void RecordingLibraryModel::storeFavorites() {
    defaults_.setStringArray(QStringList(favoritePaths_.begin(), favoritePaths_.end()),
                             SettingsKeys::favoriteRecordingPaths);
}

void RecordingLibraryModel::setMatches(std::vector<MatchVideo> matches) {
    if (matches_ == matches) return;
    matches_ = std::move(matches);
    emit matchesChanged();
}

void RecordingLibraryModel::setSelection(const LibrarySelection& selection) {
    setSelectedMatch(selection.selectedMatch);
    setSelectedMatches(selection.selectedMatches);
}

void RecordingLibraryModel::setScanError(const std::optional<QString>& error) {
    if (scanError_ == error) return;
    scanError_ = error;
    emit scanErrorChanged();
}

}  // namespace kestrum
