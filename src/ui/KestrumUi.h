#pragma once

class QQmlEngine;

namespace kestrum::ui {

// Before the first window: the scene graph draws through OpenGL, which the player's renderer shares.
void useOpenGlSceneGraph();

// Makes the windows' QML modules (Kestrum.Style, Kestrum.Review, Kestrum.Player, and each area's) importable
// in `engine`: they are compiled into the program, their files under qrc:/qt/qml.
void registerQmlModules(QQmlEngine& engine);

}  // namespace kestrum::ui
