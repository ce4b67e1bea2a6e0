#include "ui/style/art/CommunityDragonArt.h"

#include <QPainter>
#include <QSvgRenderer>

#include <array>

namespace kestrum::ui {

namespace {

constexpr std::array<CommunityDragonArtEntry, 24> kArt{{
    // Objectives and their timers
    {u"baron", u"baron.svg"},
    {u"rift_herald", u"rift_herald.svg"},
    {u"void_grub", u"void_grub.svg"},
    // Dragon kinds, as the vocabulary names their art
    {u"dragon_elder", u"dragon_elder.svg"},
    {u"dragon_infernal", u"dragon_infernal.svg"},
    {u"dragon_mountain", u"dragon_mountain.svg"},
    {u"dragon_ocean", u"dragon_ocean.svg"},
    {u"dragon_cloud", u"dragon_cloud.svg"},
    {u"dragon_hextech", u"dragon_hextech.svg"},
    {u"dragon_chemtech", u"dragon_chemtech.svg"},
    {u"dragon_generic", u"dragon_generic.svg"},
    // Structures
    {u"minimap_turret", u"minimap_turret.svg"},
    {u"minimap_inhibitor", u"minimap_inhibitor.svg"},
    {u"minimap_nexus", u"minimap_nexus.svg"},
    // Roles
    {u"role_top", u"role_top.svg"},
    {u"role_jungle", u"role_jungle.svg"},
    {u"role_mid", u"role_mid.svg"},
    {u"role_bot", u"role_bot.svg"},
    {u"role_support", u"role_support.svg"},
    // Maps
    {u"map_summoners_rift", u"map_summoners_rift.svg"},
    {u"map_howling_abyss", u"map_howling_abyss.svg"},
    {u"map_nexus_blitz", u"map_nexus_blitz.svg"},
    {u"map_arena", u"map_arena.svg"},
    {u"map_practice_tool", u"map_practice_tool.svg"},
}};

}  // namespace

std::span<const CommunityDragonArtEntry> communityDragonArtEntries() {
    return kArt;
}

std::optional<QString> communityDragonArtPath(QStringView artName) {
    for (const CommunityDragonArtEntry& entry : kArt) {
        if (entry.artName == artName) return QStringLiteral(":/art/game/") + entry.fileName.toString();
    }
    return std::nullopt;
}

QImage renderCommunityDragonArt(QStringView artName, QSize pixelSize) {
    const std::optional<QString> path = communityDragonArtPath(artName);
    if (!path || pixelSize.isEmpty()) return {};
    QSvgRenderer renderer(*path);
    if (!renderer.isValid()) return {};
    QImage image(pixelSize, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    // Square art in a frame of another shape keeps its proportions, centred.
    const int side = std::min(pixelSize.width(), pixelSize.height());
    const QRectF frame((pixelSize.width() - side) / 2.0, (pixelSize.height() - side) / 2.0, side, side);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, frame);
    return image;
}

}  // namespace kestrum::ui
