#include "core/shell/PermissionTexts.h"

namespace kestrum {

PermissionTexts linuxPermissionTexts() {
    return {QStringLiteral("Kestrum records through X11. Start it in an X11 or XWayland session."),
            QStringLiteral("Open your desktop's sound settings to choose a microphone for Kestrum."), false};
}

}  // namespace kestrum
