// The data arrays of a VTU file as numbers, however they are held.
#pragma once

#include <pugixml.hpp>
#include <string_view>
#include <vector>

namespace brelan::tool {

// How a file holds its arrays.
struct VtuStorage {
    bool compressed = false;
    bool swapped = false;            // big-endian
    std::size_t header_size = 4;     // bytes of a header word: 4 or 8
    bool raw = false;                // encoding of the appended data
    std::string_view appended = {};  // behind its underscore
};

// All values of a <DataArray>. `values` is how many there must be. Throws Failure with what is wrong, without
// the name of the file.
std::vector<double> read_array(const pugi::xml_node& array, const VtuStorage& storage, std::size_t values);

// The same for an array whose count is not known; at most `most`.
std::vector<double> read_array_of_any_size(const pugi::xml_node& array, const VtuStorage& storage,
                                           std::size_t most);

}  // namespace brelan::tool
