// libFuzzer target for the library's files in the user's cache folder, where anything may have been
// put: the library cache, the scanner's disk cache, one library entry, and a detail cache entry (the
// first byte picks which). Whatever decodes must encode, decode back to an equal record, and encode
// again to the same bytes.
#include "FuzzFailure.h"
#include "core/library/MatchVideoCodec.h"
#include "core/library/detail/CachedDetailCodec.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

template <typename Record, typename Decode, typename Encode>
void roundTrip(const char* target, std::string_view bytes, Decode decode, Encode encode) {
    const kestrum::Result<Record> decoded = decode(bytes);
    if (!decoded) return;
    const kestrum::Result<std::string> encoded = encode(decoded.value());
    if (!encoded) kestrum::fuzz::fail(target, "a decoded record did not encode", &encoded.error());
    const kestrum::Result<Record> again = decode(encoded.value());
    if (!again) kestrum::fuzz::fail(target, "the encoding did not decode", &again.error());
    if (!(again.value() == decoded.value()))
        kestrum::fuzz::fail(target, "the record changed on a round trip");
    const kestrum::Result<std::string> encodedAgain = encode(again.value());
    if (!encodedAgain || encodedAgain.value() != encoded.value())
        kestrum::fuzz::fail(target, "encoding is not stable");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    switch (data[0] % 4) {
        case 0:
            roundTrip<kestrum::LibraryCache>(
                "library cache", bytes, [](std::string_view b) { return kestrum::decodeLibraryCache(b); },
                [](const kestrum::LibraryCache& r) { return kestrum::encodeLibraryCache(r); });
            break;
        case 1:
            roundTrip<kestrum::LibraryScanCache>(
                "library scan cache", bytes,
                [](std::string_view b) { return kestrum::decodeLibraryScanCache(b); },
                [](const kestrum::LibraryScanCache& r) { return kestrum::encodeLibraryScanCache(r); });
            break;
        case 2:
            roundTrip<kestrum::MatchVideo>(
                "library entry", bytes, [](std::string_view b) { return kestrum::decodeMatchVideo(b); },
                [](const kestrum::MatchVideo& r) { return kestrum::encodeMatchVideo(r); });
            break;
        default:
            roundTrip<kestrum::CachedDetail>(
                "detail cache", bytes, [](std::string_view b) { return kestrum::decodeCachedDetail(b); },
                [](const kestrum::CachedDetail& r) { return kestrum::encodeCachedDetail(r); });
            break;
    }
    return 0;
}
