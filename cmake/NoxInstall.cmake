# What is installed, under which names, and what a host's build finds: the CMake package and the pkg-config file.
#
# The builds for Qt 6 and Qt 5 can be installed side by side. The one for Qt 6 has the plain names. For Qt 5 the library,
# the pkg-config file and the folders carry the version; the headers, although the same, stand in a folder of their own,
# so that each development package is whole and never meets the headers of another version.

if(NOX_QT_MAJOR EQUAL 6)
    set(NOX_LIBRARY_NAME NoxWebMedia)
    set(NOX_PKGCONFIG_NAME noxwebmedia)
    set(NOX_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR})
else()
    set(NOX_LIBRARY_NAME NoxWebMediaQt${NOX_QT_MAJOR})
    set(NOX_PKGCONFIG_NAME noxwebmedia-qt${NOX_QT_MAJOR})
    set(NOX_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/${NOX_PKGCONFIG_NAME})
endif()

# nox_install_host(TARGET COMPONENT): a host program with a folder of its own, in which it finds the programs that the
# library drives, and a link among the commands.
function(nox_install_host target component)
    if(NOT NOX_INSTALL)
        return()
    endif()
    set(folder ${CMAKE_INSTALL_LIBEXECDIR}/${target})
    file(RELATIVE_PATH library_from_folder /prefix/${folder} /prefix/${CMAKE_INSTALL_LIBDIR})
    file(RELATIVE_PATH program_from_bin /prefix/${CMAKE_INSTALL_BINDIR} /prefix/${folder}/${target})
    set_target_properties(${target} PROPERTIES INSTALL_RPATH $ORIGIN/${library_from_folder})
    install(TARGETS ${target} RUNTIME DESTINATION ${folder} COMPONENT ${component})

    set(link ${CMAKE_CURRENT_BINARY_DIR}/link/${target})
    file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/link)
    file(CREATE_LINK ${program_from_bin} ${link} SYMBOLIC)
    install(FILES ${link} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${component})
endfunction()

if(NOT NOX_INSTALL)
    return()
endif()

include(CMakePackageConfigHelpers)

# find_package(NoxWebMedia) looks into every folder whose name begins so, and takes the one whose version file agrees.
# find_package(NoxWebMediaQt6) and find_package(NoxWebMediaQt5) take the one that they name.
set(cmake_folder ${CMAKE_INSTALL_LIBDIR}/cmake)
set(NOX_INSTALL_CMAKEDIR ${cmake_folder}/${NOX_LIBRARY_NAME})
set(NOX_NAMED_PACKAGE NoxWebMediaQt${NOX_QT_MAJOR})
set(config_folder ${PROJECT_BINARY_DIR}/package)

configure_package_config_file(
    ${CMAKE_CURRENT_LIST_DIR}/NoxWebMediaConfig.cmake.in
    ${config_folder}/NoxWebMediaConfig.cmake
    INSTALL_DESTINATION ${NOX_INSTALL_CMAKEDIR}
)
configure_file(
    ${CMAKE_CURRENT_LIST_DIR}/NoxWebMediaConfigVersion.cmake.in
    ${config_folder}/NoxWebMediaConfigVersion.cmake
    @ONLY
)
write_basic_package_version_file(
    ${config_folder}/NoxWebMediaConfigNumber.cmake
    COMPATIBILITY SameMajorVersion
)
configure_file(
    ${CMAKE_CURRENT_LIST_DIR}/NoxWebMediaNamedConfig.cmake.in
    ${config_folder}/${NOX_NAMED_PACKAGE}Config.cmake
    @ONLY
)
configure_file(
    ${config_folder}/NoxWebMediaConfigNumber.cmake
    ${config_folder}/${NOX_NAMED_PACKAGE}ConfigVersion.cmake
    COPYONLY
)
# Relative to its own place, so that an installation can be put anywhere.
file(RELATIVE_PATH prefix_from_pc /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
# Who links the static library links what is inside as well.
if(BUILD_SHARED_LIBS)
    set(requires_when_static "")
else()
    set(requires_when_static " simdjson")
endif()
configure_file(
    ${CMAKE_CURRENT_LIST_DIR}/noxwebmedia.pc.in
    ${config_folder}/${NOX_PKGCONFIG_NAME}.pc
    @ONLY
)

install(EXPORT NoxWebMediaTargets NAMESPACE Nox:: DESTINATION ${NOX_INSTALL_CMAKEDIR} COMPONENT development)
install(
    FILES
        ${config_folder}/NoxWebMediaConfig.cmake
        ${config_folder}/NoxWebMediaConfigVersion.cmake
        ${config_folder}/NoxWebMediaConfigNumber.cmake
    DESTINATION ${NOX_INSTALL_CMAKEDIR}
    COMPONENT development
)
install(
    FILES
        ${config_folder}/${NOX_NAMED_PACKAGE}Config.cmake
        ${config_folder}/${NOX_NAMED_PACKAGE}ConfigVersion.cmake
    DESTINATION ${cmake_folder}/${NOX_NAMED_PACKAGE}
    COMPONENT development
)
install(
    FILES ${config_folder}/${NOX_PKGCONFIG_NAME}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development
)
