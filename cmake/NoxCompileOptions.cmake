# Language level, warnings, strict Qt definitions and sanitizers, for everything in this tree.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

if(NOT PROJECT_IS_TOP_LEVEL)
    # A project may have this for its own code.
    set(CMAKE_COMPILE_WARNING_AS_ERROR OFF)
else()
    set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
    if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
        set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
    endif()
endif()

add_library(nox_options INTERFACE)

# Every header of the tree is included by its path in the tree.
target_include_directories(nox_options INTERFACE ${PROJECT_SOURCE_DIR})

# The libraries do not contain the path of the sources. They need exceptions and run-time type information even if the
# project around this tree disables both.
target_compile_options(nox_options INTERFACE -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/= -fexceptions -frtti)

target_compile_definitions(nox_options INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_KEYWORDS
    QT_NO_FOREACH
    QT_NO_JAVA_STYLE_ITERATORS
    QT_STRICT_ITERATORS
)

if(NOX_SANITIZE)
    add_compile_options(-fsanitize=${NOX_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${NOX_SANITIZE})
endif()

# The rest is only for builds in which this tree is the top level. In others, warnings are nobody's errors.
if(NOT PROJECT_IS_TOP_LEVEL)
    target_compile_options(nox_options INTERFACE -Wno-error)
    return()
endif()

# The waiting macros of Qt Test 6.8 convert milliseconds to int, and gcc warns about it in the files that use them.
set(uses_qt_test $<IN_LIST:${NOX_QT}::Test,$<TARGET_PROPERTY:LINK_LIBRARIES>>)
set(tests_of_gcc $<AND:$<CXX_COMPILER_ID:GNU>,${uses_qt_test}>)

target_compile_options(nox_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wsign-conversion -Wcast-align -Wcast-qual
    -Wformat=2 -Wimplicit-fallthrough -Wold-style-cast -Woverloaded-virtual -Wnull-dereference
    -Wundef -Wunused -Wdouble-promotion -Wzero-as-null-pointer-constant
    $<$<NOT:${tests_of_gcc}>:-Wconversion>
    $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wlogical-op -Wduplicated-branches>
)

# If warnings are errors, nothing is used that the installed Qt deprecates. Other builds must not fail with a later Qt.
if(CMAKE_COMPILE_WARNING_AS_ERROR)
    set(qt_interface ${${NOX_QT}_VERSION})
else()
    set(qt_interface ${NOX_QT_MINIMUM})
endif()
string(REPLACE "." ";" numbers ${qt_interface}.0)
list(GET numbers 0 major)
list(GET numbers 1 minor)
list(GET numbers 2 patch)
math(EXPR qt_interface "(${major} << 16) + (${minor} << 8) + ${patch}" OUTPUT_FORMAT HEXADECIMAL)

target_compile_definitions(nox_options INTERFACE
    QT_DISABLE_DEPRECATED_BEFORE=${qt_interface}
    QT_WARN_DEPRECATED_UP_TO=${qt_interface}
)

# The hardening of Debian's packages, in every build that is not for debugging. Fortified functions need optimisation. A
# build of type "None" gets that and their definition from outside.
if(NOT CMAKE_BUILD_TYPE STREQUAL "Debug" AND NOT NOX_SANITIZE)
    include(CheckCXXCompilerFlag)
    include(CheckLinkerFlag)
    include(CheckPIESupported)
    check_pie_supported(LANGUAGES CXX)
    set(CMAKE_POSITION_INDEPENDENT_CODE ON)
    if(NOT CMAKE_CXX_FLAGS MATCHES "_FORTIFY_SOURCE")
        set(is_optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
        add_compile_options($<${is_optimised}:-U_FORTIFY_SOURCE> $<${is_optimised}:-D_FORTIFY_SOURCE=2>)
    endif()
    foreach(flag IN ITEMS stack-protector-strong stack-clash-protection cf-protection)
        string(MAKE_C_IDENTIFIER NOX_COMPILER_TAKES_${flag} variable)
        check_cxx_compiler_flag(-f${flag} ${variable})
        if(${variable})
            add_compile_options(-f${flag})
        endif()
    endforeach()
    check_linker_flag(CXX LINKER:-z,relro,-z,now NOX_LINKER_TAKES_NOW)
    if(NOX_LINKER_TAKES_NOW)
        add_link_options(LINKER:-z,relro,-z,now)
    endif()
endif()
