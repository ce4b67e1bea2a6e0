#pragma once

#include <QImage>
#include <QSize>
#include <QString>
#include <QStringView>

#include <optional>
#include <span>

namespace kestrum::ui {

// The art that the system names and the team supplies: objectives, dragon kinds, structures, roles and
// maps, each an original SVG drawn on one 24-unit grid (a coloured tile with a white figure) so that it
// reads at 16 pixels on light and dark grounds alike.
struct CommunityDragonArtEntry {
    QStringView artName;
    QStringView fileName;
};

std::span<const CommunityDragonArtEntry> communityDragonArtEntries();

// The resource path of an art name's file; absent for a name without art.
std::optional<QString> communityDragonArtPath(QStringView artName);

// The art drawn at an exact pixel size; a null image for a name without art, a file that does not
// render, or an empty size. Thread-safe.
QImage renderCommunityDragonArt(QStringView artName, QSize pixelSize);

}  // namespace kestrum::ui
