include(GoogleTest)
find_package(GTest REQUIRED)

# kestrum_add_gtest(<target> PREFIX <layer.module.> LABEL <unit|integration|e2e> [GUI] [SUPPORT <library>]
#                   [ENVIRONMENT <VAR=value>...] [ALONE <gtest filter>] SOURCES ... [LIBS ...])
# Builds one GoogleTest program for a module and registers each of its cases with CTest under the
# module's prefix, so that `ctest -R core.telemetry` or `ctest -L unit` select them. GUI programs run
# under a QGuiApplication (offscreen unless QT_QPA_PLATFORM says otherwise). SUPPORT names another
# library with the program's main (the view tests' main runs an X server first). ALONE names the cases
# that record or encode against the wall clock: they run with no other test beside them, since a second
# encoder on a 2-core machine makes them lose frames that a user's machine would not.
function(kestrum_add_gtest target)
    cmake_parse_arguments(ARG "GUI" "PREFIX;LABEL;SUPPORT;ALONE" "SOURCES;LIBS;ENVIRONMENT" ${ARGN})
    add_executable(${target} ${ARG_SOURCES})
    if(ARG_SUPPORT)
        target_link_libraries(${target} PRIVATE ${ARG_SUPPORT} ${ARG_LIBS})
    elseif(ARG_GUI)
        target_link_libraries(${target} PRIVATE kestrum-test-support-gui ${ARG_LIBS})
    else()
        target_link_libraries(${target} PRIVATE kestrum-test-support ${ARG_LIBS})
    endif()
    set(environment_property)
    if(ARG_ENVIRONMENT)
        set(environment_property ENVIRONMENT "${ARG_ENVIRONMENT}")
    endif()
    set(filter_argument)
    if(ARG_ALONE)
        set(filter_argument TEST_FILTER "-${ARG_ALONE}")
        gtest_discover_tests(${target}
            TEST_PREFIX "${ARG_PREFIX}"
            TEST_FILTER "${ARG_ALONE}"
            PROPERTIES LABELS "${ARG_LABEL}" TIMEOUT 300 RUN_SERIAL TRUE ${environment_property}
            DISCOVERY_MODE PRE_TEST
            DISCOVERY_TIMEOUT 60)
    endif()
    gtest_discover_tests(${target}
        TEST_PREFIX "${ARG_PREFIX}"
        ${filter_argument}
        PROPERTIES LABELS "${ARG_LABEL}" TIMEOUT 300 ${environment_property}
        DISCOVERY_MODE PRE_TEST
        DISCOVERY_TIMEOUT 60)
endfunction()
