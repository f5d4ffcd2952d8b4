# Debian packages: "cpack -G DEB" in a build folder. scripts/package.sh makes all of them, for Qt 6 and Qt 5.
#
#   libnoxwebmedia1     libnoxwebmedia-qt5-1     what programs need that use the library
#   libnoxwebmedia-dev  libnoxwebmedia-qt5-dev   what building such programs needs
#   nox-fetch, nox-desk                          the hosts; from the Qt 6 build only

option(NOX_SYSTEM_PROGRAMS "Install the hosts with links to the system's interpreter, ffmpeg and tool" OFF)
set(NOX_PACKAGE_CONTACT "NoxWebMedia developers <noxwebmedia@localhost>" CACHE STRING "Maintainer of the packages")

if(NOX_QT_MAJOR EQUAL 6)
    set(runtime_package libnoxwebmedia${PROJECT_VERSION_MAJOR})
    set(development_package libnoxwebmedia-dev)
    set(qt_development "qt6-base-dev (>= ${NOX_QT_MINIMUM})")
    set(hosts fetch desk)
else()
    set(runtime_package libnoxwebmedia-qt5-${PROJECT_VERSION_MAJOR})
    set(development_package libnoxwebmedia-qt5-dev)
    set(qt_development "qtbase5-dev (>= ${NOX_QT_MINIMUM})")
    set(hosts)
endif()
if(NOT NOX_BUILD_HOSTS)
    set(hosts)
endif()

set(same_version "${runtime_package} (= ${PROJECT_VERSION})")
set(about_library "This library describes the media of web pages and downloads them. It drives a youtube-dl-compatible \
tool and ffmpeg, which stand in the folder of the program that uses it. Built for Qt ${NOX_QT_MAJOR}.")
set(about_host "The page's streams are listed, one is chosen and downloaded; video and audio are joined.")

# nox_package(COMPONENT NAME SECTION DEPENDS SUMMARY DESCRIPTION)
macro(nox_package component name section depends summary description)
    string(TOUPPER ${component} key)
    set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${name})
    set(CPACK_DEBIAN_${key}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${key}_PACKAGE_DEPENDS "${depends}")
    set(CPACK_DEBIAN_${key}_DESCRIPTION "${summary}\n${description}")
    install(FILES ${PROJECT_SOURCE_DIR}/CHANGELOG.md
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name}
        COMPONENT ${component}
    )
endmacro()

nox_package(runtime ${runtime_package} libs ""
    "media of web pages, described and downloaded (Qt ${NOX_QT_MAJOR})" "${about_library}")
nox_package(development ${development_package} libdevel "${same_version}, ${qt_development}, libjsoncpp-dev"
    "media of web pages, development files (Qt ${NOX_QT_MAJOR})" "${about_library}")
nox_package(fetch nox-fetch video "${same_version}, python3, yt-dlp"
    "downloads videos from web pages, on the command line" "${about_host}")
nox_package(desk nox-desk video "${same_version}, python3, yt-dlp"
    "downloads videos from web pages, in a window" "${about_host}")
set(CPACK_DEBIAN_FETCH_PACKAGE_RECOMMENDS ffmpeg)
set(CPACK_DEBIAN_DESK_PACKAGE_RECOMMENDS "ffmpeg, qt6-translations-l10n")

install(FILES ${PROJECT_SOURCE_DIR}/docs/host-guide.md ${PROJECT_SOURCE_DIR}/docs/security.md
        ${PROJECT_SOURCE_DIR}/docs/tool.md
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${development_package}
    COMPONENT development
)

# The hosts find their programs in their own folders. The tool's archive holds our front alone, which calls the module
# that the system keeps up to date.
if(NOX_SYSTEM_PROGRAMS)
    set(programs ${PROJECT_BINARY_DIR}/programs)
    file(MAKE_DIRECTORY ${programs}/python3.10/bin)
    file(CREATE_LINK /usr/bin/python3 ${programs}/python3.10/bin/python3.10 SYMBOLIC)
    file(CREATE_LINK /usr/bin/ffmpeg ${programs}/ffmpeg SYMBOLIC)
    execute_process(
        COMMAND /usr/bin/python3 -I ${PROJECT_SOURCE_DIR}/scripts/make-tool-archive.py ${programs}/yt.zip --front-only
        COMMAND_ERROR_IS_FATAL ANY
    )
    foreach(host IN LISTS hosts)
        install(DIRECTORY ${programs}/ DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/nox-${host} COMPONENT ${host})
    endforeach()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL runtime development ${hosts})
set(CPACK_PACKAGE_CONTACT "${NOX_PACKAGE_CONTACT}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The hosts' own library is in no package yet when their dependencies are looked up.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/nox)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
