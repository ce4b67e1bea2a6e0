#pragma once

#include <QString>
#include <QStringView>

#include <optional>
#include <span>

namespace kestrum::ui {

// How a symbol draws its Lucide icon.
enum class LucideFill {
    // The outline as Lucide draws it.
    outline,
    // ".fill": closed shapes filled in the tint; open strokes lying inside a filled shape are cut out of
    // it, so that inner details (a check in a circle, a bug's seam) stay visible.
    closedShapes,
    // ".fill" of an icon whose body Lucide leaves open (a bin, a struck-out star): curved open strokes
    // count as closed too.
    curvedShapes,
    // "bottomhalf.filled": the closed shapes filled below the middle only.
    bottomHalf,
};

struct LucideSymbolEntry {
    QStringView symbolName;
    QStringView lucideName;
    LucideFill fill = LucideFill::outline;
};

// What one symbol name draws: a Lucide icon, its fill and, for the names built at run time
// ("gobackward.<n>", "goforward.<n>"), the number drawn inside it.
struct LucideSymbol {
    QString lucideName;
    LucideFill fill = LucideFill::outline;
    std::optional<int> number;

    bool operator==(const LucideSymbol&) const = default;
};

// Every fixed symbol name the system uses, with its icon.
std::span<const LucideSymbolEntry> lucideSymbolEntries();

// The numbered families: "gobackward." and "goforward." followed by a whole number from 1 to 999.
struct LucideNumberedFamily {
    QStringView prefix;
    QStringView lucideName;
};
std::span<const LucideNumberedFamily> lucideNumberedFamilies();

// The icon of a symbol name; absent for a name that has no mapping.
std::optional<LucideSymbol> lucideSymbol(QStringView symbolName);

}  // namespace kestrum::ui
