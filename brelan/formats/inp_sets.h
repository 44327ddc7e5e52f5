// Names and lists of the .inp dialect.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cli/formatted_text.h"
#include "formats/inp_elements.h"

namespace brelan::tool {

// Names of sets that are in use. They are of capital letters, digits and _, begin with a letter, and stand
// once.
class SetNames {
public:
    // The name as the dialect can have it, with a number behind it where another set has it. What is no
    // letter or digit becomes _.
    std::string take(std::string_view wanted);

private:
    std::set<std::string> taken_;
};

// A real with twelve digits and a point, without which the solver takes it for an integer in places. It reads
// twenty characters of a value and drops what is behind them.
std::string real_text(double value);

// Numbers, sixteen to a line, or names, one to a line.
void add_numbers(FormattedText& text, const std::vector<Number>& numbers);
void add_names(FormattedText& text, const std::vector<std::string>& names);

// An element card of a set.
void add_block(FormattedText& text, const InpBlock& block, std::string_view set);

// The node sets, one for each value of a code, and the supports that follow from them: a code other than 0
// holds a node in its direction, the third of displacement nodes and the fifth of coupled ones the rotation
// of beams. `remark` is told of values other than 0 and 1.
void add_supports(FormattedText& text, const MeshLists& mesh, const InpElements& elements, SetNames& names,
                  const std::function<void(const std::string&)>& remark);

}  // namespace brelan::tool
