#include "formats/vtu_arrays.h"

#include <fmt/core.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>

#include "cli/exit_status.h"
#include "formats/vtu_blocks.h"

namespace brelan::tool {

namespace {

std::size_t size_of_type(std::string_view type) {
    if (type == "Int8" || type == "UInt8")
        return 1;
    if (type == "Int16" || type == "UInt16")
        return 2;
    if (type == "Int32" || type == "UInt32" || type == "Float32")
        return 4;
    if (type == "Int64" || type == "UInt64" || type == "Float64")
        return 8;
    throw Failure(fmt::format("expected an array of numbers, found the type \"{}\"", type));
}

template <class Value>
void convert(const std::string& bytes, bool swapped, std::vector<double>& values) {
    values.resize(bytes.size() / sizeof(Value));
    for (std::size_t i = 0; i < values.size(); ++i) {
        char raw[sizeof(Value)];
        std::memcpy(raw, bytes.data() + i * sizeof(Value), sizeof(Value));
        if (swapped)
            std::reverse(raw, raw + sizeof(Value));
        Value value;
        std::memcpy(&value, raw, sizeof(Value));
        values[i] = static_cast<double>(value);
    }
}

std::vector<double> numbers_of(const std::string& bytes, std::string_view type, bool swapped) {
    std::vector<double> values;
    if (type == "Int8")
        convert<std::int8_t>(bytes, swapped, values);
    else if (type == "UInt8")
        convert<std::uint8_t>(bytes, swapped, values);
    else if (type == "Int16")
        convert<std::int16_t>(bytes, swapped, values);
    else if (type == "UInt16")
        convert<std::uint16_t>(bytes, swapped, values);
    else if (type == "Int32")
        convert<std::int32_t>(bytes, swapped, values);
    else if (type == "UInt32")
        convert<std::uint32_t>(bytes, swapped, values);
    else if (type == "Int64")
        convert<std::int64_t>(bytes, swapped, values);
    else if (type == "UInt64")
        convert<std::uint64_t>(bytes, swapped, values);
    else if (type == "Float32")
        convert<float>(bytes, swapped, values);
    else
        convert<double>(bytes, swapped, values);
    return values;
}

std::vector<double> numbers_of_text(std::string_view text) {
    std::vector<double> values;
    const char* at = text.data();
    const char* const end = at + text.size();
    for (;;) {
        while (at != end && (*at == ' ' || *at == '\n' || *at == '\r' || *at == '\t'))
            ++at;
        if (at == end)
            return values;
        double value = 0.0;
        const auto [stop, error] = std::from_chars(at, end, value);
        if (error != std::errc{})
            throw Failure("a value that is no number");
        values.push_back(value);
        at = stop;
    }
}

// The bytes of one array, from base64 or raw.
class ByteReader {
public:
    ByteReader(std::string_view source, bool raw, const VtuStorage& storage, std::size_t most)
        : source_(source), raw_(raw), storage_(storage), most_(most) {}

    std::string read() { return storage_.compressed ? read_compressed() : read_plain(); }

private:
    std::string read_plain() {
        const std::size_t header = storage_.header_size;
        const std::uint64_t size = word(take(0, header), 0);
        require(size <= most_, "more values than expected");
        if (raw_)
            return exactly(take(header, size), size);
        // Header and data may be one piece of base64 or two: padding behind the header ends a piece.
        if (take(0, header + 1).size() == header)
            return exactly(take(used_, size), size);
        return exactly(take(0, header + size).substr(header), size);
    }

