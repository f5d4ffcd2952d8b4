# cmake -D BUILD=DIR -P Uninstall.cmake: removes the files of the last "cmake --install DIR". Folders stay.

file(GLOB manifests ${BUILD}/install_manifest*.txt)
if(NOT manifests)
    message(FATAL_ERROR "Nothing was installed from ${BUILD}")
endif()
foreach(manifest IN LISTS manifests)
    file(STRINGS ${manifest} files)
    foreach(file IN LISTS files)
        file(REMOVE "$ENV{DESTDIR}${file}")
    endforeach()
    file(REMOVE ${manifest})
endforeach()
