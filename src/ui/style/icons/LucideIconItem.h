#pragma once

#include "ui/style/CachedPictureItem.h"

#include <QColor>
#include <QtQmlIntegration>

namespace kestrum::ui {

// `LucideIcon`: a symbol name of the system ("crown.fill", "gobackward.10") drawn as its Lucide icon in
// one colour. Without a `color` of its own it takes the appearance's primary text colour and follows it.
// A name without a mapping draws nothing and reads `known` false.
//
// Threads: main thread, but for painting (see CachedPictureItem).
// The base is named in full: the QML type registrar matches a base class by its written name.
class LucideIconItem : public kestrum::ui::CachedPictureItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(LucideIcon)
    Q_PROPERTY(QString symbolName READ symbolName WRITE setSymbolName NOTIFY symbolNameChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor RESET resetColor NOTIFY colorChanged)
    Q_PROPERTY(bool known READ isKnown NOTIFY symbolNameChanged)

  public:
    explicit LucideIconItem(QQuickItem* parent = nullptr);

    QString symbolName() const { return symbolName_; }
    void setSymbolName(const QString& symbolName);
    // The colour in force: the one set, or the appearance's primary text colour.
    QColor color() const;
    void setColor(const QColor& color);
    void resetColor();
    bool isKnown() const;

  signals:
    void symbolNameChanged();
    void colorChanged();

  protected:
    QString pictureKey(QSize pixelSize) const override;
    QImage drawPicture(QSize pixelSize) const override;

  private:
    QString symbolName_;  // main thread
    QColor color_;        // main thread; invalid: follow the appearance
};

}  // namespace kestrum::ui
