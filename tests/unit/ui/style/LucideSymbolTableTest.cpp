// The symbol names of the system and the Lucide icons that draw them: every name the code uses has one,
// every icon is vendored and parses, and each draws something, ".fill" differently from its outline.
#include "SourceLiterals.h"
#include "core/telemetry/RecordingEvent.h"
#include "core/telemetry/vocabulary/DragonKind.h"
#include "core/telemetry/vocabulary/EventPresentation.h"
#include "core/telemetry/vocabulary/LiveEventNames.h"
#include "ui/style/icons/LucideGlyph.h"
#include "ui/style/icons/LucideIconRenderer.h"
#include "ui/style/icons/LucideSymbolTable.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QSet>

#include <array>

namespace kestrum::ui {
namespace {

// The player's skip steps (arrow keys 5 s, the sidebar's delete command 10 s) build "gobackward.<n>" and
// "goforward.<n>" at run time; other steps must draw too.
constexpr std::array<int, 4> kSkipSteps{5, 10, 15, 30};

// Dotted literals in the sources that are not symbol names: reverse-domain names, file names, and the
// member paths of the detail cache's JSON.
const QStringList kNotSymbolPrefixes{QStringLiteral("com."), QStringLiteral("org.")};
const QStringList kFileSuffixes{QStringLiteral(".json"), QStringLiteral(".pem"), QStringLiteral(".png"),
                                QStringLiteral(".svg"),  QStringLiteral(".qml"), QStringLiteral(".log"),
                                QStringLiteral(".mov"),  QStringLiteral(".mp4"), QStringLiteral(".exe"),
                                QStringLiteral(".txt"),  QStringLiteral(".com")};
const QStringList kNotSymbols{QStringLiteral("detail.duration"), QStringLiteral("detail.scoreboard")};

bool looksDotted(const QString& text) {
    static const QRegularExpression dotted(QStringLiteral("^[a-z][a-z0-9]*(\\.[a-z0-9]+)+$"));
    if (!dotted.match(text).hasMatch() || kNotSymbols.contains(text)) return false;
    for (const QString& prefix : kNotSymbolPrefixes) {
        if (text.startsWith(prefix)) return false;
    }
    for (const QString& suffix : kFileSuffixes) {
        if (text.endsWith(suffix)) return false;
    }
    return true;
}

// Every symbol name the code can hand to LucideIcon, with where it comes from.
QMap<QString, QString> symbolNamesInUse() {
    static const QRegularExpression bareName(QStringLiteral("^[a-z][a-z0-9.]*$"));
    static const QRegularExpression stringLiteral(QStringLiteral("\"(?:[^\"\\\\]|\\\\.)*\""));
    // A dotted name anywhere, or a bare word on a line whose code speaks of a symbol ("wind", "star"); a
    // "symbol" inside a string of that line (a role name, say) does not count.
    QMap<QString, QString> names = test::namesInSources(
        [](const test::SourceLiteral& literal) {
            const QString code = QString(literal.line).remove(stringLiteral);
            // A word that itself speaks of a symbol ("symbol", "symbolName") is a key, not a symbol.
            const bool symbolLine = code.contains(QLatin1String("ymbol"), Qt::CaseInsensitive) &&
                                    bareName.match(literal.text).hasMatch() &&
                                    !literal.text.contains(QLatin1String("symbol"));
            return looksDotted(literal.text) || symbolLine;
        },
        QStringLiteral("symbolName"));
    // The vocabulary's tables, whole: every event name and every dragon kind.
    for (const std::string_view word :
         {"elder", "infernal", "mountain", "ocean", "cloud", "hextech", "chemtech", ""}) {
        names.insert(QString::fromUtf8(dragonSymbolName(word)), QStringLiteral("dragonSymbolName"));
    }
    for (const std::string_view event :
         {liveEventName::championKill, liveEventName::multikill, liveEventName::baronKill,
          liveEventName::heraldKill, liveEventName::hordeKill, liveEventName::voidGrubKill,
          liveEventName::turretKilled, liveEventName::inhibKilled, liveEventName::nexusKill,
          liveEventName::nexusKilled, liveEventName::nexusDestroyed, liveEventName::gameStart,
          liveEventName::gameEnd, liveEventName::ace, std::string_view("Unknown")}) {
        RecordingEvent row;
        row.name = std::string(event);
        names.insert(QString::fromUtf8(eventSymbolName(row)), QStringLiteral("eventSymbolName"));
    }
    for (const int step : kSkipSteps) {
        names.insert(QStringLiteral("gobackward.%1").arg(step), QStringLiteral("skip(-%1)").arg(step));
        names.insert(QStringLiteral("goforward.%1").arg(step), QStringLiteral("skip(%1)").arg(step));
    }
    return names;
}

double inkShare(const QImage& image) {
    int inked = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) inked += qAlpha(image.pixel(x, y)) > 64 ? 1 : 0;
    }
    return static_cast<double>(inked) / (image.width() * image.height());
}

TEST(LucideSymbolTable, MapsEverySymbolNameTheCodeUses) {
    const QMap<QString, QString> names = symbolNamesInUse();
    // The scan must see the vocabulary's own literals, or it has stopped looking.
    ASSERT_TRUE(names.contains(QStringLiteral("ladybug.fill")));
    ASSERT_TRUE(names.contains(QStringLiteral("wind")));
    for (auto it = names.cbegin(); it != names.cend(); ++it) {
        EXPECT_TRUE(lucideSymbol(it.key()).has_value())
            << it.key().toStdString() << " used at " << it.value().toStdString();
    }
}

