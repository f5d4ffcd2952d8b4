# What the library is built on: Qt Core and Gui of the chosen major version, jsoncpp, and
# simdjson, which only the library itself sees.

# A project that has found one Qt before it adds this one gets the library for that Qt.
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
find_package(jsoncpp 1.9 REQUIRED)
# Without a number: its package takes only the very same minor version.
find_package(simdjson REQUIRED)
