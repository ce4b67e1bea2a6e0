import QtQuick
import Kestrum.Style

// A page section's heading.
Text {
    font: Style.headline
    color: Style.textPrimary
    topPadding: Style.spacingL
    bottomPadding: Style.spacingS
}
