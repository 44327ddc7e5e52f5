# Programs for 64-bit ARM, made on Debian by its cross compiler (package g++-aarch64-linux-gnu) with the libraries of Debian's
# arm64.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_STRIP aarch64-linux-gnu-strip)
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
