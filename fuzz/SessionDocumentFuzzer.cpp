// libFuzzer target for the session document codec, the reader of files that may come from anywhere.
// Any input may fail to decode; an input that decodes must survive the round trip exactly. The decode
// that streams the scoreboard away must read and refuse exactly the same inputs, and hand over exactly
// the scoreboard's snapshots.
#include "core/telemetry/SessionDocumentCodec.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <utility>
#include <vector>

namespace {

[[noreturn]] void fail(const char* what, const kestrum::Error* error = nullptr) {
    std::fprintf(stderr, "session document round trip broken: %s%s%s\n", what, error ? ": " : "",
                 error ? error->description.toUtf8().constData() : "");
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto decoded = kestrum::decodeSessionData(bytes);
    std::vector<kestrum::RecordingScoreboardSnapshot> snapshots;
    auto streamed = kestrum::decodeSessionData(bytes, [&](kestrum::RecordingScoreboardSnapshot&& snapshot) {
        snapshots.push_back(std::move(snapshot));
    });
    if (streamed.ok() != decoded.ok()) fail("the streaming decode disagreed on whether the input decodes");
    if (!decoded) return 0;
    kestrum::RecordingSessionData rebuilt = std::move(streamed).value();
    if (rebuilt.scoreboard.has_value() != decoded.value().scoreboard.has_value())
        fail("the streaming decode disagreed on whether there is a scoreboard");
    if (rebuilt.scoreboard) rebuilt.scoreboard = std::move(snapshots);
    if (!(rebuilt == decoded.value())) fail("the streaming decode gave a different record");

    const auto encoded = kestrum::encodeSessionData(decoded.value());
    if (!encoded) fail("a decoded document did not encode", &encoded.error());
    const auto decodedAgain = kestrum::decodeSessionData(encoded.value());
    if (!decodedAgain) fail("the encoding did not decode", &decodedAgain.error());
    if (!(decodedAgain.value() == decoded.value())) fail("decoding the encoding gave a different record");
    const auto encodedAgain = kestrum::encodeSessionData(decodedAgain.value());
    if (!encodedAgain) fail("the second encode failed", &encodedAgain.error());
    if (encodedAgain.value() != encoded.value()) fail("encoding is not stable");
    return 0;
}
