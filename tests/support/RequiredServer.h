#pragma once

#include <gtest/gtest.h>

#include <QString>

// Skips the test when a server it needs could not be started, saying why; under KESTRUM_REQUIRE_MEDIA=1
// (CI), where every server is installed, that is a failure instead.
#define KESTRUM_REQUIRE_SERVER(started, failure)                                              \
    do {                                                                                      \
        if (!(started)) {                                                                     \
            if (qEnvironmentVariable("KESTRUM_REQUIRE_MEDIA") == QLatin1String("1")) {        \
                FAIL() << "a required server is missing: " << QString(failure).toStdString(); \
            }                                                                                 \
            GTEST_SKIP() << "no server: " << QString(failure).toStdString();                  \
        }                                                                                     \
    } while (false)
