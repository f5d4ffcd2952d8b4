# What a host's build finds: the CMake package and the pkg-config file.

include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/NoxWebMedia)

configure_package_config_file(
    ${CMAKE_CURRENT_LIST_DIR}/NoxWebMediaConfig.cmake.in
    ${CMAKE_BINARY_DIR}/NoxWebMediaConfig.cmake
    INSTALL_DESTINATION ${package_dir}
)
write_basic_package_version_file(
    ${CMAKE_BINARY_DIR}/NoxWebMediaConfigVersion.cmake
    COMPATIBILITY SameMajorVersion
)
configure_file(${CMAKE_CURRENT_LIST_DIR}/noxwebmedia.pc.in ${CMAKE_BINARY_DIR}/noxwebmedia.pc @ONLY)

install(EXPORT NoxWebMediaTargets NAMESPACE Nox:: DESTINATION ${package_dir} COMPONENT development)
install(
    FILES ${CMAKE_BINARY_DIR}/NoxWebMediaConfig.cmake ${CMAKE_BINARY_DIR}/NoxWebMediaConfigVersion.cmake
    DESTINATION ${package_dir}
    COMPONENT development
)
install(
    FILES ${CMAKE_BINARY_DIR}/noxwebmedia.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development
)
