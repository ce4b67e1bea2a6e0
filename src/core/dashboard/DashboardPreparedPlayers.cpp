#include "core/dashboard/DashboardPreparedPlayers.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <algorithm>

namespace kestrum {

namespace {

void release(VideoPlayer& player) {
    player.pause();
    player.replaceCurrentItem(std::nullopt);
}

}  // namespace

QString preparedPlayerKey(const QString& moviePath) {
    const QFileInfo file(moviePath);
    const QString path = QDir::cleanPath(file.absoluteFilePath());
    const QDateTime modified = file.fileTime(QFileDevice::FileModificationTime);
    if (!file.exists() || !modified.isValid()) return path;
    const double seconds = static_cast<double>(modified.toMSecsSinceEpoch()) / 1000.0;
    return path + QLatin1Char('|') + QString::number(seconds, 'f', 3) + QLatin1Char('|') +
           QString::number(file.size());
}

DashboardPreparedPlayers::~DashboardPreparedPlayers() {
    clear();
}

DashboardPreparedPlayers::Prepared DashboardPreparedPlayers::playerFor(const QString& moviePath) {
    const QString key = preparedPlayerKey(moviePath);
    if (const auto found = players_.find(key); found != players_.end()) return {found->second, false};
    std::shared_ptr<VideoPlayer> player = factory_.makePlayer(moviePath);
    players_.emplace(key, player);
    return {std::move(player), true};
}

void DashboardPreparedPlayers::prune(const std::vector<MatchVideo>& displayed,
                                     const std::optional<MatchVideo>& selected) {
    if (!selected) return;
    const auto position = std::find_if(displayed.begin(), displayed.end(),
                                       [&](const MatchVideo& match) { return match.url == selected->url; });
    if (position == displayed.end()) return;
    const auto index = static_cast<std::size_t>(position - displayed.begin());
    const std::size_t first = index == 0 ? 0 : index - 1;
    const std::size_t last = std::min(index + 1, displayed.size() - 1);
    QSet<QString> kept;
    for (std::size_t i = first; i <= last; ++i) kept.insert(preparedPlayerKey(displayed[i].url));
    for (auto entry = players_.begin(); entry != players_.end();) {
        if (kept.contains(entry->first)) {
            ++entry;
            continue;
        }
        release(*entry->second);
        entry = players_.erase(entry);
    }
}

std::vector<std::shared_ptr<VideoPlayer>> DashboardPreparedPlayers::players() const {
    std::vector<std::shared_ptr<VideoPlayer>> all;
    all.reserve(players_.size());
    for (const auto& [key, player] : players_) all.push_back(player);
    return all;
}

void DashboardPreparedPlayers::clear() {
    for (const auto& [key, player] : players_) release(*player);
    players_.clear();
}

}  // namespace kestrum
