#include "formats/vtu_blocks.h"

#include <zlib.h>

#include <algorithm>
#include <array>

#include "cli/exit_status.h"

namespace brelan::tool {

namespace {

constexpr std::string_view ALPHABET = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::array<std::int8_t, 256> VALUES = [] {
    std::array<std::int8_t, 256> values{};
    values.fill(-1);
    for (std::size_t i = 0; i < ALPHABET.size(); ++i)
        values[static_cast<unsigned char>(ALPHABET[i])] = static_cast<std::int8_t>(i);
    return values;
}();

void put_64(std::string& out, std::uint64_t value) {
    for (int k = 0; k < 8; ++k)
        out += static_cast<char>((value >> (8 * k)) & 0xFFU);
}

}  // namespace

std::string to_base64(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    const auto byte = [&](std::size_t i) -> std::uint32_t {
        return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U;
    };
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::uint32_t three = byte(i) << 16U | byte(i + 1) << 8U | byte(i + 2);
        text += ALPHABET[three >> 18U];
        text += ALPHABET[three >> 12U & 63U];
        text += i + 1 < bytes.size() ? ALPHABET[three >> 6U & 63U] : '=';
        text += i + 2 < bytes.size() ? ALPHABET[three & 63U] : '=';
    }
    return text;
}

Decoded from_base64(std::string_view text, std::size_t most) {
    Decoded decoded;
    std::uint32_t bits = 0;
    int held = 0, in_group = 0;
    std::size_t at = 0;
    for (; at < text.size() && (decoded.bytes.size() < most || in_group != 0); ++at) {
        const auto c = static_cast<unsigned char>(text[at]);
        if (c == ' ' || c == '\n' || c == '\r' || c == '\t')
            continue;
        in_group = (in_group + 1) % 4;
        if (c == '=') {
            if (in_group == 0) {
                ++at;
                break;
            }
            continue;
        }
        if (VALUES[c] < 0)
            throw Failure("a character that is none of base64");
        bits = bits << 6U | static_cast<std::uint32_t>(VALUES[c]);
        held += 6;
        if (held >= 8) {
            held -= 8;
            decoded.bytes += static_cast<char>(bits >> held & 0xFFU);
        }
    }
    decoded.bytes.resize(std::min(decoded.bytes.size(), most));
    decoded.used = at;
    return decoded;
}

Compressed compress_blocks(std::string_view bytes) {
    constexpr std::size_t BLOCK = std::size_t{1} << 16U;
    constexpr int LEVEL = 5;
    Compressed result;
    const std::size_t blocks = (bytes.size() + BLOCK - 1) / BLOCK;
    put_64(result.header, blocks);
    put_64(result.header, BLOCK);
    put_64(result.header, bytes.size() % BLOCK);
    std::string room(compressBound(BLOCK), '\0');
    for (std::size_t i = 0; i < blocks; ++i) {
        const std::string_view block = bytes.substr(i * BLOCK, BLOCK);
        uLongf size = room.size();
        if (compress2(reinterpret_cast<Bytef*>(room.data()), &size,
                      reinterpret_cast<const Bytef*>(block.data()), block.size(), LEVEL) != Z_OK)
            throw Failure("data cannot be compressed");
        put_64(result.header, size);
        result.blocks.append(room, 0, size);
    }
    return result;
}

std::string decompress_block(std::string_view block, std::size_t size) {
    std::string bytes(size, '\0');
    uLongf got = size;
    if (uncompress(reinterpret_cast<Bytef*>(bytes.data()), &got, reinterpret_cast<const Bytef*>(block.data()),
                   block.size()) != Z_OK ||
        got != size)
        throw Failure("a block that cannot be decompressed");
    return bytes;
}

}  // namespace brelan::tool
