# nox_add_library() makes a library of this tree: visibility, soname, version script, CMake package, pkg-config file and
# installation.
#
# The builds for Qt 6 and Qt 5 can be installed side by side. For Qt 5, the names of the library, of the pkg-config file and
# of the folders contain the version. Each build has its own copy of the headers.

include(CMakePackageConfigHelpers)
include(CheckLinkerFlag)

# nox_relative_path(VARIABLE FROM TO): the path from one installed folder to another. It is absolute if one of them is.
function(nox_relative_path variable from to)
    cmake_path(IS_ABSOLUTE from from_is_absolute)
    cmake_path(IS_ABSOLUTE to to_is_absolute)
    if(from_is_absolute OR to_is_absolute)
        cmake_path(ABSOLUTE_PATH to BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX} NORMALIZE OUTPUT_VARIABLE path)
    else()
        file(RELATIVE_PATH path /prefix/${from} /prefix/${to})
    endif()
    string(REGEX REPLACE "/$" "" path ${path})
    set(${variable} ${path} PARENT_SCOPE)
endfunction()

# nox_add_library(TARGET
#     EXPORT_NAME NAME         programs link Nox::NAME
#     PREFIX PREFIX            PREFIX_objects: the objects. PREFIX_internals: the same as an archive, with which tests,
#                              benchmarks and fuzz targets reach the private classes
#     DESCRIPTION TEXT         for the pkg-config file
#     VERSION_SCRIPT FILE      lists the exported names
#     BUILDS_ON LIBRARY...     libraries of this tree that programs link along with this one
#     LIBRARIES TARGET...      other libraries that programs link along with it
#     PRIVATE_LIBRARIES TARGET...
#                              libraries for its own sources; programs that link it statically link them, too
#     REQUIRES MODULE...       LIBRARIES as modules of pkg-config
#     PRIVATE_REQUIRES MODULE...
#                              PRIVATE_LIBRARIES as modules of pkg-config
#     PUBLIC_HEADERS FILE...   installed under the path that they have in the tree
#     SOURCES FILE...)
function(nox_add_library target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "EXPORT_NAME;PREFIX;DESCRIPTION;VERSION_SCRIPT"
        "BUILDS_ON;LIBRARIES;PRIVATE_LIBRARIES;REQUIRES;PRIVATE_REQUIRES;PUBLIC_HEADERS;SOURCES")
    string(TOLOWER ${target} pkgconfig_name)
    set(includedir ${CMAKE_INSTALL_INCLUDEDIR})
    set(output_name ${target})
    if(NOX_QT_MAJOR EQUAL 5)
        string(APPEND output_name Qt5)
        string(APPEND pkgconfig_name -qt5)
        set(includedir ${includedir}/${pkgconfig_name})
    endif()
    set(public_libraries ${arg_BUILDS_ON} ${arg_LIBRARIES})

    # Compiled once, linked twice: into the library and into the archive.
    set(objects ${arg_PREFIX}_objects)
    add_library(${objects} OBJECT ${arg_SOURCES} ${arg_PUBLIC_HEADERS})
    set_target_properties(${objects} PROPERTIES AUTOMOC ON POSITION_INDEPENDENT_CODE ON)
    target_include_directories(${objects} PUBLIC ${PROJECT_SOURCE_DIR})
    target_compile_definitions(${objects} PRIVATE NOX_BUILDING_LIBRARY)
    target_link_libraries(${objects} PUBLIC ${public_libraries} PRIVATE ${arg_PRIVATE_LIBRARIES} nox_options)
    if(NOX_BUILD_TESTS OR NOX_BUILD_BENCHMARKS OR NOX_BUILD_FUZZERS)
        add_library(${arg_PREFIX}_internals STATIC EXCLUDE_FROM_ALL)
        target_link_libraries(${arg_PREFIX}_internals PUBLIC ${objects})
    endif()

    add_library(${target})
    add_library(Nox::${arg_EXPORT_NAME} ALIAS ${target})
    target_sources(${target}
        PRIVATE $<TARGET_OBJECTS:${objects}>
        PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${arg_PUBLIC_HEADERS}
    )
    set_target_properties(${target} PROPERTIES
        EXPORT_NAME ${arg_EXPORT_NAME}
        OUTPUT_NAME ${output_name}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        LINKER_LANGUAGE CXX
        VERIFY_INTERFACE_HEADER_SETS ${PROJECT_IS_TOP_LEVEL}
        NOX_QT_MAJOR ${NOX_QT_MAJOR}
        EXPORT_PROPERTIES NOX_QT_MAJOR
    )
    target_compile_features(${target} PUBLIC cxx_std_17)
    target_link_libraries(${target} PUBLIC ${public_libraries})
    if(BUILD_SHARED_LIBS)
        target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:${arg_PRIVATE_LIBRARIES}>)
        if(NOT PROJECT_IS_TOP_LEVEL)
            target_link_options(${target} PRIVATE -Wno-error) # with link-time optimisation, the linker warns
        endif()
        if(arg_BUILDS_ON)
            set_target_properties(${target} PROPERTIES INSTALL_RPATH $ORIGIN)
        endif()
        nox_restrict_exports(${target} ${arg_VERSION_SCRIPT})
    else()
        target_link_libraries(${target} PRIVATE ${arg_PRIVATE_LIBRARIES})
    endif()

    if(CMAKE_COMPILE_WARNING_AS_ERROR)
        # Each public header by itself, as a host compiles it.
        add_custom_target(${arg_PREFIX}_header_check ALL)
        add_dependencies(${arg_PREFIX}_header_check ${target}_verify_interface_header_sets)
    endif()

    if(NOX_INSTALL)
        nox_install_library()
    endif()
