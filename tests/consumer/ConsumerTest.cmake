# Started by CTest, see CMakeLists.txt. WAY says how the library comes to the example:
#
#   shared        installed from the build at hand, found with CMake under both names and with pkg-config
#   static        the same with a static library, built for the purpose
#   subdirectory  as a part of the example's project

file(REMOVE_RECURSE ${SCRATCH})
set(prefix ${SCRATCH}/prefix)
set(common -G ${GENERATOR} -D CMAKE_BUILD_TYPE=Release -D CMAKE_CXX_COMPILER=${COMPILER}
    -D CMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER} --no-warn-unused-cli)

function(run)
    execute_process(COMMAND ${ARGN}
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        list(JOIN ARGN " " command)
        message(FATAL_ERROR "${command}: ${result}\n${output}")
    endif()
endfunction()

# build(SOURCE-DIR BUILD-DIR [CMAKE-OPTION...])
function(build source dir)
    run(${CMAKE_COMMAND} -S ${source} -B ${dir} ${common} ${ARGN})
    run(${CMAKE_COMMAND} --build ${dir})
endfunction()

# try_out(DIR): the example that was built there finds a page's title.
function(try_out dir)
    file(MAKE_DIRECTORY ${dir}/python3.10/bin ${dir}/stage)
    file(CREATE_LINK ${SOURCE}/tests/fakes/program.py ${dir}/python3.10/bin/python3.10 SYMBOLIC)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -E env NOX_STAGE=${dir}/stage NOX_SCENARIO= LC_ALL=C.UTF-8 LD_LIBRARY_PATH=${prefix}/${LIBDIR}
            XDG_CACHE_HOME=${dir}/cache ${dir}/titles http://localhost/
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE complaints)
    if(NOT result EQUAL 0 OR NOT output STREQUAL "Clip\n")
        message(FATAL_ERROR "${dir}/titles: ${result}\n${output}${complaints}")
    endif()
    message(STATUS "${dir}: found the title")
endfunction()

# use_pkg_config(DIR): builds the example without CMake.
function(use_pkg_config dir)
    file(MAKE_DIRECTORY ${dir})
    execute_process(
        COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${prefix}/${LIBDIR}/pkgconfig pkg-config --cflags --libs ${PACKAGE}
        OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    separate_arguments(flags UNIX_COMMAND "${flags}")
    run(${COMPILER} -std=c++17 -o ${dir}/titles ${SOURCE}/examples/titles/titles.cpp ${flags})
    try_out(${dir})
endfunction()

function(use_installed)
    foreach(name IN ITEMS NoxWebMedia NoxWebMediaQt${QT})
        # The example as it stands, but for the package's name.
        set(example ${SCRATCH}/${name}-source)
        file(READ ${SOURCE}/examples/titles/CMakeLists.txt text)
        string(REPLACE "find_package(NoxWebMedia " "find_package(${name} " text "${text}")
        file(WRITE ${example}/CMakeLists.txt "${text}")
        file(COPY ${SOURCE}/examples/titles/titles.cpp DESTINATION ${example})
        build(${example} ${SCRATCH}/${name} -D CMAKE_PREFIX_PATH=${prefix})
        try_out(${SCRATCH}/${name})
    endforeach()
    use_pkg_config(${SCRATCH}/pkg-config)
endfunction()

if(WAY STREQUAL shared)
    run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${prefix})
    use_installed()
elseif(WAY STREQUAL static)
    build(${SOURCE} ${SCRATCH}/build -D BUILD_SHARED_LIBS=OFF -D NOX_QT_MAJOR=${QT} -D NOX_BUILD_HOSTS=OFF
        -D NOX_BUILD_TESTS=OFF -D NOX_BUILD_EXAMPLES=OFF)
    run(${CMAKE_COMMAND} --install ${SCRATCH}/build --prefix ${prefix})
    if(NOT EXISTS ${prefix}/${LIBDIR}/lib${LIBRARY}.a)
        message(FATAL_ERROR "No static library was installed")
    endif()
    use_installed()
else()
    set(dir ${SCRATCH}/build)
    build(${SOURCE}/tests/consumer/subdirectory ${dir} -D NOX_SOURCE_DIR=${SOURCE} -D NOX_QT_MAJOR=${QT})
    try_out(${dir})
    foreach(unwanted IN ITEMS bin package DartConfiguration.tcl CPackConfig.cmake compile_commands.json)
        if(EXISTS ${dir}/${unwanted})
            message(FATAL_ERROR "The library leaves ${unwanted} in the project's build folder")
        endif()
    endforeach()
    run(${CMAKE_COMMAND} --install ${dir} --prefix ${prefix})
    if(EXISTS ${prefix})
        message(FATAL_ERROR "The library is installed by the project that uses it")
    endif()
endif()
