#pragma once

#include "core/library/MatchVideo.h"

#include <QString>

#include <optional>

namespace kestrum {

// What a match card shows of its recording, as texts and art names the view draws. Art names are files
// of the application's own art ("map_summoners_rift"); symbols are system symbol names.
namespace MatchCardPresentation {

struct MapArt {
    std::optional<QString> artName;
    QString label;

    friend bool operator==(const MapArt&, const MapArt&) = default;
};

struct RoleArt {
    std::optional<QString> artName;
    std::optional<QString> label;

    friend bool operator==(const RoleArt&, const RoleArt&) = default;
};

// The map: by identifier 11 Summoner's Rift, 12 Howling Abyss, 21 Nexus Blitz, 30 Arena ("League map"
// for any other); without a known identifier a "CLASSIC" game shows Summoner's Rift's art and anything
// else none. The modes "PRACTICE" and "TOOL" show the practice tool in place of the map, whatever the
// identifier. Modes compare upper-cased.
MapArt mapArt(const MatchVideo& match);

// The position's art and label, the position upper-cased: TOP, JUNGLE, MIDDLE, BOTTOM and UTILITY have
// both; SUPPORT has the support art but no label; anything else has neither.
RoleArt roleArt(const std::optional<std::string>& position);

// "kills/deaths/assists", or "–/–/–" when any of the three is unknown.
QString kdaLine(const MatchVideo& match);
// "Perfect KDA" with no deaths, else "%.2f:1 KDA" of (kills + assists) / deaths; "—" when unknown.
QString kdaRatio(const MatchVideo& match);
inline const QString kKdaHelp = QStringLiteral("Final KDA, match stats, and build");

// The champion portrait's key for the art store: the champion's asset name, else its name; empty when
// neither is known.
QString championIdentifier(const MatchVideo& match);

// "Victory, " or "Defeat, " when the result is known, the champion, the position, then ", final KDA "
// with the KDA line when it is known: "Victory, Ahri, Mid, final KDA 5/2/7".
QString accessibilityLabel(const MatchVideo& match);

// The hover star's help and the context menu's first entry.
QString favoriteTitle(bool isFavorite);
// The card's title as drawn: the spaces inside each " · " part made unbreakable, so that a title too
// long for one line breaks between its parts ("Ranked Solo/Duo ·" / "Lee Sin · Jungle"), never inside a
// champion's or a queue's name.
QString cardTitle(const QString& title);
// The name of the card's trailing action for assistive technology: the deletion, or its undo while the
// deletion is pending.
QString deletionActionTitle(bool isPending);

}  // namespace MatchCardPresentation

}  // namespace kestrum
