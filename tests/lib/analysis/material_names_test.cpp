#include "analysis/material_names.h"

#include <gtest/gtest.h>

#include <limits>

#include "analysis/mesh_file.h"
#include "support/mesh_sample.h"
#include "text/channel_numbers.h"
#include "text/utf_8.h"

namespace brelan::test {
namespace {

MaterialNames names_of_lines(std::initializer_list<std::string_view> lines) {
    MaterialNames names;
    for (const std::string_view line : lines)
        names.take_comment(line);
    return names;
}

std::vector<std::string> lines_of(const MaterialNames& names) {
    std::vector<std::string> lines;
    for (const auto& [key, name] : names)
        lines.push_back(comment_of(key, name));
    return lines;
}

TEST(MaterialNames, CommentLineGivesOneWithAnyBlanksAndCase) {
    for (const std::string_view line : {"* material 5: Sand", "*material 5:Sand", "*  MATERIAL\t5 :  Sand  ",
                                        "* Material 5: Sand\r", "* joint 5: Sand"}) {
        const MaterialNames names = names_of_lines({line});
        EXPECT_EQ(names.of(ElementClass::solid, 5), "Sand") << line;
        EXPECT_EQ(names.of(ElementClass::joint, 5), "Sand") << line;
        EXPECT_EQ(names.of(ElementClass::beam, 5), "") << line;
        EXPECT_EQ(names.of(ElementClass::solid, 6), "") << line;
    }
}

TEST(MaterialNames, OtherCommentsGiveNone) {
    MaterialNames names;
    for (const std::string_view line :
         {"", "*", "* material", "* material 5", "* material 5 Sand", "* material: Sand",
          "* material five: Sand", "* material5: Sand", "* materials 5: Sand", "* 5: Sand",
          "material 5: Sand", " * material 5: Sand", "* material 5.0: Sand", "* material 99999999999: Sand",
          "* Group No = 1: its title", "** material 5: Sand"})
        EXPECT_FALSE(names.take_comment(line)) << line;
    EXPECT_TRUE(names.empty());
}

TEST(MaterialNames, LinesHaveNumbersOfTheirOwnAndAllComeInAscendingOrder) {
    const MaterialNames names =
        names_of_lines({"* truss 2: Anchor", "* beam 1: Sheet pile", "* material 10: Clay",
                        "* material 2: Sand", "* truss 1: Strut"});
    EXPECT_EQ(lines_of(names),
              (std::vector<std::string>{"* material 2: Sand", "* material 10: Clay", "* beam 1: Sheet pile",
                                        "* truss 1: Strut", "* truss 2: Anchor"}));
    EXPECT_EQ(names_of_lines({"* material 2: Sand", "* material 10: Clay", "* beam 1: Sheet pile",
                              "* truss 1: Strut", "* truss 2: Anchor"}),
              names);
}

TEST(MaterialNames, LastLineOfANumberHoldsAndAnEmptyOneTakesTheNameAway) {
    MaterialNames names =
        names_of_lines({"* material 5: Sand", "* material 6: Clay", "* material 5: Silt: soft"});
    EXPECT_EQ(names.of(ElementClass::solid, 5), "Silt: soft");
    EXPECT_TRUE(names.take_comment("* material 6:"));
    EXPECT_EQ(names.size(), 1U);
    names.take(names_of_lines({"* material 5: Peat", "* beam 1: Wall"}));
    EXPECT_EQ(lines_of(names), (std::vector<std::string>{"* material 5: Peat", "* beam 1: Wall"}));
}

TEST(MaterialNames, AreOfUtf8WithoutControlCharactersAndCutWhereTheyAreLong) {
    MaterialNames names;
    names.set(ElementClass::solid, 1, "L\xC3\xB6\xC3\x9F");
    names.set(ElementClass::solid, 2, "L\xF6\xDF");  // Latin-1
    EXPECT_EQ(names.of(ElementClass::solid, 1), "L\xC3\xB6\xC3\x9F");
    EXPECT_EQ(names.of(ElementClass::solid, 2), "L\xC3\xB6\xC3\x9F");
    names.set(ElementClass::solid, 3, "fine\tsand");
    EXPECT_EQ(names.of(ElementClass::solid, 3), "fine sand");
    EXPECT_EQ(names.changed(), 0U);
    names.set(ElementClass::solid, 4, std::string_view("a\x1B[2Jb\0c\xC2\x85 \x80", 12));
    EXPECT_EQ(names.of(ElementClass::solid, 4), "a [2Jb c");
    EXPECT_EQ(names.changed(), 1U);
    names.set(ElementClass::solid, 5, "a\xEF\xBF\xBE-\xEF\xBF\xBF");
    EXPECT_EQ(names.of(ElementClass::solid, 5), "a -");
    EXPECT_EQ(names.changed(), 2U);
    std::string longest;
    for (std::size_t k = 0; k < MaterialNames::LONGEST; ++k)
        longest += "\xC3\xB6";
    names.set(ElementClass::beam, 1, longest);
    EXPECT_EQ(names.of(ElementClass::beam, 1), longest);
    EXPECT_EQ(names.changed(), 2U);
    names.set(ElementClass::beam, 1, longest + "x");
    EXPECT_EQ(names.of(ElementClass::beam, 1), longest);
    EXPECT_EQ(names.changed(), 3U);
}

TEST(MaterialNames, OfAMeshStandBehindItsClosingLinesAndAreReadWhereverTheyStand) {
    MeshLists mesh = Sample().nodes({{0, 0}, {1, 0}, {1, 1}, {0, 1}}).solid({1, 2, 3, 4}, 5).mesh();
    mesh.names.set(ElementClass::solid, 5, "Sand");
    mesh.names.set(ElementClass::truss, -3, "Anchor");
    Channels channels;
    Channel& file = channels.open_in_memory(CHANNEL_RESULT, "mesh.Mes");
    write_mesh(file, mesh, "mesh.Mes");
    const std::string text(file.text());
    const std::string lines = "* material 5: Sand\n* truss -3: Anchor\n";
    ASSERT_TRUE(text.ends_with("     0\n     0\n" + lines)) << text;
    EXPECT_EQ(mesh_of_text(text, "mesh.Mes")->names, mesh.names);
    const std::string bare = text.substr(0, text.size() - lines.size());
    EXPECT_EQ(mesh_of_text(lines + bare, "mesh.Mes")->names, mesh.names);
    EXPECT_TRUE(mesh_of_text(bare, "mesh.Mes")->names.empty());
    // Beyond the columns of a record.
    const std::string far = "* material 5:" + std::string(120, ' ') + "Sand\n";
    EXPECT_EQ(mesh_of_text(far + bare, "mesh.Mes")->names.of(ElementClass::solid, 5), "Sand");
}

TEST(SizeOfCharacter, IsThatOfUtf8AndNoneForOtherBytes) {
    for (const std::string_view one : {"a", "\xC3\xB6", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xEF\xBF\xBD"})
        EXPECT_EQ(size_of_character(std::string(one) + "x"), one.size()) << one;
    for (const std::string_view none :
         {"", "\x80", "\xC3", "\xC3x", "\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xE2\x82",
          "\xF0\x8F\x80\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"})
        EXPECT_EQ(size_of_character(none), 0U) << none;
}

}  // namespace
}  // namespace brelan::test
