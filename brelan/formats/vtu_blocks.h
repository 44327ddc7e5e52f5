// Binary data of a VTU file: base64, and blocks compressed by zlib.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace brelan::tool {

std::string to_base64(std::string_view bytes);

// Blanks are passed over; decoding ends at the first padding or at `most` bytes. Throws Failure at a
// character that is none of base64.
struct Decoded {
    std::string bytes;
    std::size_t used = 0;  // characters of the text, padding included
};
Decoded from_base64(std::string_view text, std::size_t most);

// The header of a compressed array (count of blocks, their size, size of the last, compressed sizes; 64 bits
// each) and the blocks behind it.
struct Compressed {
    std::string header, blocks;
};
Compressed compress_blocks(std::string_view bytes);

// Inverse for one zlib stream of a known size. Throws Failure when it is not that.
std::string decompress_block(std::string_view block, std::size_t size);

}  // namespace brelan::tool
