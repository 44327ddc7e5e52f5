# Makes a C++ source of the page's files: cmake -D TARGET=page.cpp -D FILES=a.js|b.css -P embed.cmake
# Bytes as numbers: compilers set limits to literals.
string(REPLACE "|" ";" FILES "${FILES}")
set(arrays)
set(table)
set(number 0)
foreach(file ${FILES})
    get_filename_component(name ${file} NAME)
    file(READ ${file} bytes HEX)
    string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
    string(APPEND arrays "constexpr char FILE_${number}[] = {${bytes}0};\n")
    string(APPEND table "    EmbeddedFile{\"${name}\", {FILE_${number}, sizeof FILE_${number} - 1}},\n")
    math(EXPR number "${number} + 1")
endforeach()
string(REGEX REPLACE "0x([89a-f][0-9a-f])," "'\\\\x\\1'," arrays "${arrays}")
file(WRITE ${TARGET} "// Made by CMake from page/web/ and from the editor of the page.
#include <array>

#include \"page/embedded_files.h\"

namespace brelan::tool {

namespace {

${arrays}
constexpr std::array FILES{
${table}};

}  // namespace

std::span<const EmbeddedFile> embedded_files() {
    return FILES;
}

}  // namespace brelan::tool
")
