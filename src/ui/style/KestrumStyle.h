#pragma once

#include "ui/style/StylePalette.h"
#include "ui/style/shadow/CardShadowMetrics.h"

#include <QColor>
#include <QFont>
#include <QObject>
#include <QtQmlIntegration>

class QJSEngine;
class QQmlEngine;

namespace kestrum::ui {

// The style every view reads as the QML singleton `Style`: the named colours of the appearance in
// force, the type scale, spacing, radii and icon sizes. The application chooses the appearance
// (`setDark`); every colour binding follows at once, with no restart.
//
// Threads: main thread. One instance for the process, shared by every QML engine; it is never
// destroyed, and engines do not own it.
class KestrumStyle : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Style)
    QML_SINGLETON

    Q_PROPERTY(bool dark READ isDark NOTIFY appearanceChanged)

    Q_PROPERTY(QColor background READ background NOTIFY appearanceChanged)
    Q_PROPERTY(QColor surface READ surface NOTIFY appearanceChanged)
    Q_PROPERTY(QColor surfaceHovered READ surfaceHovered NOTIFY appearanceChanged)
    Q_PROPERTY(QColor surfaceSunken READ surfaceSunken NOTIFY appearanceChanged)
    Q_PROPERTY(QColor toastBackground READ toastBackground NOTIFY appearanceChanged)
    Q_PROPERTY(QColor separator READ separator NOTIFY appearanceChanged)
    Q_PROPERTY(QColor border READ border NOTIFY appearanceChanged)
    Q_PROPERTY(QColor borderHovered READ borderHovered NOTIFY appearanceChanged)
    Q_PROPERTY(QColor textPrimary READ textPrimary NOTIFY appearanceChanged)
    Q_PROPERTY(QColor textSecondary READ textSecondary NOTIFY appearanceChanged)
    Q_PROPERTY(QColor textTertiary READ textTertiary NOTIFY appearanceChanged)
    Q_PROPERTY(QColor textOnAccent READ textOnAccent NOTIFY appearanceChanged)
    Q_PROPERTY(QColor accent READ accent NOTIFY appearanceChanged)
    Q_PROPERTY(QColor teamBlue READ teamBlue NOTIFY appearanceChanged)
    Q_PROPERTY(QColor teamRed READ teamRed NOTIFY appearanceChanged)
    Q_PROPERTY(QColor teamBlueTint READ teamBlueTint NOTIFY appearanceChanged)
    Q_PROPERTY(QColor teamRedTint READ teamRedTint NOTIFY appearanceChanged)
    Q_PROPERTY(QColor yellow READ yellow NOTIFY appearanceChanged)
    Q_PROPERTY(QColor orange READ orange NOTIFY appearanceChanged)
    Q_PROPERTY(QColor brown READ brown NOTIFY appearanceChanged)
    Q_PROPERTY(QColor cyan READ cyan NOTIFY appearanceChanged)
    Q_PROPERTY(QColor mint READ mint NOTIFY appearanceChanged)
    Q_PROPERTY(QColor blue READ blue NOTIFY appearanceChanged)
    Q_PROPERTY(QColor green READ green NOTIFY appearanceChanged)
    Q_PROPERTY(QColor warning READ warning NOTIFY appearanceChanged)
    Q_PROPERTY(QColor error READ error NOTIFY appearanceChanged)
    Q_PROPERTY(QColor success READ success NOTIFY appearanceChanged)
    Q_PROPERTY(double shadowOpacity READ shadowOpacity NOTIFY appearanceChanged)
    Q_PROPERTY(double shadowOpacityHovered READ shadowOpacityHovered NOTIFY appearanceChanged)

    // The type scale, largest first. Pixel sizes: the windows are laid out in logical pixels.
    Q_PROPERTY(QFont largeTitle READ largeTitle CONSTANT)
    Q_PROPERTY(QFont title READ title CONSTANT)
    Q_PROPERTY(QFont title2 READ title2 CONSTANT)
    Q_PROPERTY(QFont title3 READ title3 CONSTANT)
    Q_PROPERTY(QFont headline READ headline CONSTANT)
    Q_PROPERTY(QFont body READ body CONSTANT)
    Q_PROPERTY(QFont callout READ callout CONSTANT)
    Q_PROPERTY(QFont calloutSemibold READ calloutSemibold CONSTANT)
    Q_PROPERTY(QFont footnote READ footnote CONSTANT)
    Q_PROPERTY(QFont caption READ caption CONSTANT)
    Q_PROPERTY(QFont captionSemibold READ captionSemibold CONSTANT)

    // Spacing steps and radii, in logical pixels.
    Q_PROPERTY(int spacingXXS READ spacingXXS CONSTANT)
    Q_PROPERTY(int spacingXS READ spacingXS CONSTANT)
    Q_PROPERTY(int spacingS READ spacingS CONSTANT)
    Q_PROPERTY(int spacingM READ spacingM CONSTANT)
    Q_PROPERTY(int spacingL READ spacingL CONSTANT)
    Q_PROPERTY(int spacingXL READ spacingXL CONSTANT)
    Q_PROPERTY(int spacingXXL READ spacingXXL CONSTANT)
    Q_PROPERTY(int radiusSmall READ radiusSmall CONSTANT)
    Q_PROPERTY(int radiusMedium READ radiusMedium CONSTANT)
    Q_PROPERTY(int radiusCard READ radiusCard CONSTANT)
    Q_PROPERTY(int radiusLarge READ radiusLarge CONSTANT)
    Q_PROPERTY(int iconSmall READ iconSmall CONSTANT)
    Q_PROPERTY(int iconMedium READ iconMedium CONSTANT)
    Q_PROPERTY(int iconLarge READ iconLarge CONSTANT)
    Q_PROPERTY(int hairline READ hairline CONSTANT)
    Q_PROPERTY(int hoverDurationMs READ hoverDurationMs CONSTANT)
    // The card shadow's nine-patch (CardShadowMetrics.h).
    Q_PROPERTY(int cardShadowExtent READ cardShadowExtent CONSTANT)
    Q_PROPERTY(int cardShadowBorder READ cardShadowBorder CONSTANT)
    Q_PROPERTY(int cardShadowOffsetY READ cardShadowOffsetY CONSTANT)

  public:
    static KestrumStyle& instance();
    // The QML engine's factory: the process instance, kept in C++ ownership.
    static KestrumStyle* create(QQmlEngine* qmlEngine, QJSEngine* jsEngine);

    bool isDark() const { return dark_; }
    void setDark(bool dark);
    const StylePalette& palette() const { return StylePalette::of(dark_); }

    QColor background() const { return palette().background; }
    QColor surface() const { return palette().surface; }
    QColor surfaceHovered() const { return palette().surfaceHovered; }
    QColor surfaceSunken() const { return palette().surfaceSunken; }
    QColor toastBackground() const { return palette().toastBackground; }
    QColor separator() const { return palette().separator; }
    QColor border() const { return palette().border; }
    QColor borderHovered() const { return palette().borderHovered; }
    QColor textPrimary() const { return palette().textPrimary; }
    QColor textSecondary() const { return palette().textSecondary; }
    QColor textTertiary() const { return palette().textTertiary; }
    QColor textOnAccent() const { return palette().textOnAccent; }
    QColor accent() const { return palette().accent; }
    QColor teamBlue() const { return palette().teamBlue; }
    QColor teamRed() const { return palette().teamRed; }
    QColor teamBlueTint() const { return palette().teamBlueTint; }
    QColor teamRedTint() const { return palette().teamRedTint; }
    QColor yellow() const { return palette().yellow; }
    QColor orange() const { return palette().orange; }
    QColor brown() const { return palette().brown; }
    QColor cyan() const { return palette().cyan; }
    QColor mint() const { return palette().mint; }
    QColor blue() const { return palette().blue; }
    QColor green() const { return palette().green; }
    QColor warning() const { return palette().warning; }
    QColor error() const { return palette().error; }
    QColor success() const { return palette().success; }
    double shadowOpacity() const { return palette().shadowOpacity; }
    double shadowOpacityHovered() const { return palette().shadowOpacityHovered; }

    // A vocabulary colour (NamedColor's value) in the appearance in force; views bind it from a
    // model's role.
    Q_INVOKABLE QColor namedColor(int namedColor) const;

    QFont largeTitle() const { return font(28, QFont::Bold); }
    QFont title() const { return font(22, QFont::Bold); }
    QFont title2() const { return font(18, QFont::DemiBold); }
    QFont title3() const { return font(16, QFont::DemiBold); }
    QFont headline() const { return font(14, QFont::DemiBold); }
    QFont body() const { return font(14, QFont::Normal); }
    QFont callout() const { return font(13, QFont::Normal); }
    QFont calloutSemibold() const { return font(13, QFont::DemiBold); }
    QFont footnote() const { return font(12, QFont::Normal); }
    QFont caption() const { return font(11, QFont::Normal); }
    QFont captionSemibold() const { return font(11, QFont::DemiBold); }

    static constexpr int spacingXXS() { return 2; }
    static constexpr int spacingXS() { return 4; }
    static constexpr int spacingS() { return 6; }
    static constexpr int spacingM() { return 8; }
    static constexpr int spacingL() { return 12; }
    static constexpr int spacingXL() { return 16; }
    static constexpr int spacingXXL() { return 24; }
    static constexpr int radiusSmall() { return 4; }
    static constexpr int radiusMedium() { return 6; }
    static constexpr int radiusCard() { return kCardShadowRadius; }
    static constexpr int radiusLarge() { return 14; }
    static constexpr int iconSmall() { return 12; }
    static constexpr int iconMedium() { return 16; }
    static constexpr int iconLarge() { return 24; }
    static constexpr int hairline() { return 1; }
    static constexpr int hoverDurationMs() { return 120; }
    static constexpr int cardShadowExtent() { return kCardShadowExtent; }
    static constexpr int cardShadowBorder() { return kCardShadowBorder; }
    static constexpr int cardShadowOffsetY() { return kCardShadowOffsetY; }

  signals:
    void appearanceChanged();

  private:
    KestrumStyle() = default;
    // The desktop's font family at the given pixel size and weight.
    static QFont font(int pixelSize, QFont::Weight weight);

    bool dark_ = false;  // main thread
};

}  // namespace kestrum::ui
