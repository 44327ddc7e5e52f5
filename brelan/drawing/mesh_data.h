// A mesh as a page in a browser draws it: values, and arrays of numbers of 32 bits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "cli/json.h"
#include "drawing/mesh_picture.h"

namespace brelan::tool {

// Arrays one behind the other.
class ArrayList {
public:
    template <class Value>
    void add(const std::string& name, const std::vector<Value>& values) {
        static_assert(sizeof(Value) == 4);
        const char* type = std::is_same_v<Value, float> ? "f32" : std::is_signed_v<Value> ? "i32" : "u32";
        list_.push_back(
            {{"name", name}, {"type", type}, {"offset", bytes_.size()}, {"count", values.size()}});
        const std::size_t at = bytes_.size();
        bytes_.resize(at + values.size() * sizeof(Value));
        if (!values.empty())
            std::memcpy(bytes_.data() + at, values.data(), values.size() * sizeof(Value));
    }

    const std::string& bytes() const { return bytes_; }
    const Json& list() const { return list_; }  // name, type, offset in bytes, and count of each

private:
    std::string bytes_;
    Json list_ = Json::Array();
};

// `picture` is what the mesh itself is drawn from, `details` are numbers, symbols and values on it.
enum class MeshParts { all, picture, details };

struct MeshData {
    std::string title;
    Json values;
    ArrayList arrays;
    // Places of the materials of each class in the groups of the values.
    std::map<std::pair<ElementClass, std::int32_t>, std::int32_t> groups;
};

// An entry of the groups: a material of a class, with the number of its elements.
Json group_json(const MeshLists& mesh, ElementClass of, std::int32_t material, std::size_t count);

MeshData mesh_data(const MeshLists& mesh, const PictureOptions& options, MeshParts parts);

}  // namespace brelan::tool
