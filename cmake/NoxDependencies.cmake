# Dependencies: Qt Core and Gui of the chosen major version, jsoncpp, and simdjson, which is private to the library.

# The default is the Qt that the project has already found.
if(TARGET Qt5::Core AND NOT TARGET Qt6::Core)
    set(default_qt 5)
else()
    set(default_qt 6)
endif()
set(NOX_QT_MAJOR ${default_qt} CACHE STRING "Qt major version to build against")
set_property(CACHE NOX_QT_MAJOR PROPERTY STRINGS 6 5)
if(NOT NOX_QT_MAJOR MATCHES "^[56]$")
    message(FATAL_ERROR "NOX_QT_MAJOR is \"${NOX_QT_MAJOR}\"; it must be 6 or 5")
endif()

set(NOX_QT Qt${NOX_QT_MAJOR})
if(NOX_QT_MAJOR EQUAL 6)
    set(NOX_QT_MINIMUM 6.4)
else()
    set(NOX_QT_MINIMUM 5.15)
endif()

find_package(${NOX_QT} ${NOX_QT_MINIMUM} REQUIRED COMPONENTS Core Gui)
if(NOT TARGET Nox::JsonCpp)
    add_subdirectory(${CMAKE_CURRENT_LIST_DIR}/jsoncpp)
endif()
if(NOT TARGET Nox::JsonCpp)
    message(FATAL_ERROR "jsoncpp 1.9 or later was not found; Debian's package is libjsoncpp-dev")
endif()
# Without a version: its package accepts only the same minor version.
if(NOT TARGET simdjson::simdjson)
    find_package(simdjson REQUIRED)
endif()

set(NOX_PYTHON /usr/bin/python3 CACHE FILEPATH "Python interpreter that runs the tool, the tests of the tool and scripts")