TEST(LucideSymbolTable, ReadsNumberedNamesAndRefusesMalformedOnes) {
    const struct {
        const char* name;
        std::optional<LucideSymbol> symbol;
    } rows[] = {
        {"gobackward.5", LucideSymbol{QStringLiteral("rotate-ccw"), LucideFill::outline, 5}},
        {"goforward.10", LucideSymbol{QStringLiteral("rotate-cw"), LucideFill::outline, 10}},
        {"goforward.999", LucideSymbol{QStringLiteral("rotate-cw"), LucideFill::outline, 999}},
        {"gobackward.", std::nullopt},
        {"gobackward.05", std::nullopt},
        {"gobackward.-5", std::nullopt},
        {"goforward.1000", std::nullopt},
        {"goforward.5x", std::nullopt},
        {"star.fill", LucideSymbol{QStringLiteral("star"), LucideFill::closedShapes, std::nullopt}},
        {"star", LucideSymbol{QStringLiteral("star"), LucideFill::outline, std::nullopt}},
        {"Star", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& row : rows) EXPECT_EQ(lucideSymbol(QString::fromUtf8(row.name)), row.symbol) << row.name;
}

TEST(LucideSymbolTable, EveryIconIsVendoredAndParsesAndNamesAreUnique) {
    QSet<QString> seen;
    QStringList icons;
    for (const LucideSymbolEntry& entry : lucideSymbolEntries()) {
        EXPECT_FALSE(seen.contains(entry.symbolName.toString()))
            << "twice: " << entry.symbolName.toString().toStdString();
        seen.insert(entry.symbolName.toString());
        icons.append(entry.lucideName.toString());
    }
    for (const LucideNumberedFamily& family : lucideNumberedFamilies())
        icons.append(family.lucideName.toString());
    for (const QString& icon : icons) EXPECT_TRUE(LucideGlyph::load(icon)) << icon.toStdString();
    // The licence travels with the icons.
    EXPECT_TRUE(QFile::exists(QStringLiteral(KESTRUM_SOURCE_DIR "/resources/icons/lucide/LICENSE")));
}

TEST(LucideIconRenderer, DrawsEveryNameAndFillsDifferFromOutlines) {
    const QSize size(48, 48);
    for (const LucideSymbolEntry& entry : lucideSymbolEntries()) {
        const QString name = entry.symbolName.toString();
        const QImage drawn = renderLucideIcon(name, Qt::black, size);
        ASSERT_EQ(drawn.size(), size) << name.toStdString();
        EXPECT_GT(inkShare(drawn), 0.03) << name.toStdString() << " draws next to nothing";
        if (entry.fill == LucideFill::outline) continue;
        const QImage outline = renderLucideSymbol(
            {entry.lucideName.toString(), LucideFill::outline, std::nullopt}, Qt::black, size);
        EXPECT_GT(inkShare(drawn), inkShare(outline) + 0.03) << name.toStdString() << " fills nothing";
    }
}

TEST(LucideIconRenderer, FillCutsInnerStrokesOutOfTheFilledShape) {
    // A filled circle with a check: the check's middle must stay clear, or the icon reads as a dot.
    const QImage drawn = renderLucideIcon(u"checkmark.circle.fill", Qt::black, QSize(96, 96));
    EXPECT_GT(qAlpha(drawn.pixel(20, 48)), 200) << "the disc is filled";
    EXPECT_LT(qAlpha(drawn.pixel(44, 56)), 60) << "the check is cut out of it";
}

TEST(LucideIconRenderer, TintsEveryInkedPixelAndDrawsTheNumber) {
    const QColor tint(0x20, 0x80, 0xF0);
    const QImage five = renderLucideIcon(u"gobackward.5", tint, QSize(64, 64));
    const QImage ten = renderLucideIcon(u"gobackward.10", tint, QSize(64, 64));
    EXPECT_NE(five, ten) << "the number is drawn inside the ring";
    for (int y = 0; y < five.height(); ++y) {
        for (int x = 0; x < five.width(); ++x) {
            const QColor pixel = five.pixelColor(x, y);
            if (pixel.alpha() < 250) continue;
            // Premultiplied storage may round a channel by one.
            ASSERT_LE(std::abs(pixel.red() - tint.red()) + std::abs(pixel.green() - tint.green()) +
                          std::abs(pixel.blue() - tint.blue()),
                      3)
                << "at " << x << "," << y;
        }
    }
    EXPECT_TRUE(renderLucideIcon(u"no.such.symbol", tint, QSize(16, 16)).isNull());
    EXPECT_TRUE(renderLucideIcon(u"star", tint, QSize(0, 16)).isNull());
}

TEST(LucideIconRenderer, DrawsAtTheExactPixelSizeAskedFor) {
    // Device pixel ratios give sizes of any number of pixels; the picture is drawn at that size, never
    // scaled.
    for (const QSize size : {QSize(16, 16), QSize(24, 24), QSize(36, 36), QSize(21, 33)}) {
        const QImage drawn = renderLucideIcon(u"crown.fill", Qt::black, size);
        EXPECT_EQ(drawn.size(), size);
    }
    // Crisp: at 2x the picture is the 1x picture's detail doubled, not its blur, so no more grey pixels
    // than twice the edge count (a loose bound that a scaled-up picture breaks).
    const auto greys = [](const QImage& image) {
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const int alpha = qAlpha(image.pixel(x, y));
                count += alpha > 20 && alpha < 235 ? 1 : 0;
            }
        }
        return count;
    };
    const QImage small = renderLucideIcon(u"star", Qt::black, QSize(24, 24));
    const QImage large = renderLucideIcon(u"star", Qt::black, QSize(48, 48));
    const QImage scaled = small.scaled(48, 48, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    EXPECT_LT(greys(large), greys(scaled));
}

}  // namespace
}  // namespace kestrum::ui
