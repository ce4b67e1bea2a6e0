#include "CollectCommand.h"

#include "core/telemetry/SessionDocumentBuilder.h"
#include "core/telemetry/SessionDocumentCodec.h"
#include "core/telemetry/live/LeagueLiveClient.h"
#include "core/telemetry/live/NetworkLiveServiceTransport.h"

#include <QCommandLineParser>
#include <QTimer>

#include <cstdio>
#include <memory>

namespace kestrum::tools {

QCoro::Task<int> runCollect(QStringList arguments) {
    QCommandLineParser parser;
    parser.addOptions(
        {{QStringLiteral("seconds"), QStringLiteral("how long to collect"), QStringLiteral("n")},
         {QStringLiteral("port"), QStringLiteral("port of the local service"), QStringLiteral("p"),
          QStringLiteral("2999")}});
    bool secondsOk = false;
    bool portOk = false;
    const bool parsed = parser.parse(arguments);
    const double seconds = parser.value(QStringLiteral("seconds")).toDouble(&secondsOk);
    const int port = parser.value(QStringLiteral("port")).toInt(&portOk);
    if (!parsed || !secondsOk || seconds < 0 || !portOk || port <= 0 || port > 65535) {
        std::fprintf(stderr, "kestrum-telemetry collect: usage: collect --seconds N [--port P]\n");
        co_return 2;
    }

    LeagueLiveClient client(std::make_shared<NetworkLiveServiceTransport>(port));
    const CancellationToken token;
    QTimer::singleShot(static_cast<int>(seconds * 1000.0), Qt::PreciseTimer, [token] { token.cancel(); });
    const RecordingTelemetry telemetry =
        co_await client.collectTelemetry(ReferenceDate::now(), nullptr, token);

    const auto document = encodeSessionData(makeSessionData(std::nullopt, telemetry));
    if (!document.ok()) {
        std::fprintf(stderr, "kestrum-telemetry collect: %s\n", qPrintable(document.error().description));
        co_return 1;
    }
    std::printf("%s\n", document.value().c_str());
    co_return 0;
}

}  // namespace kestrum::tools
