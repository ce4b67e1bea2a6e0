#pragma once

#include "base/common/Result.h"
#include "platform/linux/pulse/PulseMainLoop.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>

namespace kestrum {

// A null sink of the sound server, made by loading "module-null-sink": what plays into it goes nowhere
// but to its monitor, which other programs record. The module outlives our connection (the server keeps
// loaded modules when a client goes), so one left by a run that crashed is found by its sink name in the
// module's arguments and unloaded before a new one is made.
//
// Threads: every member is called with the loop's lock held, on a thread other than the loop's (the
// requests are waited for). The object does not unload on destruction: `remove` does, while the
// connection is still up.
class PulseNullSink {
  public:
    // `sinkName` is a sink name without spaces; `description` is what mixers and pickers show (its
    // monitor shows as "Monitor of <description>").
    PulseNullSink(PulseMainLoop& loop, QByteArray sinkName, QString description);

    // Unloads every null sink module named `sinkName`, then loads a fresh one. An Error when the server
    // refuses either or does not answer in time; nothing of ours is left loaded then.
    Status create();
    // Unloads the module `create` loaded; nothing when none is loaded. An Error when the server refused
    // or did not answer.
    Status remove();

    const QByteArray& sinkName() const { return sinkName_; }
    const QString& description() const { return description_; }

  private:
    Status unloadStale();
    Status unload(std::uint32_t moduleIndex);
    QByteArray moduleArgument() const;

    PulseMainLoop& loop_;
    const QByteArray sinkName_;
    const QString description_;
    std::optional<std::uint32_t> moduleIndex_;  // while loaded
};

}  // namespace kestrum
