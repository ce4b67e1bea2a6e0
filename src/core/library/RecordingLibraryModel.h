#pragma once

#include "base/common/Result.h"
#include "core/library/LibrarySelection.h"
#include "core/library/MatchVideo.h"
#include "core/library/RecordingGameSession.h"
#include "core/library/RecordingLibraryCollection.h"
#include "core/library/RecordingLibraryFilters.h"
#include "core/library/RecordingLibraryScanner.h"
#include "core/settings/UserDefaults.h"

#include <QCoroTask>
#include <QDateTime>
#include <QFuture>
#include <QLocale>
#include <QObject>
#include <QSet>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kestrum {

// The observable state of the library in the review window: the list of recordings, the selection, the
// chosen collection, the three filters and the last scan error. It shows the persisted list at once,
// refreshes it in the background, drops stale results and keeps the selection sensible through every
// change of the list. The views observe it and draw; what they show is decided here.
//
// Threads: confined to the main thread. A refresh suspends while the scan runs on the scanner's queue,
// so any other call may come in meanwhile; `refreshGeneration_`, raised by every refresh, clear and
// removal, is the only guard: a scan whose number is no longer current is dropped.
//
// User defaults: "recordingLibraryCache" (the last list of a folder, read when a new folder is loaded,
// written after each applied refresh and removal), "favoriteRecordingPaths" (read at creation, written
// on each toggle and when favourites are pruned) and the three filter keys, read only at creation, so a
// filter chosen while the program runs lasts until it quits. The store must outlive the model.
class RecordingLibraryModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(std::vector<kestrum::MatchVideo> matches READ matches NOTIFY matchesChanged)
    Q_PROPERTY(std::optional<kestrum::MatchVideo> selectedMatch READ selectedMatch WRITE setSelectedMatch
                   NOTIFY selectedMatchChanged)
    Q_PROPERTY(std::vector<kestrum::MatchVideo> selectedMatches READ selectedMatches WRITE setSelectedMatches
                   NOTIFY selectedMatchesChanged)
    Q_PROPERTY(kestrum::RecordingLibraryCollection selectedCollection READ selectedCollection NOTIFY
                   selectedCollectionChanged)
    Q_PROPERTY(std::optional<std::string> selectedGameModeFilter READ selectedGameModeFilter WRITE
                   setSelectedGameModeFilter NOTIFY selectedGameModeFilterChanged)
    Q_PROPERTY(std::optional<std::string> selectedLaneFilter READ selectedLaneFilter WRITE
                   setSelectedLaneFilter NOTIFY selectedLaneFilterChanged)
    Q_PROPERTY(std::optional<std::string> selectedChampionFilter READ selectedChampionFilter WRITE
                   setSelectedChampionFilter NOTIFY selectedChampionFilterChanged)
    Q_PROPERTY(std::optional<QString> scanError READ scanError NOTIFY scanErrorChanged)

  public:
    // The scan of a folder, given its absolute path; the model's own scanner unless a test gives one.
    using LibraryScan = std::function<QFuture<Result<std::vector<MatchVideo>>>(const QString& folderPath)>;

    // Reads favourites, then filters, then, when a folder is given, the cache of that folder, so the
    // list shows before any scan has run. `folderPath` is absolute.
    RecordingLibraryModel(UserDefaults& defaults, const std::optional<QString>& folderPath,
                          QObject* parent = nullptr);
    RecordingLibraryModel(UserDefaults& defaults, const std::optional<QString>& folderPath, LibraryScan scan,
                          QObject* parent = nullptr);
    ~RecordingLibraryModel() override;

    const std::vector<MatchVideo>& matches() const { return matches_; }
    const std::optional<MatchVideo>& selectedMatch() const { return selection_.selectedMatch; }
    const std::vector<MatchVideo>& selectedMatches() const { return selection_.selectedMatches; }
    RecordingLibraryCollection selectedCollection() const { return selectedCollection_; }
    const std::optional<std::string>& selectedGameModeFilter() const { return filters_.gameMode; }
    const std::optional<std::string>& selectedLaneFilter() const { return filters_.lane; }
    const std::optional<std::string>& selectedChampionFilter() const { return filters_.champion; }
    const std::optional<QString>& scanError() const { return scanError_; }
    const QSet<QString>& favoritePaths() const { return favoritePaths_; }
    std::uint64_t refreshGeneration() const { return refreshGeneration_; }
    const std::optional<QString>& loadedFolderPath() const { return loadedFolderPath_; }

    void setSelectedMatch(const std::optional<MatchVideo>& match);
    void setSelectedMatches(const std::vector<MatchVideo>& matches);
    void setSelectedGameModeFilter(const std::optional<std::string>& filter);
    void setSelectedLaneFilter(const std::optional<std::string>& filter);
    void setSelectedChampionFilter(const std::optional<std::string>& filter);

    // Computed on demand, never stored.
    std::vector<MatchVideo> collectionMatches() const;
    std::vector<MatchVideo> visibleMatches() const;
    std::vector<RecordingGameSession> sessions() const;
    int matchCount(RecordingLibraryCollection collection) const;

    // The label of a session, by the clock and locale of sessionHeaderContext (the real ones unless set).
    QString sessionHeader(const RecordingGameSession& session) const;
    void setSessionHeaderContext(std::function<QDateTime()> now, QLocale locale);

    // Loads the cache of a new folder, scans, and applies the result if no later refresh, clear or
    // removal has begun meanwhile. A failed scan sets `scanError` and changes nothing else.
    QCoro::Task<void> refresh(QString folderPath);

    // Forgets everything of the current folder and drops a running refresh; favourites and filters stay.
    void clear();

    // Takes the movies in `moviePaths` out of the list at once, after a deletion, and drops a running
    // refresh so its scan cannot bring them back. An empty set does nothing.
    void removeMatches(const QSet<QString>& moviePaths, const QString& folderPath);

    void toggleFavorite(const MatchVideo& match);
    bool isFavorite(const MatchVideo& match) const;

    void selectCollection(RecordingLibraryCollection collection);

  signals:
    void matchesChanged();
    void selectedMatchChanged();
    void selectedMatchesChanged();
    void selectedCollectionChanged();
    void selectedGameModeFilterChanged();
    void selectedLaneFilterChanged();
    void selectedChampionFilterChanged();
    void scanErrorChanged();
    // Favourites are not a published field; toggling one still tells observers once.
    void favoritesChanged();

  private:
    void loadStartState(const std::optional<QString>& folderPath);
    void loadCache(const QString& folderPath);
    void storeCache(const QString& folderPath);
    // The one path by which `matches` changes after creation, apart from clear.
    void apply(std::vector<MatchVideo> newMatches);
    void pruneFavorites(const std::vector<MatchVideo>& newMatches);
    void storeFavorites();
    void setMatches(std::vector<MatchVideo> matches);
    void setSelection(const LibrarySelection& selection);
    void setScanError(const std::optional<QString>& error);

    UserDefaults& defaults_;
    std::unique_ptr<RecordingLibraryScanner> scanner_;  // absent when a scan was given
    LibraryScan scan_;

    // All fields below belong to the main thread.
    std::vector<MatchVideo> matches_;
    LibrarySelection selection_;
    RecordingLibraryCollection selectedCollection_ = RecordingLibraryCollection::fullMatches;
    RecordingLibraryFilters filters_;
    std::optional<QString> scanError_;
    std::uint64_t refreshGeneration_ = 0;
    std::optional<QString> loadedFolderPath_;
    QSet<QString> favoritePaths_;
    std::function<QDateTime()> headerNow_ = [] { return QDateTime::currentDateTime(); };
    QLocale headerLocale_;
};

}  // namespace kestrum
