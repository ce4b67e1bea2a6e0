#include "ui/style/icons/LucideSymbolTable.h"

#include <array>

namespace kestrum::ui {

namespace {

using Fill = LucideFill;

// Symbol names as the system writes them (its platform's symbol set), each drawn by the nearest Lucide
// icon. Lucide is outline only: ".fill" names take a fill style instead of an icon of their own.
constexpr std::array<LucideSymbolEntry, 49> kEntries{{
    // Events and their actors
    {u"play.fill", u"play", Fill::closedShapes},
    {u"pause.fill", u"pause", Fill::closedShapes},
    {u"flag.checkered", u"flag", Fill::outline},
    {u"crown.fill", u"crown", Fill::closedShapes},
    {u"shield.fill", u"shield", Fill::closedShapes},
    {u"ladybug.fill", u"bug", Fill::closedShapes},
    {u"building.columns.fill", u"landmark", Fill::closedShapes},
    {u"diamond.bottomhalf.filled", u"diamond", Fill::bottomHalf},
    {u"burst.fill", u"sparkle", Fill::closedShapes},
    {u"bolt.horizontal.circle.fill", u"zap", Fill::closedShapes},
    {u"circle.fill", u"circle", Fill::closedShapes},
    {u"person.3.fill", u"users", Fill::closedShapes},
    {u"flame.fill", u"flame", Fill::closedShapes},
    {u"pawprint.fill", u"paw-print", Fill::closedShapes},
    // Dragon kinds
    {u"mountain.2.fill", u"mountain", Fill::closedShapes},
    {u"drop.fill", u"droplet", Fill::closedShapes},
    {u"wind", u"wind", Fill::outline},
    {u"bolt.fill", u"zap", Fill::closedShapes},
    {u"atom", u"atom", Fill::outline},
    {u"circle.hexagongrid.fill", u"hexagon", Fill::closedShapes},
    // Playback
    {u"speaker.fill", u"volume", Fill::closedShapes},
    {u"speaker.slash.fill", u"volume-off", Fill::curvedShapes},
    {u"speaker.wave.1.fill", u"volume-1", Fill::closedShapes},
    {u"speaker.wave.2.fill", u"volume-2", Fill::closedShapes},
    {u"speedometer", u"gauge", Fill::outline},
    {u"doc.on.doc", u"copy", Fill::outline},
    {u"checkmark.circle.fill", u"circle-check", Fill::closedShapes},
    {u"checkmark", u"check", Fill::outline},
    {u"line.3.horizontal.decrease.circle", u"list-filter", Fill::outline},
    {u"chevron.right", u"chevron-right", Fill::outline},
    // Library, cards and their menus
    {u"star", u"star", Fill::outline},
    {u"star.fill", u"star", Fill::closedShapes},
    {u"star.slash", u"star-off", Fill::outline},
    {u"star.slash.fill", u"star-off", Fill::curvedShapes},
    {u"trash", u"trash-2", Fill::outline},
    {u"trash.fill", u"trash-2", Fill::curvedShapes},
    {u"arrow.uturn.backward", u"undo-2", Fill::outline},
    {u"play.rectangle", u"square-play", Fill::outline},
    {u"play.rectangle.on.rectangle", u"tv-minimal-play", Fill::outline},
    {u"folder", u"folder", Fill::outline},
    {u"rectangle.stack", u"gallery-vertical-end", Fill::outline},
    {u"questionmark.circle", u"circle-question-mark", Fill::outline},
    // Sharing, menu bar and settings
    {u"rectangle.on.rectangle", u"picture-in-picture-2", Fill::outline},
    {u"dot.radiowaves.left.and.right", u"radio", Fill::outline},
    {u"lock.shield", u"shield-lock", Fill::outline},
    {u"exclamationmark.triangle", u"triangle-alert", Fill::outline},
    {u"exclamationmark.triangle.fill", u"triangle-alert", Fill::closedShapes},
    {u"externaldrive.badge.exclamationmark", u"hard-drive", Fill::outline},
    {u"folder.badge.questionmark", u"folder-x", Fill::outline},
}};

constexpr std::array<LucideNumberedFamily, 2> kNumberedFamilies{{
    {u"gobackward.", u"rotate-ccw"},
    {u"goforward.", u"rotate-cw"},
}};

constexpr int kLargestNumber = 999;

// The whole number that `text` is, in 1...999 written without a sign or leading zeros; absent otherwise.
std::optional<int> drawnNumber(QStringView text) {
    if (text.isEmpty() || text.size() > 3 || text.front() == QLatin1Char('0')) return std::nullopt;
    int value = 0;
    for (const QChar c : text) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9')) return std::nullopt;
        value = value * 10 + (c.unicode() - u'0');
    }
    return value <= kLargestNumber ? std::optional<int>(value) : std::nullopt;
}

}  // namespace

std::span<const LucideSymbolEntry> lucideSymbolEntries() {
    return kEntries;
}

std::span<const LucideNumberedFamily> lucideNumberedFamilies() {
    return kNumberedFamilies;
}

std::optional<LucideSymbol> lucideSymbol(QStringView symbolName) {
    for (const LucideNumberedFamily& family : kNumberedFamilies) {
        if (!symbolName.startsWith(family.prefix)) continue;
        const std::optional<int> number = drawnNumber(symbolName.mid(family.prefix.size()));
        if (!number) return std::nullopt;
        return LucideSymbol{family.lucideName.toString(), Fill::outline, number};
    }
    for (const LucideSymbolEntry& entry : kEntries) {
        if (entry.symbolName == symbolName)
            return LucideSymbol{entry.lucideName.toString(), entry.fill, std::nullopt};
    }
    return std::nullopt;
}

}  // namespace kestrum::ui
