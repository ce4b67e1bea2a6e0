#pragma once

#include <QJSEngine>

namespace kestrum::ui {

// Hands a process-wide object to a QML engine as a singleton: it stays in C++ ownership, so that no
// engine (tests make many) deletes what the others and the application still use.
template <class Object>
Object* sharedWithQml(Object& object) {
    QJSEngine::setObjectOwnership(&object, QJSEngine::CppOwnership);
    return &object;
}

}  // namespace kestrum::ui
