// libFuzzer target for the session document codec, the reader of files that may come from anywhere.
// Any input may fail to decode; an input that decodes must survive the round trip exactly.
#include "core/telemetry/SessionDocumentCodec.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

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
    if (!decoded) return 0;

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
