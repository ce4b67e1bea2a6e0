#include "FaultSchedule.h"

namespace kestrum::simulator {

namespace {

std::optional<FaultSchedule::Kind> kindNamed(const QString& name) {
    if (name == QLatin1String("slow")) return FaultSchedule::Kind::Slow;
    if (name == QLatin1String("hang")) return FaultSchedule::Kind::Hang;
    if (name == QLatin1String("malformed")) return FaultSchedule::Kind::Malformed;
    if (name == QLatin1String("http500")) return FaultSchedule::Kind::Http500;
    if (name == QLatin1String("closed")) return FaultSchedule::Kind::Closed;
    return std::nullopt;
}

}  // namespace

std::optional<FaultSchedule> FaultSchedule::parse(const QStringList& switches, QString* errorMessage) {
    FaultSchedule schedule;
    for (const QString& text : switches) {
        QStringList parts = text.split(QLatin1Char(':'));
        Fault fault;
        if (parts.size() == 4) fault.endpoint = parts.takeFirst();
        bool fromOk = false;
        bool toOk = false;
        const auto kind = parts.size() == 3 ? kindNamed(parts[0]) : std::nullopt;
        if (kind) {
            fault.fromSeconds = parts[1].toDouble(&fromOk);
            fault.toSeconds = parts[2].toDouble(&toOk);
        }
        if (!kind || !fromOk || !toOk || fault.toSeconds < fault.fromSeconds) {
            if (errorMessage) {
                *errorMessage =
                    QStringLiteral(
                        "bad --fault \"%1\": expected [endpoint:]slow|hang|malformed|http500|closed:from:to")
                        .arg(text);
            }
            return std::nullopt;
        }
        fault.kind = *kind;
        schedule.faults_.push_back(fault);
    }
    return schedule;
}

std::optional<FaultSchedule::Kind> FaultSchedule::faultFor(const QString& endpointWord,
                                                           double seconds) const {
    for (const Fault& fault : faults_) {
        if (fault.kind == Kind::Closed || seconds < fault.fromSeconds || seconds >= fault.toSeconds) continue;
        if (fault.endpoint.isEmpty() || fault.endpoint == endpointWord) return fault.kind;
    }
    return std::nullopt;
}

bool FaultSchedule::portClosedAt(double seconds) const {
    for (const Fault& fault : faults_) {
        if (fault.kind == Kind::Closed && seconds >= fault.fromSeconds && seconds < fault.toSeconds)
            return true;
    }
    return false;
}

}  // namespace kestrum::simulator
