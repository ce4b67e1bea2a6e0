#pragma once

#include <QString>

namespace kestrum {

// What League Share is doing, as the tray panel and the share window tell it. `failed` carries the
// description of the error that kept the stream from starting.
class LeagueShareStatus {
  public:
    enum class Kind { stopped, waiting, sharingClient, sharingGame, permissionRequired, failed };

    LeagueShareStatus() = default;
    static LeagueShareStatus stopped() { return LeagueShareStatus(Kind::stopped); }
    static LeagueShareStatus waiting() { return LeagueShareStatus(Kind::waiting); }
    static LeagueShareStatus sharingClient() { return LeagueShareStatus(Kind::sharingClient); }
    static LeagueShareStatus sharingGame() { return LeagueShareStatus(Kind::sharingGame); }
    static LeagueShareStatus permissionRequired() { return LeagueShareStatus(Kind::permissionRequired); }
    static LeagueShareStatus failed(QString errorDescription);

    Kind kind() const { return kind_; }
    // Empty for every kind but `failed`.
    const QString& errorDescription() const { return errorDescription_; }
    bool isSharing() const { return kind_ == Kind::sharingClient || kind_ == Kind::sharingGame; }

    // "Sharing paused", "Waiting for League", "League Client", "League of Legends", "Screen Recording
    // permission required", "Share unavailable".
    QString title() const;
    // The symbol name the interface draws (mapped to its icon set by the ui); empty when the status has
    // none.
    QString symbol() const;

    friend bool operator==(const LeagueShareStatus&, const LeagueShareStatus&) = default;

  private:
    explicit LeagueShareStatus(Kind kind) : kind_(kind) {}

    Kind kind_ = Kind::stopped;
    QString errorDescription_;
};

}  // namespace kestrum
