// Measures the session document codec on the document of a long game (an hour of snapshots): a bare
// RapidJSON DOM parse of the same bytes with the same flags as the reference, the full decode into
// records, the decode that streams the snapshots away (as the library scanner reads), and the encode.
// Prints `figure <name> <value> <unit>` lines; asserts nothing.
#include "SyntheticPlayers.h"
#include "core/telemetry/SessionDocumentCodec.h"

#include <rapidjson/document.h>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

using kestrum::RecordingEvent;
using kestrum::RecordingScoreboardPlayer;
using kestrum::RecordingScoreboardSnapshot;
using kestrum::RecordingSessionData;

constexpr int kSnapshots = 3600;
constexpr int kPlayers = 10;
constexpr int kEvents = 300;
constexpr int kRepetitions = 9;

// The reference: RapidJSON's DOM parse in its own exact-number mode, UTF-8 validated and iterative as
// the decoder's reader is. The decoder reads numbers through std::from_chars instead (RapidJSON 1.1.0
// misreads some), which the comparison therefore includes.
constexpr unsigned kReferenceParseFlags = rapidjson::kParseValidateEncodingFlag |
                                          rapidjson::kParseFullPrecisionFlag | rapidjson::kParseIterativeFlag;

RecordingSessionData makeLongGame() {
    RecordingSessionData session;
    session.schemaVersion = 4;
    session.recordingID = QUuid::createUuid();
    session.metadataRevision = 1;
    for (int i = 0; i < kEvents; ++i) {
        RecordingEvent event;
        event.id = i;
        event.name = i % 3 == 0 ? "ChampionKill" : "TurretKilled";
        event.videoTime = 3.4 + i * 11.875;
        event.detail = "Kayn \xe2\x86\x92 Lux";
        event.team = i % 2 ? kestrum::RecordingTeam::red : kestrum::RecordingTeam::blue;
        event.isLocalPlayerKill = event.isLocalPlayerDeath = event.isLocalPlayerAssist = false;
        event.killerName = "Player 1#EUW";
        event.victimName = "Player 6#EUW";
        event.assisterNames = std::vector<std::string>{"Player 3#EUW", "Player 4#EUW"};
        session.events.push_back(std::move(event));
    }
    session.scoreboard.emplace();
    for (int s = 0; s < kSnapshots; ++s) {
        RecordingScoreboardSnapshot snapshot{3.4 + s * 1.0000123, 1.25 + s * 1.0000071, {}};
        for (int p = 0; p < kPlayers; ++p) snapshot.players.push_back(kestrum::bench::syntheticPlayer(s, p));
        session.scoreboard->push_back(std::move(snapshot));
    }
    session.apmSamples.emplace();
    return session;
}

double elapsedMs(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> samples) {
    std::sort(samples.begin(), samples.end());
    return samples[samples.size() / 2];
}

struct Figures {
    double domMs = 0;
    double decodeMs = 0;
    double streamedDecodeMs = 0;
    double encodeMs = 0;
};

// The four measures take turns within each repetition, after one unmeasured warm-up round, so that
// allocator and cache state favour none of them. Each clock stops before the result is destroyed:
// freeing the output is not part of the work. Returns nothing when a run gave a wrong result.
std::optional<Figures> measure(const RecordingSessionData& session, const std::string& bytes) {
    std::vector<double> domSamples;
    std::vector<double> decodeSamples;
    std::vector<double> streamedSamples;
    std::vector<double> encodeSamples;
    bool healthy = true;
    for (int repetition = -1; repetition < kRepetitions; ++repetition) {
        auto start = std::chrono::steady_clock::now();
        auto document = std::make_unique<rapidjson::Document>();
        document->Parse<kReferenceParseFlags>(bytes.data(), bytes.size());
        const double domMs = elapsedMs(start);
        healthy = healthy && !document->HasParseError();
        document.reset();

        start = std::chrono::steady_clock::now();
        auto decoded = kestrum::decodeSessionData(bytes);
        const double decodeMs = elapsedMs(start);
        healthy = healthy && decoded.ok() && decoded.value().scoreboard->size() == kSnapshots;
        decoded = kestrum::Error{};

        start = std::chrono::steady_clock::now();
        std::size_t snapshots = 0;
        auto streamed =
            kestrum::decodeSessionData(bytes, [&](RecordingScoreboardSnapshot&&) { ++snapshots; });
        const double streamedMs = elapsedMs(start);
        healthy = healthy && streamed.ok() && snapshots == kSnapshots;
        streamed = kestrum::Error{};

        start = std::chrono::steady_clock::now();
        auto again = kestrum::encodeSessionData(session);
        const double encodeMs = elapsedMs(start);
        healthy = healthy && again.ok() && again.value() == bytes;
        again = kestrum::Error{};

        if (repetition < 0) continue;
        domSamples.push_back(domMs);
        decodeSamples.push_back(decodeMs);
        streamedSamples.push_back(streamedMs);
        encodeSamples.push_back(encodeMs);
    }
    if (!healthy) return std::nullopt;
    return Figures{median(domSamples), median(decodeSamples), median(streamedSamples), median(encodeSamples)};
}

void print(const Figures& figures, const char* suffix) {
    std::printf("figure session_document_dom_parse%s_ms %.1f ms\n", suffix, figures.domMs);
    std::printf("figure session_document_decode%s_ms %.1f ms\n", suffix, figures.decodeMs);
    std::printf("figure session_document_streamed_decode%s_ms %.1f ms\n", suffix, figures.streamedDecodeMs);
    std::printf("figure session_document_encode%s_ms %.1f ms\n", suffix, figures.encodeMs);
    std::printf("figure session_document_decode_to_dom_ratio%s %.2f x\n", suffix,
                figures.decodeMs / figures.domMs);
}

}  // namespace

int main() {
    const RecordingSessionData session = makeLongGame();
    const auto encoded = kestrum::encodeSessionData(session);
    if (!encoded) {
        std::fprintf(stderr, "encode failed: %s\n", qPrintable(encoded.error().description));
        return 1;
    }
    const std::string& bytes = encoded.value();
    std::printf("figure session_document_size_mb %.1f MB\n", static_cast<double>(bytes.size()) / 1e6);

    // First with the allocator as a process has it: freed memory goes back to the system between
    // repetitions, so every repetition also pays the first touch of its pages (costly on a VM).
    const std::optional<Figures> cold = measure(session, bytes);
#ifdef __GLIBC__
    // Then with freed memory kept in the process, so the figures measure the codec's own work.
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
#endif
    const std::optional<Figures> warm = measure(session, bytes);
    if (!cold || !warm) {
        std::fprintf(stderr, "a measured run did not produce the expected result\n");
        return 1;
    }
    print(*warm, "");
    print(*cold, "_cold");
    return 0;
}
