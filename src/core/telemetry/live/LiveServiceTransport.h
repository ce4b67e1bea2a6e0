#pragma once

#include "base/common/Result.h"
#include "core/telemetry/live/LiveServiceResponse.h"

#include <QCoroTask>
#include <QString>

namespace kestrum {

// The request layer under LeagueLiveClient: one plain GET of a path of the local service. The real
// adapter is NetworkLiveServiceTransport (HTTPS to the loopback service); unit tests put a scripted one
// in its place.
//
// Contract: called on the main thread, the returned task resumes there. A transport failure (refused
// connection, timeout, rejected certificate) is an Error whose description says why; any answer that
// arrived, whatever its status, is a LiveServiceResponse. Never throws.
class LiveServiceTransport {
  public:
    virtual ~LiveServiceTransport() = default;

    // `path` starts with "/" ("/liveclientdata/gamestats").
    virtual QCoro::Task<Result<LiveServiceResponse>> get(QString path) = 0;

  protected:
    LiveServiceTransport() = default;
    LiveServiceTransport(const LiveServiceTransport&) = default;
    LiveServiceTransport& operator=(const LiveServiceTransport&) = default;
};

}  // namespace kestrum
