# Programs for 64-bit ARM, made on Debian by its cross compiler (package g++-aarch64-linux-gnu). The libraries of the command
# brelan are those of Debian's arm64, which scripts/packages and scripts/everywhere lay out in the build directory.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_STRIP aarch64-linux-gnu-strip)
# No run path: of one into the build directory installing leaves the room, as long as that directory's name.
set(CMAKE_SKIP_RPATH ON)
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)

set(libraries ${CMAKE_CURRENT_LIST_DIR}/../build/arm64-libraries)
if(EXISTS ${libraries}/usr)
    get_filename_component(libraries ${libraries} ABSOLUTE)
    set(CMAKE_SYSROOT ${libraries})
    set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
    set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
    set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
    set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
endif()
