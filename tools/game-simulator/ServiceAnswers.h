#pragma once

#include "SimulatorAnswer.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace kestrum::simulator {

// The answers every source shares: the error the service gives for a resource it does not have (which
// is also what a game still loading gives on its data paths), and JSON bodies.
class ServiceAnswers {
  public:
    static SimulatorAnswer notFound(const QString& path);
    static SimulatorAnswer json(const QJsonObject& object);
    static SimulatorAnswer json(const QJsonArray& array);
    // A bare JSON string, as /liveclientdata/activeplayername answers.
    static SimulatorAnswer jsonString(const QString& text);
    // The last word of a service path ("/liveclientdata/gamestats" -> "gamestats").
    static QString endpointWord(const QString& path);
};

}  // namespace kestrum::simulator
