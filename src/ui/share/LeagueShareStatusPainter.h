#pragma once

#include "core/capture/privacy/PrivacyScreenPainter.h"

#include <QImage>
#include <QString>

class QPainter;

namespace kestrum::ui {

// Draws League Share's status over the share window's picture: the privacy screen's ground, loading
// indicator and mark with the status message as its caption, and the status symbol (a Lucide icon, in
// the accent colour) above the indicator when there is one. Main thread only.
class LeagueShareStatusPainter {
  public:
    // An unknown symbol name draws no symbol.
    void setStatus(const QString& message, const QString& symbolName);
    // The indicator's position, 0 to 9; the share window steps it on its animation timer, not per frame.
    void setIndicatorPhase(int phase) { screen_.setAnimationPhase(phase); }

    void paint(QPainter& painter, int width, int height);

  private:
    const QImage& symbolImage(int sidePx);

    PrivacyScreenPainter screen_;
    QString symbolName_;
    // The symbol drawn for the last side asked for, in pixels; null without a symbol.
    QImage symbolImage_;
    int symbolSidePx_ = 0;
};

}  // namespace kestrum::ui