endfunction()

# Instantiations of the standard library's templates are visible by default. The script hides them. Not every linker
# supports one.
function(nox_restrict_exports target version_script)
    cmake_path(ABSOLUTE_PATH version_script)
    check_linker_flag(CXX LINKER:--version-script=${version_script} NOX_LINKER_TAKES_VERSION_SCRIPT)
    if(NOX_LINKER_TAKES_VERSION_SCRIPT)
        target_link_options(${target} PRIVATE LINKER:--version-script=${version_script})
        set_target_properties(${target} PROPERTIES LINK_DEPENDS ${version_script})
    endif()
    check_linker_flag(CXX LINKER:--no-undefined NOX_LINKER_TAKES_NO_UNDEFINED)
    # A project around this tree may build with sanitizers, too.
    if(NOX_LINKER_TAKES_NO_UNDEFINED AND PROJECT_IS_TOP_LEVEL AND NOT NOX_SANITIZE)
        target_link_options(${target} PRIVATE LINKER:--no-undefined)
    endif()
endfunction()

# Called by nox_add_library(), whose variables it reads.
#
# find_package(NoxWebMedia) searches all folders whose names begin with this name, and uses the one whose version file
# accepts the project's Qt. find_package(NoxWebMediaQt6) and find_package(NoxWebMediaQt5) use the one that they name.
function(nox_install_library)
    set(cmake_folder ${CMAKE_INSTALL_LIBDIR}/cmake)
    set(package_folder ${cmake_folder}/${output_name})
    set(named_package ${target}Qt${NOX_QT_MAJOR})
    set(generated ${PROJECT_BINARY_DIR}/package)
    set(templates ${CMAKE_CURRENT_FUNCTION_LIST_DIR})

    configure_package_config_file(${templates}/Config.cmake.in ${generated}/${target}Config.cmake
        INSTALL_DESTINATION ${package_folder}
        NO_SET_AND_CHECK_MACRO
    )
    configure_file(${templates}/ConfigVersion.cmake.in ${generated}/${target}ConfigVersion.cmake @ONLY)
    write_basic_package_version_file(${generated}/${target}ConfigNumber.cmake COMPATIBILITY SameMajorVersion)
    configure_file(${templates}/NamedConfig.cmake.in ${generated}/${named_package}Config.cmake @ONLY)
    configure_file(${generated}/${target}ConfigNumber.cmake ${generated}/${named_package}ConfigVersion.cmake COPYONLY)

    # Relative to the file, so that an installation can be moved. Blanks in absolute paths need a backslash.
    nox_relative_path(prefix_from_pc ${CMAKE_INSTALL_LIBDIR}/pkgconfig .)
    string(REPLACE " " "\\ " prefix_from_pc "${prefix_from_pc}")
    cmake_path(IS_RELATIVE prefix_from_pc is_relocatable)
    if(is_relocatable)
        string(PREPEND prefix_from_pc "\${pcfiledir}/")
    endif()
    string(TOLOWER "${arg_BUILDS_ON}" modules)
    if(NOX_QT_MAJOR EQUAL 5)
        list(TRANSFORM modules APPEND -qt5)
    endif()
    list(APPEND modules ${arg_REQUIRES})
    if(NOT BUILD_SHARED_LIBS)
        list(APPEND modules ${arg_PRIVATE_REQUIRES})
    endif()
    list(JOIN modules " " modules)
    foreach(folder IN ITEMS includedir CMAKE_INSTALL_LIBDIR)
        string(REPLACE " " "\\ " pc_${folder} "${${folder}}")
        cmake_path(IS_RELATIVE pc_${folder} is_relative)
        if(is_relative)
            string(PREPEND pc_${folder} "\${prefix}/")
        endif()
    endforeach()
    configure_file(${templates}/library.pc.in ${generated}/${pkgconfig_name}.pc @ONLY)

    install(TARGETS ${target}
        EXPORT ${target}Targets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
        FILE_SET HEADERS DESTINATION ${includedir} COMPONENT development
    )
    install(EXPORT ${target}Targets NAMESPACE Nox:: DESTINATION ${package_folder} COMPONENT development)
    install(
        FILES
            ${generated}/${target}Config.cmake
            ${generated}/${target}ConfigVersion.cmake
            ${generated}/${target}ConfigNumber.cmake
        DESTINATION ${package_folder}
        COMPONENT development
    )
    install(FILES ${templates}/jsoncpp/CMakeLists.txt DESTINATION ${package_folder}/jsoncpp COMPONENT development)
    install(FILES ${generated}/${named_package}Config.cmake ${generated}/${named_package}ConfigVersion.cmake
        DESTINATION ${cmake_folder}/${named_package}
        COMPONENT development
    )
    install(FILES ${generated}/${pkgconfig_name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endfunction()
