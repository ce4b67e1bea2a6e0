#pragma once

#include "base/common/Result.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kestrum::json {

// Why a read or a write of a JSON document stopped, and where. A codec returns false at the first
// failure; each enclosing level then adds its own key or index while the failure travels back up, so
// the path costs nothing while all is well and still reads root-first in the description:
// "scoreboard[3].players[1].respawnTimer: missing required key".
class JsonFailure {
  public:
    // Records why the value at the current place failed. Returns false so a codec can write
    // `return failure.fail("...")`.
    bool fail(std::string reason);

    // The enclosing object's key. `key` must outlive this object: keys come from the static field
    // tables, never from the document being read.
    void addKey(std::string_view key);
    // The enclosing array's index.
    void addIndex(std::size_t index);

    const std::string& reason() const { return reason_; }
    // Root-first path such as "scoreboard[3].players[1]"; empty when the root itself failed.
    std::string path() const;
    // "<path>: <reason>", with "(root)" standing for an empty path.
    std::string description() const;
    Error toError() const;

  private:
    struct Segment {
        std::string_view key;
        std::size_t index = 0;
        bool isIndex = false;
    };

    std::string reason_;
    std::vector<Segment> innermostFirst_;
};

}  // namespace kestrum::json
