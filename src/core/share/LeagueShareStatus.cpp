#include "core/share/LeagueShareStatus.h"

namespace kestrum {

LeagueShareStatus LeagueShareStatus::failed(QString errorDescription) {
    LeagueShareStatus status(Kind::failed);
    status.errorDescription_ = std::move(errorDescription);
    return status;
}

QString LeagueShareStatus::title() const {
    switch (kind_) {
        case Kind::stopped:
            return QStringLiteral("Sharing paused");
        case Kind::waiting:
            return QStringLiteral("Waiting for League");
        case Kind::sharingClient:
            return QStringLiteral("League Client");
        case Kind::sharingGame:
            return QStringLiteral("League of Legends");
        case Kind::permissionRequired:
            return QStringLiteral("Screen Recording permission required");
        case Kind::failed:
            return QStringLiteral("Share unavailable");
    }
    return {};
}

QString LeagueShareStatus::symbol() const {
    switch (kind_) {
        case Kind::stopped:
        case Kind::waiting:
            return {};
        case Kind::sharingClient:
            return QStringLiteral("rectangle.on.rectangle");
        case Kind::sharingGame:
            return QStringLiteral("dot.radiowaves.left.and.right");
        case Kind::permissionRequired:
            return QStringLiteral("lock.shield");
        case Kind::failed:
            return QStringLiteral("exclamationmark.triangle");
    }
    return {};
}

}  // namespace kestrum
