#pragma once

#include <QString>

namespace kestrum {

// The application's version as the build names it (the CMake project's version, "0.1.0").
QString buildVersion();

}  // namespace kestrum
