#pragma once

#include <QByteArray>

#include <optional>

namespace kestrum {

// One answer of the game's local service as the transport received it, before any judgement of it.
struct LiveServiceResponse {
    // The HTTP status; absent when the answer was not an HTTP response.
    std::optional<int> statusCode;
    QByteArray body;
};

}  // namespace kestrum
