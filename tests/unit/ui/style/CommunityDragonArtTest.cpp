// The art the system names: every name in the code has a file, every file renders and reads at 16 px.
#include "SourceLiterals.h"
#include "core/telemetry/vocabulary/DragonKind.h"
#include "ui/style/art/CommunityDragonArt.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QSet>

namespace kestrum::ui {
namespace {

bool looksLikeArtName(const QString& text) {
    static const QRegularExpression art(
        QStringLiteral("^((dragon|role|map|minimap)_[a-z_]+|baron|rift_herald|void_grub)$"));
    return art.match(text).hasMatch();
}

TEST(CommunityDragonArt, EveryArtNameTheCodeUsesHasArt) {
    QMap<QString, QString> names = test::namesInSources(
        [](const test::SourceLiteral& literal) { return looksLikeArtName(literal.text); },
        QStringLiteral("artName"));
    for (const std::string_view word :
         {"elder", "infernal", "mountain", "ocean", "cloud", "hextech", "chemtech", ""}) {
        names.insert(QString::fromUtf8(dragonAssetName(word)), QStringLiteral("dragonAssetName"));
    }
    ASSERT_TRUE(names.contains(QStringLiteral("dragon_generic"))) << "the scan sees the vocabulary";
    for (auto it = names.cbegin(); it != names.cend(); ++it) {
        EXPECT_TRUE(communityDragonArtPath(it.key()))
            << it.key().toStdString() << " used at " << it.value().toStdString();
    }
}

TEST(CommunityDragonArt, TableAndFilesAgree) {
    QSet<QString> files;
    for (const CommunityDragonArtEntry& entry : communityDragonArtEntries()) {
        EXPECT_FALSE(files.contains(entry.fileName.toString()))
            << "two names share " << entry.fileName.toString().toStdString();
        files.insert(entry.fileName.toString());
    }
    // No file lies in the folder that the table does not name: art nobody can reach is dead weight.
    const QStringList onDisk = QDir(QStringLiteral(KESTRUM_SOURCE_DIR "/resources/art/game"))
                                   .entryList({QStringLiteral("*.svg")}, QDir::Files);
    EXPECT_EQ(QSet<QString>(onDisk.begin(), onDisk.end()), files);
}

TEST(CommunityDragonArt, EveryPieceRendersAndReadsAtSixteenPixels) {
    for (const CommunityDragonArtEntry& entry : communityDragonArtEntries()) {
        const QString name = entry.artName.toString();
        const QImage art = renderCommunityDragonArt(name, QSize(16, 16));
        ASSERT_EQ(art.size(), QSize(16, 16)) << name.toStdString();
        // A tile with a figure: its middle holds both light figure pixels and the tile's darker ground.
        int light = 0;
        int ground = 0;
        for (int y = 3; y < 13; ++y) {
            for (int x = 3; x < 13; ++x) {
                const QColor pixel = art.pixelColor(x, y);
                if (pixel.alpha() < 200) continue;
                (pixel.lightnessF() > 0.75 ? light : ground) += 1;
            }
        }
        EXPECT_GE(light, 8) << name.toStdString() << ": the figure vanishes at 16 px";
        EXPECT_GE(ground, 8) << name.toStdString() << ": the figure swallows its tile at 16 px";
    }
    EXPECT_TRUE(renderCommunityDragonArt(u"dragon_unknown", QSize(16, 16)).isNull());
}

TEST(CommunityDragonArt, KeepsItsProportionsInAnOblongFrame) {
    const QImage art = renderCommunityDragonArt(u"baron", QSize(48, 24));
    ASSERT_EQ(art.size(), QSize(48, 24));
    EXPECT_EQ(qAlpha(art.pixel(2, 12)), 0) << "the square art stands centred, the sides left clear";
    EXPECT_GT(qAlpha(art.pixel(24, 12)), 200);
}

}  // namespace
}  // namespace kestrum::ui
