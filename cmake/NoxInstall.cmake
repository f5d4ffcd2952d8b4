# Installation of the hosts and of the documents. nox_add_library() installs the libraries.

# nox_install_command(NAME PROGRAM COMPONENT): installs a relative link in bin/ to a program in another folder.
function(nox_install_command name program component)
    nox_relative_path(target ${CMAKE_INSTALL_BINDIR} ${program})
    set(link ${CMAKE_CURRENT_BINARY_DIR}/link/${name})
    file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/link)
    file(CREATE_LINK ${target} ${link} SYMBOLIC)
    install(FILES ${link} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${component})
endfunction()

# nox_install_host(TARGET COMPONENT): installs a host program in a folder of its own, which also has the programs that the
# library runs, and a link in bin/.
function(nox_install_host target component)
    if(NOT NOX_INSTALL)
        return()
    endif()
    set(folder ${CMAKE_INSTALL_LIBEXECDIR}/${target})
    nox_relative_path(library_folder ${folder} ${CMAKE_INSTALL_LIBDIR})
    cmake_path(IS_RELATIVE library_folder is_relocatable)
    if(is_relocatable)
        string(PREPEND library_folder $ORIGIN/)
    endif()
    set_target_properties(${target} PROPERTIES INSTALL_RPATH ${library_folder})
    install(TARGETS ${target} RUNTIME DESTINATION ${folder} COMPONENT ${component})
    nox_install_command(${target} ${folder}/${target} ${component})
    install(FILES ${PROJECT_SOURCE_DIR}/docs/tool.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${target}
        COMPONENT ${component})
    if(NOX_SYSTEM_PROGRAMS)
        install(DIRECTORY ${nox_programs}/ DESTINATION ${folder} COMPONENT ${component})
    endif()
endfunction()

if(NOT NOX_INSTALL)
    return()
endif()

# The tool's archive has only our front, which uses the tool's package of the system.
if(NOX_SYSTEM_PROGRAMS)
    set(nox_programs ${PROJECT_BINARY_DIR}/programs)
    file(MAKE_DIRECTORY ${nox_programs}/python3.10/bin)
    file(CREATE_LINK ${NOX_PYTHON} ${nox_programs}/python3.10/bin/python3.10 SYMBOLIC)
    file(CREATE_LINK /usr/bin/ffmpeg ${nox_programs}/ffmpeg SYMBOLIC)
    execute_process(
        COMMAND ${NOX_PYTHON} -I ${PROJECT_SOURCE_DIR}/scripts/make-tool-archive.py ${nox_programs}/yt.zip --front-only
        COMMAND_ERROR_IS_FATAL ANY
    )
endif()

if(PROJECT_IS_TOP_LEVEL)
    set(nox_documents ${CMAKE_INSTALL_DOCDIR})
else() # that one is the project's
    set(nox_documents ${CMAKE_INSTALL_DATADIR}/doc/${PROJECT_NAME})
endif()
install(
    FILES
        ${PROJECT_SOURCE_DIR}/CHANGELOG.md
        ${PROJECT_SOURCE_DIR}/docs/building.md
        ${PROJECT_SOURCE_DIR}/docs/host-guide.md
        ${PROJECT_SOURCE_DIR}/docs/jobs.md
        ${PROJECT_SOURCE_DIR}/docs/reliability.md
        ${PROJECT_SOURCE_DIR}/docs/security.md
        ${PROJECT_SOURCE_DIR}/docs/tool.md
    DESTINATION ${nox_documents}
    COMPONENT development
)

if(PROJECT_IS_TOP_LEVEL)
    add_custom_target(uninstall
        COMMAND ${CMAKE_COMMAND} -D BUILD=${PROJECT_BINARY_DIR} -P ${CMAKE_CURRENT_LIST_DIR}/Uninstall.cmake
        COMMENT "Removing the files of the last installation from this folder"
        VERBATIM
    )
endif()