    std::string read_compressed() {
        const std::size_t one = storage_.header_size;
        const std::uint64_t blocks = word(take(0, one), 0);
        require(blocks <= source_.size(), "more blocks than the file can hold");
        const std::string header = exactly(take(0, (3 + blocks) * one), (3 + blocks) * one);
        const std::uint64_t full = word(header, 1), last = word(header, 2);
        std::uint64_t packed = 0;
        for (std::uint64_t k = 0; k < blocks; ++k) {
            require(word(header, 3 + k) <= source_.size(), "more data than the file can hold");
            packed += word(header, 3 + k);
        }
        require(packed <= source_.size() && full <= most_ + (std::size_t{1} << 20U),
                "more data than the file can hold");
        const std::string data = exactly(take(raw_ ? header.size() : used_, packed), packed);
        std::string bytes;
        std::size_t at = 0;
        for (std::uint64_t k = 0; k < blocks; ++k) {
            const std::uint64_t size = word(header, 3 + k);
            const std::uint64_t plain = k + 1 == blocks && last > 0 ? last : full;
            require(plain <= full && bytes.size() + plain <= most_, "more values than expected");
            bytes += decompress_block(std::string_view(data).substr(at, size), plain);
            at += size;
        }
        return bytes;
    }

    // Bytes from a place of the source; `used_` is the place behind them.
    std::string take(std::size_t from, std::size_t count) {
        const std::string_view rest = source_.substr(std::min(from, source_.size()));
        if (raw_) {
            used_ = from + std::min(count, rest.size());
            return std::string(rest.substr(0, count));
        }
        Decoded decoded = from_base64(rest, count);
        used_ = std::min(from, source_.size()) + decoded.used;
        return std::move(decoded.bytes);
    }

    std::uint64_t word(const std::string& bytes, std::uint64_t index) const {
        const std::size_t size = storage_.header_size;
        require((index + 1) * size <= bytes.size(), "data that ends early");
        std::uint64_t value = 0;
        for (std::size_t k = 0; k < size; ++k) {
            const std::size_t at = index * size + (storage_.swapped ? k : size - 1 - k);
            value = value << 8U | static_cast<unsigned char>(bytes[at]);
        }
        return value;
    }

    static std::string exactly(std::string bytes, std::uint64_t size) {
        require(bytes.size() == size, "data that ends early");
        return bytes;
    }

    static void require(bool good, const char* found) {
        if (!good)
            throw Failure(found);
    }

    std::string_view source_;
    bool raw_;
    const VtuStorage& storage_;
    std::size_t most_;  // bytes
    std::size_t used_ = 0;
};

std::vector<double> read_values(const pugi::xml_node& array, const VtuStorage& storage, std::size_t most) {
    const std::string_view type = array.attribute("type").value();
    const std::size_t size = size_of_type(type);
    const std::string_view format = array.attribute("format").as_string("ascii");
    if (format == "ascii")
        return numbers_of_text(array.child_value());
    const bool appended = format == "appended";
    if (!appended && format != "binary")
        throw Failure(fmt::format("expected the format ascii, binary or appended, found \"{}\"", format));
    std::string_view source = array.child_value();
    if (appended) {
        const std::size_t offset =
            array.attribute("offset").as_ullong(std::numeric_limits<std::size_t>::max());
        if (offset >= storage.appended.size())
            throw Failure("an offset behind the appended data");
        source = storage.appended.substr(offset);
    } else {
        const std::size_t first = source.find_first_not_of(" \n\r\t");
        source.remove_prefix(std::min(first, source.size()));
    }
    const std::string bytes = ByteReader(source, appended && storage.raw, storage, most * size).read();
    return numbers_of(bytes, type, storage.swapped);
}

std::string name_of_array(const pugi::xml_node& array) {
    return array.attribute("Name").as_string("without name");
}

}  // namespace

std::vector<double> read_array_of_any_size(const pugi::xml_node& array, const VtuStorage& storage,
                                           std::size_t most) {
    try {
        return read_values(array, storage, most);
    } catch (const Failure& failure) {
        throw Failure(fmt::format("array \"{}\": {}", name_of_array(array), failure.what()));
    }
}

std::vector<double> read_array(const pugi::xml_node& array, const VtuStorage& storage, std::size_t values) {
    std::vector<double> read = read_array_of_any_size(array, storage, values);
    if (read.size() != values)
        throw Failure(fmt::format("array \"{}\": expected {} values, found {}", name_of_array(array), values,
                                  read.size()));
    return read;
}

}  // namespace brelan::tool
