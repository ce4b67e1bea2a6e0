#include "EventsCommand.h"

#include "core/telemetry/SessionDocumentCodec.h"

#include <QFile>

#include <cstdio>

namespace kestrum::tools {

int runEvents(const QStringList& arguments) {
    if (arguments.size() != 2) {
        std::fprintf(stderr, "kestrum-telemetry events: usage: events FILE\n");
        return 2;
    }
    QFile file(arguments[1]);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "kestrum-telemetry events: %s: %s\n", qPrintable(arguments[1]),
                     qPrintable(file.errorString()));
        return 1;
    }
    const Result<RecordingSessionData> document = decodeSessionData(file.readAll().toStdString());
    if (!document.ok()) {
        std::fprintf(stderr, "kestrum-telemetry events: %s\n", qPrintable(document.error().description));
        return 1;
    }
    for (const RecordingEvent& event : document.value().events) {
        std::printf("%8.2f s  %-16s %s\n", event.videoTime, event.name.c_str(),
                    event.detail.value_or("").c_str());
    }
    return 0;
}

}  // namespace kestrum::tools
