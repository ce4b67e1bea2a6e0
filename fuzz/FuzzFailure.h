#pragma once

#include "base/common/Result.h"

#include <cstdio>
#include <cstdlib>

namespace kestrum::fuzz {

// Ends the run with what broke: libFuzzer keeps the input that did it.
[[noreturn]] inline void fail(const char* target, const char* what, const Error* error = nullptr) {
    std::fprintf(stderr, "%s: %s%s%s\n", target, what, error ? ": " : "",
                 error ? error->description.toUtf8().constData() : "");
    std::abort();
}

}  // namespace kestrum::fuzz
