# Started by CTest, see CMakeLists.txt. WAY says how the library comes to the example:
#
#   shared        installed from the build at hand, found with CMake under both names and with pkg-config
#   static        the same with a static library, built for the purpose and installed into an absolute folder
#   subdirectory  as a part of the example's project, which has a unity build and flags of its own
#
# The projects have what others have: jsoncpp for themselves, the package found twice, strict flags, a later C++.

file(REMOVE_RECURSE ${SCRATCH})
set(prefix ${SCRATCH}/prefix)
set(libraries ${prefix}/${LIBDIR})
set(flags "-Werror -Wall -Wextra -Wshadow -Wold-style-cast -fno-exceptions -fno-rtti")
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

# try_out(DIR): the example that was built there does its work: "titles" finds a page's title, "save" downloads its video.
function(try_out dir)
    file(MAKE_DIRECTORY ${dir}/python3.10/bin ${dir}/stage)
    foreach(program IN ITEMS python3.10/bin/python3.10 ffmpeg yt.zip)
        file(CREATE_LINK ${SOURCE}/tests/fakes/program.py ${dir}/${program} SYMBOLIC)
    endforeach()
    if(EXISTS ${dir}/titles)
        set(program titles)
        set(expected "Clip\n")
    else()
        set(program save)
        set(expected "${dir}/stage/Clip.mp4\n")
    endif()
    execute_process(
        COMMAND ${CMAKE_COMMAND} -E env NOX_STAGE=${dir}/stage NOX_SCENARIO= LC_ALL=C.UTF-8 LD_LIBRARY_PATH=${libraries}
            XDG_CACHE_HOME=${dir}/cache XDG_DATA_HOME=${dir}/data ${dir}/${program} http://localhost/
        WORKING_DIRECTORY ${dir}/stage
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE complaints)
    if(NOT result EQUAL 0 OR NOT output STREQUAL expected)
        message(FATAL_ERROR "${dir}/${program}: ${result}\n${output}${complaints}")
    endif()
    message(STATUS "${dir}/${program}: ${output}")
endfunction()

