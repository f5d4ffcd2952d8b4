# Run at the beginning of an installation: nox_first_folder becomes the prefix, or the innermost folder above it that exists.

set(nox_first_folder "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}")
while(NOT EXISTS "${nox_first_folder}")
    cmake_path(GET nox_first_folder PARENT_PATH nox_first_folder)
endwhile()
