#pragma once

#include "base/common/Result.h"

namespace kestrum {

// Whether the desktop starts the application when the user logs in. Off until the user turns it on.
//
// Contract, for every adapter: main thread only; both calls touch only a small local file or setting and
// return at once. `isEnabled` reads the desktop's state each time (the user may change it in the
// desktop's own settings). `setEnabled` reports failure with a description a user can act on, and then
// leaves the previous state in place.
class AutostartEntry {
  public:
    virtual ~AutostartEntry() = default;

    virtual bool isEnabled() const = 0;
    virtual Status setEnabled(bool enabled) = 0;

  protected:
    AutostartEntry() = default;
    AutostartEntry(const AutostartEntry&) = default;
    AutostartEntry& operator=(const AutostartEntry&) = default;
};

}  // namespace kestrum
