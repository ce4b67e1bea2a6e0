#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace kestrum::simulator {

// Periods in which the simulated service misbehaves, in real seconds since the simulator started.
// A switch reads "[endpoint:]kind:fromSeconds:toSeconds"; the endpoint is a path's last word
// ("eventdata", "game") and, left out, means every path. Kinds:
//   slow       the answer comes 3 seconds late (past the client's 2-second timeout)
//   hang       the request is read and never answered; the connection stays open
//   malformed  status 200 with a body that is not JSON
//   http500    status 500
//   closed     the port is closed (connections refused, open ones dropped); the endpoint is ignored
class FaultSchedule {
  public:
    enum class Kind { Slow, Hang, Malformed, Http500, Closed };

    struct Fault {
        QString endpoint;  // empty: every path
        Kind kind = Kind::Slow;
        double fromSeconds = 0;
        double toSeconds = 0;
    };

    // Parses every switch; absent with a message for the first bad one.
    static std::optional<FaultSchedule> parse(const QStringList& switches, QString* errorMessage);

    // The fault for a path at `seconds`, if any; the first matching switch wins.
    std::optional<Kind> faultFor(const QString& endpointWord, double seconds) const;
    bool portClosedAt(double seconds) const;

  private:
    std::vector<Fault> faults_;
};

}  // namespace kestrum::simulator
