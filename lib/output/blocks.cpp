#include "output/blocks.h"

#include "mesh/group_tables.h"
#include "text/layout.h"

namespace brelan {

namespace {

constexpr Layout<"('* Group No = ',I3)"> GROUP_NUMBER;
constexpr Layout<"('* ',A80)"> GROUP_TITLE;
constexpr Layout<"('* Material No = ',I3)"> MATERIAL_NUMBER;

constexpr std::string_view BANNER_SIDE = "*                                                *";
constexpr std::string_view BANNER_END = "*         ";

}  // namespace

void write_group_head(const GroupCards& group_cards, Channel& file, std::int32_t g) {
    write_lines(file, {"*", EQUALS_ROW, "*"});
    GROUP_NUMBER.write(file, g);
    GROUP_TITLE.write(file, group_cards.outputs[g].title.view());
    file.write_line("*");
}

void write_class_head(Channel& file, std::int8_t type) {
    write_lines(file, {DASHES_ROW, "*", CLASS_LINES[type - 1], "*"});
}

void write_material_head(Channel& file, MaterialNumber material, std::span<const std::string_view> heading) {
    write_lines(file, {DASHES_ROW, "*"});
    MATERIAL_NUMBER.write(file, material.value);
    file.write_line("*");
    write_lines(file, heading);
}

void copy_lines(Channel& from, Channel& to) {
    from.rewind();
    while (!from.at_end()) {
        const std::string_view line = from.read_whole_line("a line");
        to.write_line(line.substr(0, line.find_last_not_of(' ') + 1));
    }
}

void write_banner(Channel& file, std::string_view title, std::string_view card) {
    write_lines(file, {STARS_ROW, BANNER_SIDE, title, card, BANNER_SIDE, STARS_ROW, BANNER_END});
}

}  // namespace brelan