# use_pkg_config(EXAMPLE PACKAGE): builds the example without CMake.
function(use_pkg_config example package)
    set(dir ${SCRATCH}/pkg-config-${example})
    file(MAKE_DIRECTORY ${dir})
    execute_process(
        COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${libraries}/pkgconfig pkg-config --cflags --libs ${package}
        OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    separate_arguments(flags UNIX_COMMAND "${flags}")
    run(${COMPILER} -std=c++17 -o ${dir}/${example} ${SOURCE}/examples/${example}/${example}.cpp ${flags})
    try_out(${dir})
endfunction()

# use_package(NAME EXAMPLE PRELUDE [CMAKE-OPTION...]): the example, but with this text in place of its find_package().
function(use_package name example prelude)
    set(folder ${SCRATCH}/${name}-source)
    file(READ ${SOURCE}/examples/${example}/CMakeLists.txt text)
    string(REGEX REPLACE "find_package\\([^)]*\\)" "${prelude}\nlink_libraries(JsonCpp::JsonCpp)" text "${text}")
    file(WRITE ${folder}/CMakeLists.txt "${text}")
    file(COPY ${SOURCE}/examples/${example}/${example}.cpp DESTINATION ${folder})
    build(${folder} ${SCRATCH}/${name} -D CMAKE_PREFIX_PATH=${libraries}/cmake ${ARGN})
    try_out(${SCRATCH}/${name})
endfunction()

function(use_installed)
    set(qt "find_package(Qt${QT} REQUIRED COMPONENTS Core)")
    set(find "find_package(NoxWebMedia REQUIRED)")
    set(find_jobs "find_package(NoxWebMediaQt${QT} REQUIRED COMPONENTS Jobs)")
    set(find_jsoncpp "find_package(jsoncpp REQUIRED)")
    use_package(jsoncpp-first titles "${find_jsoncpp}\n${find}\n${find}" -D CMAKE_CXX_FLAGS=${flags})
    use_package(jsoncpp-last save "${find_jobs}\n${find_jobs}\n${find_jsoncpp}"
        -D CMAKE_CXX_STANDARD=20 -D CMAKE_INTERPROCEDURAL_OPTIMIZATION=ON)
    use_package(component save "${qt}\nfind_package(NoxWebMedia 1.0 REQUIRED COMPONENTS Jobs)\n${find_jsoncpp}"
        -D CMAKE_CXX_FLAGS=${flags})
    use_package(by-itself save "find_package(NoxWebMediaJobs REQUIRED)\n${find_jsoncpp}")
    use_pkg_config(titles noxwebmedia${SUFFIX})
    use_pkg_config(save noxwebmediajobs${SUFFIX})
endfunction()

if(WAY STREQUAL shared)
    # New folders are open, and private ones stay so.
    file(MAKE_DIRECTORY ${SCRATCH})
    run(sh -c "umask 077 && mkdir -p '${prefix}/share/mine' && exec '${CMAKE_COMMAND}' --install '${BUILD}' --prefix '${prefix}'")
    execute_process(COMMAND find ${SCRATCH} -type d ! -perm 755 OUTPUT_VARIABLE closed COMMAND_ERROR_IS_FATAL ANY)
    if(NOT closed STREQUAL "${prefix}\n${prefix}/share\n${prefix}/share/mine\n")
        message(FATAL_ERROR "Others cannot read these folders:\n${closed}")
    endif()
    file(GLOB shared_libraries ${prefix}/${LIBDIR}/libNoxWebMedia*.so)
    list(LENGTH shared_libraries count)
    if(NOT count EQUAL 2)
        message(FATAL_ERROR "Installed are not two libraries, but ${shared_libraries}")
    endif()
    foreach(library IN LISTS shared_libraries)
        file(STRINGS ${library} paths REGEX "${SOURCE}/")
        if(paths)
            message(FATAL_ERROR "${library} holds paths of the folder of its sources: ${paths}")
        endif()
    endforeach()
    use_installed()
    run(${CMAKE_COMMAND} --build ${BUILD} --target uninstall)
    file(GLOB_RECURSE left ${prefix}/*)
    if(left)
        message(FATAL_ERROR "The target uninstall leaves ${left}")
    endif()
elseif(WAY STREQUAL static)
    set(libraries ${prefix}/static-libraries)
    build(${SOURCE} ${SCRATCH}/build -D BUILD_SHARED_LIBS=OFF -D NOX_QT_MAJOR=${QT} -D NOX_BUILD_HOSTS=OFF
        -D BUILD_TESTING=OFF -D NOX_BUILD_EXAMPLES=OFF -D CMAKE_INSTALL_PREFIX=${prefix}
        -D CMAKE_INSTALL_LIBDIR=${libraries})
    run(${CMAKE_COMMAND} --install ${SCRATCH}/build)
    if(NOT EXISTS ${libraries}/lib${LIBRARY}.a)
        message(FATAL_ERROR "No static library was installed")
    endif()
    use_installed()
else()
    set(dir ${SCRATCH}/build)
    set(options -D NOX_SOURCE_DIR=${SOURCE} -D NOX_QT_MAJOR=${QT} -D CMAKE_UNITY_BUILD=ON -D CMAKE_CXX_FLAGS=${flags})
    build(${SOURCE}/tests/consumer/subdirectory ${dir} ${options})
    try_out(${dir})
    try_out(${dir}/save)
    foreach(unwanted IN ITEMS bin package DartConfiguration.tcl CPackConfig.cmake compile_commands.json)
        if(EXISTS ${dir}/${unwanted})
            message(FATAL_ERROR "The library leaves ${unwanted} in the project's build folder")
        endif()
    endforeach()
    run(${CMAKE_COMMAND} --install ${dir} --prefix ${prefix})
    if(EXISTS ${prefix})
        message(FATAL_ERROR "The library is installed by the project that uses it")
    endif()
    # Unless the project wants that: then it can export what links the library.
    build(${SOURCE}/tests/consumer/subdirectory ${dir} ${options} -D NOX_INSTALL=ON)
    run(${CMAKE_COMMAND} --install ${dir} --prefix ${prefix})
    foreach(wanted IN ITEMS guestTargets.cmake lib${LIBRARY}.so)
        if(NOT EXISTS ${prefix}/${LIBDIR}/${wanted})
            message(FATAL_ERROR "${wanted} is not installed")
        endif()
    endforeach()
endif()
