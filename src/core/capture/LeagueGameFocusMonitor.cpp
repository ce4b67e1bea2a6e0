#include "core/capture/LeagueGameFocusMonitor.h"

namespace kestrum {

void LeagueGameFocusMonitor::start(qint32 processID, std::function<void(bool isGameFocused)> handler) {
    stop();
    observer_ =
        workspace_.observe(Workspace::Notice::didActivate,
                           [processID, handler = std::move(handler)](const RunningApplication& application) {
                               handler(application.processIdentifier == processID);
                           });
}

}  // namespace kestrum
