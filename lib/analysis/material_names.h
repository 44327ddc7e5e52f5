// Names of materials. They stand on comment lines of decks and mesh files, which programs that know nothing
// of them pass over:
//
//     * material 5: Sand
//     * beam 1: Sheet pile
//     * truss 2: Anchor
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "analysis/element_class.h"

namespace brelan {

class MaterialNames {
public:
    static constexpr std::size_t LONGEST = 80;  // characters of a name

    // Beams and trusses have material numbers of their own; solids and joints share theirs, as `solid`.
    struct Key {
        ElementClass of = ElementClass::solid;
        std::int32_t material = 0;
        friend bool operator==(const Key&, const Key&) = default;
        friend bool operator<(const Key& a, const Key& b) {
            return a.of != b.of ? a.of < b.of : a.material < b.material;
        }
    };

    // Empty where the material has no name. `joint` asks for the material that a solid of the number has.
    const std::string& of(ElementClass of, std::int32_t material) const;

    // Gives a name, in UTF-8 and without blanks at its ends; an empty one takes the name away. Bytes that are
    // no UTF-8 are read as Latin-1; control characters become blanks, and what is beyond LONGEST is cut.
    void set(ElementClass of, std::int32_t material, std::string_view name);

    // Takes the name from a comment line as above, blanks and the case of the word as one likes; the last
    // line of a number holds. False for a line that gives none, which any other comment is.
    bool take_comment(std::string_view line);

    // Takes the names of others; where both have one theirs holds.
    void take(const MaterialNames& others);

    // Names that were cut or had control characters.
    std::size_t changed() const { return changed_; }

    bool empty() const { return names_.empty(); }
    std::size_t size() const { return names_.size(); }

    // As pairs of Key and name: materials, beams, trusses, each in ascending number.
    auto begin() const { return names_.begin(); }
    auto end() const { return names_.end(); }

    // Names alone, not how they came.
    friend bool operator==(const MaterialNames& a, const MaterialNames& b) { return a.names_ == b.names_; }

private:
    std::map<Key, std::string> names_;
    std::size_t changed_ = 0;
};

// The comment line of a name, without a line end.
std::string comment_of(const MaterialNames::Key& key, std::string_view name);

}  // namespace brelan
