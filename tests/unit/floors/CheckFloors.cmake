# The floors of the source tree, from the ground up: base; ports and media; core; the platform adapters
# and the windows; the program. A source may include only its own floor and the floors below it, so that
# no arrow runs back up. Run as a script:
#   cmake -DROOT=<src folder> -DFLOOR=<base|ports|media|core|adapters|ui> -P CheckFloors.cmake
# It fails, listing every offending line, when a source of that floor includes a header of a floor above
# it (a quoted include names its floor by its first folders, as "core/json/JsonWriter.h"), or, for the
# portable floors, a header of a widget toolkit, X11, PulseAudio, FFmpeg or mpv.
cmake_minimum_required(VERSION 3.25)
if(NOT ROOT OR NOT FLOOR)
    message(FATAL_ERROR "ROOT and FLOOR must be set")
endif()

# Each floor: the folders under ROOT that hold it, and the folders its quoted includes may name.
set(base_folders base)
set(base_allowed base)
set(ports_folders platform/ports)
set(ports_allowed base platform/ports)
set(media_folders media)
set(media_allowed base platform/ports media)
set(core_folders core)
set(core_allowed base platform/ports media core)
set(adapters_folders platform/linux platform/fake)
set(adapters_allowed base platform/ports media core platform/linux platform/fake)
set(ui_folders ui)
set(ui_allowed base platform/ports media core ui)
if(NOT DEFINED ${FLOOR}_folders)
    message(FATAL_ERROR "unknown floor ${FLOOR}")
endif()

# The portable floors call the world only through ports: no toolkit or system header of a platform.
set(platform_headers "QtWidgets|QtOpenGLWidgets|QWidget|QMainWindow|QDialog|QApplication|QAbstractButton|QLabel|QtQuick|QtQml|QQuick|QQml|xcb/|X11/|pulse/|libavformat/|libavcodec/|libavutil/|libswscale/|libswresample/|libyuv|mpv/")
set(portable_floors base ports core)

set(offenders "")
set(count 0)
foreach(folder IN LISTS ${FLOOR}_folders)
    file(GLOB_RECURSE sources "${ROOT}/${folder}/*.h" "${ROOT}/${folder}/*.hpp" "${ROOT}/${folder}/*.cpp")
    foreach(source IN LISTS sources)
        math(EXPR count "${count} + 1")
        file(STRINGS "${source}" includes REGEX "^[ \t]*#[ \t]*include[ \t]*[<\"]")
        foreach(line IN LISTS includes)
            if(line MATCHES "\"([^\"]*)\"")
                set(target "${CMAKE_MATCH_1}")
                set(allowed FALSE)
                foreach(prefix IN LISTS ${FLOOR}_allowed)
                    if(target MATCHES "^${prefix}/")
                        set(allowed TRUE)
                    endif()
                endforeach()
                # The movie layer's FFmpeg side is private to it.
                if(NOT FLOOR STREQUAL "media" AND target MATCHES "^media/ffmpeg/")
                    set(allowed FALSE)
                endif()
                # The mpv player brings Qt Quick and mpv with it: the windows place it, the core only
                # knows the VideoPlayer port.
                if(NOT FLOOR MATCHES "^(media|ui)$" AND target MATCHES "^media/mpv/")
                    set(allowed FALSE)
                endif()
                if(NOT allowed)
                    string(APPEND offenders "\n  ${source}: ${line}")
                endif()
            elseif(FLOOR IN_LIST portable_floors AND line MATCHES "<(${platform_headers})")
                string(APPEND offenders "\n  ${source}: ${line}")
            endif()
        endforeach()
    endforeach()
endforeach()

if(count EQUAL 0)
    message(FATAL_ERROR "no sources of the floor ${FLOOR} under ${ROOT}")
endif()
if(offenders)
    message(FATAL_ERROR "the floor ${FLOOR} includes what stands above it:${offenders}")
endif()
message(STATUS "${count} sources of the floor ${FLOOR} include only what stands below them")
