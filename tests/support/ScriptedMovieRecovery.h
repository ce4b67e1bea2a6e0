#pragma once

#include "media/MovieRecovery.h"

#include <mutex>
#include <vector>

namespace kestrum::test {

// A recovery that answers as told and remembers which movies it was asked to rebuild. Any thread.
class ScriptedMovieRecovery final : public MovieRecovery {
  public:
    Result<RecoveredMovie> recover(const QString& moviePath) const override {
        const std::lock_guard lock(mutex_);
        asked_.push_back(moviePath);
        return answer;
    }
    std::vector<QString> asked() const {
        const std::lock_guard lock(mutex_);
        return asked_;
    }

    Result<RecoveredMovie> answer = RecoveredMovie{12.5, false, 100, 0};

  private:
    mutable std::mutex mutex_;
    mutable std::vector<QString> asked_;
};

}  // namespace kestrum::test
