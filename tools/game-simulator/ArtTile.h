#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QString>

namespace kestrum::simulator {

// The pictures of the art host's stand-in: for any identifier, a square tile in a colour of its own
// (derived from the identifier, the same on every run and machine) bearing its initials, so that a
// screenshot tells the champions, items and spells apart without the real art.
class ArtTile {
  public:
    // The tile sizes the real host serves: champion portraits 120, item and spell icons 64.
    static constexpr int kChampionSide = 120;
    static constexpr int kIconSide = 64;

    // "MissFortune" -> "MF", "Kai'Sa" -> "KS", "Ahri" -> "Ah", "3031" -> "3031", "" -> "?": the first
    // letter of up to two words (a word starts at an upper-case letter after a lower-case one, after a
    // character that is no letter or digit, and where letters and digits meet); a single word gives its
    // first two characters; a number stands whole, up to four digits.
    static QString initials(const QString& identifier);
    // FNV-1a over the identifier's UTF-8, turned into a hue; saturation and value fixed so white
    // initials always read.
    static QColor colour(const QString& identifier);
    // The tile as PNG bytes; `kind` is the URL's kind word ("champion", "item", "spell").
    static QByteArray png(const QString& kind, const QString& identifier);
    static QImage image(const QString& kind, const QString& identifier);
};

}  // namespace kestrum::simulator
