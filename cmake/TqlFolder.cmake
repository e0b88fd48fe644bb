# tql_folder(NAME DIR PCH core|qt|widgets LINK ...) makes the static library tql_NAME of one folder.
#
# A folder without sources yet becomes an interface library, so that those above it can name it.
# Files called *Kernels.cpp hold the inner loops of raster work: they are compiled at -O3, where
# the compiler vectorises, and without the precompiled header, which another level would refuse.

define_property(GLOBAL PROPERTY TQL_FOLDERS)

function(tql_folder name dir)
    cmake_parse_arguments(arg "" "PCH" "LINK" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${dir}/*.cpp)
    file(GLOB deeper CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${dir}/tools/*.cpp)
    list(APPEND sources ${deeper})
    if(NOT sources)
        add_library(tql_${name} INTERFACE)
        list(TRANSFORM arg_LINK REPLACE "^(PUBLIC|PRIVATE)$" "INTERFACE")
        target_link_libraries(tql_${name} INTERFACE tql_options ${arg_LINK})
        return()
    endif()
    add_library(tql_${name} STATIC ${sources})
    target_link_libraries(tql_${name} PUBLIC tql_options ${arg_LINK})
    tql_precompile(tql_${name} ${arg_PCH})
    tql_kernels(${sources})
    set_property(GLOBAL APPEND PROPERTY TQL_FOLDERS tql_${name})
endfunction()

function(tql_kernels)
    foreach(source ${ARGN})
        if(source MATCHES "Kernels\\.cpp$")
            set_source_files_properties(${source} PROPERTIES
                COMPILE_OPTIONS "-O3" SKIP_PRECOMPILE_HEADERS ON)
        endif()
    endforeach()
endfunction()

# The headers that dominate parsing, one set a kind of folder.
function(tql_precompile target kind)
    set(core <algorithm> <array> <atomic> <cmath> <condition_variable> <cstdint> <cstring>
        <functional> <memory> <mutex> <string> <thread> <utility> <vector>)
    set(qt ${core} <QByteArray> <QImage> <QPainter> <QString>)
    set(widgets ${qt} <QAction> <QApplication> <QBoxLayout> <QDialog> <QDockWidget> <QEvent>
        <QLabel> <QMainWindow> <QMouseEvent> <QWidget>)
    set(test_core ${core} <gmock/gmock.h> <gtest/gtest.h>)
    set(test_gui ${qt} <gmock/gmock.h> <gtest/gtest.h>)
    set(test_widgets ${widgets} <QTest> <gmock/gmock.h> <gtest/gtest.h>)
    if(kind MATCHES "qt|test_gui")
        target_link_libraries(${target} PRIVATE Qt6::Gui)
    endif()
    target_precompile_headers(${target} PRIVATE ${${kind}})
endfunction()
