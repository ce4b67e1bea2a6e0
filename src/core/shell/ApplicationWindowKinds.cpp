#include "core/shell/ApplicationWindowKinds.h"

namespace kestrum {

bool isReviewWindow(const ApplicationWindow& window) {
    return window.title == QLatin1String("Kestrum Dashboard") ||
           window.identifier.contains(QLatin1String("dashboard"), Qt::CaseInsensitive);
}

bool isSettingsWindow(const ApplicationWindow& window) {
    return window.title.contains(QLatin1String("settings"), Qt::CaseInsensitive) ||
           window.identifier.contains(QLatin1String("settings"), Qt::CaseInsensitive);
}

bool isShareWindow(const ApplicationWindow& window) {
    return window.title == QLatin1String("Kestrum Share") ||
           window.identifier.contains(QLatin1String("league-share"), Qt::CaseInsensitive);
}

}  // namespace kestrum
