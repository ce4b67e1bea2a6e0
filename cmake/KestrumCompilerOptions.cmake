# Warnings are errors everywhere; third-party headers come in as system includes through their targets.
add_compile_options(-Wall -Wextra -Wpedantic -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 needs the flag for coroutines; it also reports false positives on std::variant moves,
    # and at -O3 on inlined std::string concatenation (-Wrestrict, GCC bug 105329).
    add_compile_options(-fcoroutines -Wno-maybe-uninitialized $<$<CONFIG:Release>:-Wno-restrict>)
endif()

find_program(KESTRUM_CCACHE ccache)
if(KESTRUM_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${KESTRUM_CCACHE}")
endif()

if(KESTRUM_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()
