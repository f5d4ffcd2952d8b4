# Run at the end of an installation: lets everybody read its folders, whatever the umask is. Permissions are only added,
# because a folder may have existed before.

cmake_policy(VERSION 3.25)

set(folders)
foreach(file IN LISTS CMAKE_INSTALL_MANIFEST_FILES)
    cmake_path(GET file PARENT_PATH folder)
    while(NOT folder STREQUAL CMAKE_INSTALL_PREFIX AND NOT "$ENV{DESTDIR}${folder}" IN_LIST folders)
        cmake_path(IS_PREFIX CMAKE_INSTALL_PREFIX ${folder} is_inside)
        if(NOT is_inside)
            break()
        endif()
        list(APPEND folders "$ENV{DESTDIR}${folder}")
        cmake_path(GET folder PARENT_PATH folder)
    endwhile()
endforeach()
if(folders)
    execute_process(COMMAND chmod a+rx ${folders} COMMAND_ERROR_IS_FATAL ANY)
endif()
