#pragma once

#include "SimulatorAnswer.h"

#include <QString>

namespace kestrum::simulator {

// What the simulated service answers for a path, before faults. Called on the main thread.
class AnswerSource {
  public:
    virtual ~AnswerSource() = default;
    virtual SimulatorAnswer answer(const QString& path) = 0;

  protected:
    AnswerSource() = default;
};

}  // namespace kestrum::simulator
