#pragma once

#include "unit/core/dashboard/DashboardTestSupport.h"

#include <QString>
#include <QVariantMap>

namespace kestrum::test {

// The review window's objects for its QML files when each is made on its own: a controller on fakes over
// a library of two recordings, the first selected.
//
// Main thread; lives as long as the views made with its objects.
class DashboardViewModels {
  public:
    DashboardViewModels();

    // The required properties of the file at `resourcePath` (by its name), or none for a file of
    // another module.
    QVariantMap propertiesFor(const QString& resourcePath);

  private:
    QVariantMap cardProperties();

    DashboardHarness dashboard_;
};

}  // namespace kestrum::test
