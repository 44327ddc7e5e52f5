// Faulty input, one row each. Whatever a user, a front end or a broken disk hands over, the run ends by
// itself: with the error report for a wrong count on a card, with one line that names the file for everything
// else. No input file is ever touched, and a failure leaves the run status as it was.

#include "support/mesh.h"
#include "support/project.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <ostream>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace brelan::test {
namespace {

namespace fs = std::filesystem;

struct Fault {
    std::string name;
    std::function<void(const Project&)> set_up;  // works on a project whose deck would finish
    std::vector<std::string> fragments = {};     // what the message must hold
    int status = 2;
    Kind kind = Kind::displacement;
    bool unprivileged = false;
    bool late = false;  // the failure comes after the run has set its status
};

void PrintTo(const Fault& fault, std::ostream* stream) {
    *stream << fault.name;
}

using Cards = std::vector<std::string>;
using Rows = std::vector<Fault>;

// The message's own form of a place in a file. The name may stand behind a directory.
std::string at(const std::string& file, std::size_t line) {
    return file + ", line " + std::to_string(line) + ": ";
}

// Decks that would finish, or be taken whole by the checker, over the sample mesh. A comment line stands
// before each card, so card k is line 2k.
Cards move_cards() {
    return {"1 0", "mesh.Mes", "out.Mes", "1 1 1 1", "0", "0 0 0 0", "1 1"};
}

Cards edit_cards(const Cards& more) {
    Cards cards{"1 0", "mesh.Mes", "out.Mes", "1 1 1 1"};
    cards.insert(cards.end(), more.begin(), more.end());
    return cards;
}

std::string codes_of(Kind kind) {
    switch (kind) {
        case Kind::coupled:
            return "1 1 1 1 1";
        case Kind::temperature:
        case Kind::head:
            return "1 1";
        case Kind::displacement:
            return "1 1 1";
    }
    return {};
}

Cards code_window_cards(Kind kind = Kind::displacement) {
    return edit_cards({"1", "0", "-1 -1 1.5 2", "0", codes_of(kind)});
}

Cards code_list_cards() {
    return edit_cards({"1", "1", "3", "1 -4 7", "0", "1 1 1"});
}

Cards rebuild_cards() {
    return edit_cards({"6", "2", "1 1 2 3 4", "2 1 2 3 4", "1", "1 1 2", "1", "1 1 2"});
}

Cards replaced(Cards cards, std::size_t card, const std::string& text) {
    cards.at(card - 1) = text;
    return cards;
}

std::function<void(const Project&)> deck(Cards cards) {
    return [cards = std::move(cards)](const Project& project) { project.deck(commented_deck(cards)); };
}

std::string several(int count, const std::string& value) {
    std::string list;
    for (int n = 0; n < count; ++n)
        list += (n == 0 ? "" : n % 20 == 0 ? "\n" : " ") + value;
    return list;
}

// Bytes without order, the same in every run: anything, or nothing that separates values or ends a line.
std::string noise(std::size_t count, bool one_word) {
    std::mt19937 generator(20240311);
    std::string bytes;
    while (bytes.size() < count) {
        const char byte = static_cast<char>(generator() % 256);
        const bool separates = byte == ' ' || byte == ',' || byte == '\n' || byte == '\r' || byte == '\t' ||
                               byte == '*' || byte == '/';
        if (!one_word || !separates)
            bytes += byte;
    }
    return bytes;
}

// Made only where a row runs: the table itself is built for every test of the program.
std::string ten_megabytes(char character) {
    return std::string(10'000'000, character);
}

std::string sample_text(Kind kind = Kind::displacement) {
    return sample_mesh(kind).text();
}

std::function<void(const Project&)> mesh(std::string text) {
    return [text = std::move(text)](const Project& project) { project.write("mesh.Mes", text); };
}

std::function<void(const Project&)> mesh_line(std::size_t number, const std::string& line,
                                              Kind kind = Kind::displacement) {
    return mesh(with_line(sample_text(kind), number, line));
}

// Puts a directory or a device where the program expects a file.
std::function<void(const Project&)> work_directory(const std::string& name) {
    return [name](const Project& project) { fs::create_directories(project.work_file(name)); };
}

std::function<void(const Project&)> full_work_file(const std::string& name) {
    return [name](const Project& project) { fs::create_symlink("/dev/full", project.work_file(name)); };
}

void forbid(const fs::path& path, fs::perms rights) {
    fs::permissions(path, rights);
}

// ---------------------------------------------------------------------------------------------------------

void start_up_rows(Rows& rows) {
    for (const std::string file : {"PROGRAM", "MANUAL", "HUBPLOT"}) {
        const std::string name = file + ".DAT";
        const auto holds = [name](const std::string& text) {
            return [name, text](const Project& project) { project.write_data(name, text); };
        };
        const auto add = [&](const std::string& what, const std::string& text, const std::string& fragment) {
            rows.push_back({file + what, holds(text), {fragment}});
        };
        rows.push_back({file + "Missing",
                        [name](const Project& project) { fs::remove(project.data_file(name)); },
                        {name}});
        rows.push_back({file + "IsADirectory",
                        [name](const Project& project) {
                            fs::remove(project.data_file(name));
                            fs::create_directory(project.data_file(name));
                        },
                        {name}});
        add("Empty", "", name);
        add("HoldsBlankLinesOnly", "\n   \n\n", name);
        add("HoldsText", "one\n", at(name, 1));
        add("HoldsTextBehindABlankLine", "\none\n", at(name, 2));
        add("HoldsAReal", "1.0\n", at(name, 1));
        add("HoldsAsterisks", "*****\n", at(name, 1));
        add("HoldsANumberBeyondItsType", "2147483648\n", at(name, 1));
        add("HoldsZeroBytes", std::string(8, '\0') + "\n", at(name, 1));
        add("HoldsNoise", noise(500, true), at(name, 1));
        rows.push_back(
            {file + "HoldsALineOfTenMegabytes",
             [name](const Project& project) { project.write_data(name, ten_megabytes('1') + "\n"); },
             {at(name, 1)}});
    }

    rows.push_back({"DebugFileHoldsOneNumber",
                    [](const Project& project) { project.write_data("DEBUG/Brelan_P1.dat", "1\n"); },
                    {"Brelan_P1.dat"}});
    rows.push_back({"DebugFileEmpty",
                    [](const Project& project) { project.write_data("DEBUG/Brelan_P1.dat", ""); },
                    {"Brelan_P1.dat"}});
    rows.push_back({"DebugFileHoldsText",
                    [](const Project& project) { project.write_data("DEBUG/Brelan_P1.dat", "yes please\n"); },
                    {at("Brelan_P1.dat", 1)}});
    rows.push_back({"DebugFileHoldsTextForThePass",
                    [](const Project& project) { project.write_data("DEBUG/Brelan_P1.dat", "1\nall\n"); },
                    {at("Brelan_P1.dat", 2)}});
    rows.push_back({"DebugLevelIsAReal",
                    [](const Project& project) { project.write_data("DEBUG/Brelan_P1.dat", "1.5 43\n"); },
                    {at("Brelan_P1.dat", 1)}});
    rows.push_back({"DebugPassIsNotANumber",
                    [](const Project& project) { project.write_data("DEBUG/Brelan_P1.dat", "1 NaN\n"); },
                    {at("Brelan_P1.dat", 1)}});
    rows.push_back({"TraceFileIsADirectory",
                    [](const Project& project) {
                        project.write_data("DEBUG/Brelan_P1.dat", "1 43\n");
                        fs::create_directory(project.work_file("Brelan_P1.deb"));
                    },
                    {"Brelan_P1.deb"}});
    rows.push_back(
        {"DataDirectoryMissing",
         [](const Project& project) { fs::rename(project.drive() / "Vork", project.drive() / "Work"); },
         {"PROGRAM.DAT"}});

    const auto deck_name = [](const std::string& text) {
        return [text](const Project& project) { project.write_work("TFNAME.TMP", text); };
    };
    rows.push_back({"DeckNameFileMissing",
                    [](const Project& project) { fs::remove(project.work_file("TFNAME.TMP")); },
                    {"TFNAME.TMP"}});
    rows.push_back({"DeckNameFileIsADirectory",
                    [](const Project& project) {
                        fs::remove(project.work_file("TFNAME.TMP"));
                        fs::create_directory(project.work_file("TFNAME.TMP"));
                    },
                    {"TFNAME.TMP"}});
    rows.push_back({"DeckNameFileEmpty", deck_name(""), {"TFNAME.TMP"}});
    rows.push_back({"DeckNameBlank", deck_name("      \n..\\deck.dat\n"), {"TFNAME.TMP"}});
    rows.push_back({"DeckNameEmptyLine", deck_name("\n"), {"TFNAME.TMP"}});
    rows.push_back({"DeckMissing", deck_name("..\\nothere.dat\n"), {"nothere.dat"}});
    rows.push_back({"DeckDirectoryMissing", deck_name("..\\nowhere\\deck.dat\n"), {"deck.dat"}});
    rows.push_back({"DeckOnAnUnknownDrive", deck_name("Q:\\deck.dat\n"), {"deck.dat"}});
    rows.push_back({"DeckIsADirectory",
                    [](const Project& project) {
                        fs::create_directory(project.file("decks"));
                        project.write_work("TFNAME.TMP", "..\\decks\n");
                    },
                    {"decks"}});
    rows.push_back({"DeckIsTheProjectDirectory", deck_name("..\n"), {}});
    // A name is 126 columns wide; the zero byte in it must not end it where the deck would be found.
    rows.push_back({"DeckNameHoldsAZeroByte",
                    deck_name("..\\deck.dat" + std::string(1, '\0') + "x\n"),
                    {at("TFNAME.TMP", 1)}});
    rows.push_back({"DeckNameIsNoise", deck_name(noise(400, true)), {}});
    // A name may hold what a terminal takes for a command; the message must not pass it on.
    rows.push_back({"DeckNameHoldsControlCharacters", deck_name("..\\de\x1B[2Jck\b\b\r.dat\n"), {".dat"}});
    rows.push_back({"DeckNameOfTenMegabytes",
                    [](const Project& project) { project.write_work("TFNAME.TMP", ten_megabytes('n')); },
                    {std::string(126, 'n')}});
    rows.push_back({"TwoDecksThatDifferInCaseOnly",
                    [](const Project& project) {
                        project.write("DECK.dat", project.read("deck.dat"));
                        fs::rename(project.file("deck.dat"), project.file("Deck.dat"));
                    },
                    {"deck.dat"}});
}

// Every deck cut behind each of its cards.
void short_deck_rows(Rows& rows) {
    struct Deck {
        std::string name;
        Cards cards;
        Kind kind = Kind::displacement;
    };
    const std::string eight = "1 2 3 4 5 6 7 8";
    const Cards base{"2", "2 1", "0 0", "1 1 1", "1 1 1", "1 1 1", "1"};
    Cards base_with_edit = base;
    const Cards move = move_cards();
    base_with_edit.insert(base_with_edit.end(), move.begin() + 1, move.end());
    const std::vector<Deck> decks = {
        {"Move", move},
        {"CodesInAWindow", code_window_cards()},
        {"CodesInAWindowCoupled", code_window_cards(Kind::coupled), Kind::coupled},
        {"CodesInAWindowHead", code_window_cards(Kind::head), Kind::head},
        {"CodesInAList", code_list_cards()},
        {"CodesAlongAPolyline", edit_cards({"1", "2", "2", "1 7", "0", "1 1 1"})},
        {"CodesOfMaterials", edit_cards({"1", "3", "1", "2", "0", "1 1 1"})},
        {"DeleteInAWindow", edit_cards({"2", "0", "-1 -1 1 2", "0"})},
        {"DeleteAList", edit_cards({"2", "1", "2", "1 3", "0"})},
        {"MaterialsInAWindow", edit_cards({"3", "0", "-1 -1 1 2", "0", "5 6 7"})},
        {"MaterialsOfAList", edit_cards({"3", "1", "2", "1 3", "0", "5 6 7"})},
        {"TriangleMap", edit_cards({"5", "1", "7 9.81", "0 0 10 0 5 8"})},
        {"Rebuild", rebuild_cards()},
        {"RebuildTemperature", rebuild_cards(), Kind::temperature},
        {"Combination", {"0", "mesh.Mes", "other.Mes", "out.Mes", "1", "2", "1 2", "3 4"}},
        {"CombinationKeepingCoordinates", {"-1", "mesh.Mes", "other.Mes", "out.Mes", "0"}},
        {"BaseMeshWithAnEdit", base_with_edit},
        {"BaseMeshWithAnEditCoupled", base_with_edit, Kind::coupled},
        {"Dam", {"3", "2 1 1 0", eight, eight, "1 2", "1 2", eight}},
    };
    for (const auto& [name, cards, kind] : decks) {
        for (std::size_t count = 0; count < cards.size(); ++count) {
            const Cards rest(cards.begin(), cards.begin() + static_cast<std::ptrdiff_t>(count));
            rows.push_back({"DeckEnds_" + name + "_behind_card_" + std::to_string(count),
                            deck(rest),
                            {at("deck.dat", 2 * count + 1)},
                            2,
                            kind});
        }
    }
    rows.push_back({"DeckOfCommentsOnly",
                    [](const Project& project) { project.deck("* nothing\n* else\n"); },
                    {"deck.dat"}});
    rows.push_back({"DeckEndsWithinAList", deck(edit_cards({"1", "1", "5", "1 2 3"})), {at("deck.dat", 17)}});
    rows.push_back({"DeckEndsWithinTheSecondInterfaceList",
                    deck({"0", "mesh.Mes", "other.Mes", "out.Mes", "1", "3", "1 2 3", "4 5"}),
                    {"deck.dat"}});
    rows.push_back({"DeckEndsWithinTheDamsList", deck({"3", "3 0 0 0", eight, "1 2", "1 2"}), {"deck.dat"}});
}

void card_value_rows(Rows& rows) {
    const auto wrong = [&](const std::string& name, const Cards& cards, std::size_t card,
                           const std::string& text, Kind kind = Kind::displacement) {
        rows.push_back(
            {"Card_" + name, deck(replaced(cards, card, text)), {at("deck.dat", 2 * card)}, 2, kind});
    };
    const Cards move = move_cards();
    wrong("ModeIsText", move, 1, "edit");
    wrong("ModeIsTextBehindABlank", move, 1, " * edit");
    wrong("SecondModeFieldIsText", move, 1, "1 x");
    wrong("StartNumberIsText", move, 4, "1 one 1 1");
    wrong("StartNumberIsAsterisks", move, 4, "1 1 ***** 1");
    wrong("EditIsText", move, 5, "zero");
    wrong("ExcludedMaterialIsText", move, 5, "0 1 2 c");
    wrong("MoveIsText", move, 6, "0 0 right 0");
    wrong("MoveIsNotANumber", move, 6, "0 NaN 0 0");
    wrong("MoveIsInfinite", move, 6, "0 0 Inf 0");
    wrong("MoveIsNegativeInfinite", move, 6, "0 0 -Infinity 0");
    wrong("MoveIsBeyondItsType", move, 6, "0 0 0 1e39");
    wrong("MoveIsFarBeyondItsType", move, 6, "0 0 0 1e999999999");
    wrong("MoveIsHexadecimal", move, 6, "0x10 0 0 0");
    wrong("MoveHasTwoPoints", move, 6, "1.2.3 0 0 0");
    wrong("MoveHasTwoExponents", move, 6, "1e2e3 0 0 0");
    wrong("MoveHasAnExponentWithoutDigits", move, 6, "1e 0 0 0");
    wrong("MoveIsASignOnly", move, 6, "- 0 0 0");
    wrong("MoveIsAPointOnly", move, 6, ". 0 0 0");
    wrong("MoveIsSeparatedBySemicolons", move, 6, "1;2 0 0 0");
    wrong("MoveHoldsAZeroByte", move, 6, "0 0 0 1" + std::string(1, '\0'));
    wrong("MoveHoldsForeignDigits", move, 6, "0 0 0 \xD9\xA1");
    wrong("ScaleIsText", move, 7, "1 times");
    const Cards window = code_window_cards();
    wrong("LocationIsText", window, 6, "window");
    wrong("WindowIsText", window, 7, "-1 -1 1.5 top");
    wrong("SideIsText", window, 8, "in");
    wrong("CodesAreText", window, 9, "1 1 free");
    const Cards list = code_list_cards();
    wrong("ListCountIsText", list, 7, "three");
    wrong("ListHoldsText", list, 8, "1 to 4");
    wrong("ListIsCutOffByTheNextText", replaced(list, 8, "1 -4"), 9, "in");
    const Cards rebuild = rebuild_cards();
    wrong("RebuildCountIsText", rebuild, 6, "two");
    wrong("RebuildRowHoldsText", rebuild, 8, "2 1 2 x 4");
    wrong("BeamRowHoldsText", rebuild, 10, "1 1 x");
    wrong("TrussRowHoldsText", rebuild, 12, "x 1 1");
    wrong("InterfaceIsText", {"0", "a", "b", "c", "0"}, 5, "no");
    wrong("InterfaceListHoldsText", {"0", "a", "b", "c", "1", "2", "1 2", "3 4"}, 8, "3 four");
    wrong("BlockCountIsText", {"2", "1 1"}, 2, "one 1");
    wrong("OriginIsText", {"2", "1 1", "0 0"}, 3, "0 y");
    wrong("ColumnIsText", {"2", "1 1", "0 0", "1 1 1"}, 4, "1 1 wide");
    wrong("RowIsText", {"2", "1 1", "0 0", "1 1 1", "1 1 1"}, 5, "1 1 high");
    wrong("BaseEditIsText", {"2", "1 1", "0 0", "1 1 1", "1 1 1", "0"}, 6, "no");
    wrong("DamIsText", {"3", "1 1 1 1"}, 2, "1 1 1 one");
    wrong("DamProfileIsText", {"3", "0 0 0 0", "1 2 3 4 5 6 7 8"}, 3, "1 2 3 4 5 6 7 eight");
    wrong("DamListHoldsText", {"3", "2 0 0 0", "1 2 3 4 5 6 7 8", "1 2", "1 2"}, 5, "1 two");

    wrong("SourceNameBlank", move, 2, "   ");
    wrong("SourceNameEmpty", move, 2, "");
    wrong("ResultNameBlank", move, 3, "");
    wrong("ResultNameBlankForTheTriangleMap", edit_cards({"5", "1", "7 9.81", "0 0 10 0 5 8"}), 3, " ");
    wrong("FirstCombinedNameBlank", {"0", "a", "b", "c", "0"}, 2, "");
    wrong("SecondCombinedNameBlank", {"0", "a", "b", "c", "0"}, 3, "");
    wrong("CombinationResultNameBlank", {"0", "a", "b", "c", "0"}, 4, "");

    const auto limit = [&](const std::string& name, const Cards& cards, const std::string& number) {
        rows.push_back({"Limit_" + name, deck(cards), {"deck.dat", number}});
    };
    limit("ListOf501", edit_cards({"1", "1", "501", several(501, "3"), "0", "1 1 1"}), "500");
    limit("ListOf99999", edit_cards({"1", "1", "99999", several(501, "3"), "0", "1 1 1"}), "500");
    limit("DeleteListOf501", edit_cards({"2", "1", "501", several(501, "3"), "0"}), "500");
    limit("MaterialListOf501", edit_cards({"3", "1", "501", several(501, "3"), "0", "1 1 1"}), "500");
    limit("InterfaceOf501", {"0", "a", "b", "c", "1", "501", several(501, "3"), several(501, "4")}, "500");
    limit("DamListOf501", {"3", "501 0 0 0", "1 2 3 4 5 6 7 8", "1 2", several(501, "3")}, "500");
    Cards many = edit_cards({"6", "101"});
    many.insert(many.end(), 101, "1 1 2 3 4");
    limit("Rebuild101ContinuumRows", many, "100");
    many = edit_cards({"6", "0", "101"});
    many.insert(many.end(), 101, "1 1 2");
    limit("Rebuild101BeamRows", many, "100");
    many = edit_cards({"6", "0", "0", "101"});
    many.insert(many.end(), 101, "1 1 2");
    limit("Rebuild101TrussRows", many, "100");
    limit("NoBlockColumn", {"2", "0 1", "0 0", "1 1 1", "0"}, "100");
    limit("NegativeBlockRows", {"2", "1 -1", "0 0", "1 1 1", "0"}, "100");
    many = {"2", "101 1", "0 0"};
    many.insert(many.end(), 102, "1 1 1");
    limit("101BlockColumns", many, "100");

    // Numbers that the run itself refuses. It reads them from its own copies, but the user wrote them
    // elsewhere.
    const auto refused = [&](const std::string& name, const Cards& cards,
                             std::vector<std::string> fragments) {
        rows.push_back({"Refused_" + name, deck(cards), std::move(fragments)});
    };
    const std::string list_line = at("deck.dat", 16);
    refused("ListStartsNegative", edit_cards({"1", "1", "2", "-3 5", "0", "1 1 1"}), {list_line});
    refused("ListNumberBeyondTheTable", edit_cards({"1", "1", "2", "1 99991", "0", "1 1 1"}),
            {list_line, "99990"});
    refused("ListNumberTooWide", edit_cards({"1", "1", "2", "1 100000", "0", "1 1 1"}), {list_line});
    refused("ListRangeTooWide", edit_cards({"1", "1", "2", "1 -10000", "0", "1 1 1"}), {list_line});
    refused("PolylineNodeBeyondTheTable", edit_cards({"1", "2", "2", "1 99991", "0", "1 1 1"}),
            {list_line, "99990"});
    refused("PolylineNodeZero", edit_cards({"1", "2", "2", "1 0", "0", "1 1 1"}), {list_line, "99990"});
    refused("PolylineNodeNegative", edit_cards({"1", "2", "2", "1 -7", "0", "1 1 1"}), {list_line, "99990"});
    refused("DeleteListStartsNegative", edit_cards({"2", "1", "2", "-3 5", "0"}), {list_line});
    refused("DeleteListNumberBeyondTheTable", edit_cards({"2", "1", "1", "99991", "0"}),
            {list_line, "99990"});
    refused("StartNumberTooWide", replaced(move, 4, "100000 1"), {at("deck.dat", 8)});
    refused("NodesShiftedBeyondTheTable", replaced(move, 4, "1 99985"), {at("mesh.Mes", 12), "99990"});
    refused("NodesShiftedToZero", replaced(move, 4, "1 0"), {at("mesh.Mes", 6), "99990"});
    refused("NodesShiftedBelowZero", replaced(move, 4, "1 -9999"), {at("mesh.Mes", 6), "99990"});
    refused("ContinuumShiftedBeyondTheTable", replaced(move, 4, "99989 1"), {at("mesh.Mes", 17), "99990"});
    refused("ContinuumShiftedToZero", replaced(move, 4, "0 1"), {at("mesh.Mes", 15), "99990"});
    refused("BeamsShiftedBeyondTheTable", replaced(move, 4, "1 1 99990 1"), {at("mesh.Mes", 21), "99990"});
    refused("TrussesShiftedBeyondTheTable", replaced(move, 4, "1 1 1 99990"), {at("mesh.Mes", 25), "99990"});
    refused("BeamsRaisedBeyondTheTable", replaced(move, 4, "99987 1 1 1"), {at("mesh.Mes", 21), "99990"});
    refused("CoordinateBecomesInfinite", edit_cards({"0", "0 0 0 0", "3e38 1"}), {at("mesh.Mes", 8)});
    refused("CoordinateBecomesNegativeInfinite", edit_cards({"0", "3e38 0 -3e38 0", "1 1"}),
            {at("mesh.Mes", 6)});
    rows.push_back({"Refused_CoordinateBecomesNoNumber",
                    [](const Project& project) {
                        Mesh huge = sample_mesh(Kind::displacement);
                        huge.nodes[2].x = -3e38;
                        project.write("mesh.Mes", huge.text());
                        project.deck(commented_deck(edit_cards({"0", "3e38 0 0 0", "0 1"})));
                    },
                    {at("mesh.Mes", 8)}});
    for (const std::string mode : {"4", "-2", "100"}) {
        const std::string name = mode == "-2" ? "ModeMinus2" : "Mode" + mode;
        refused(name, {mode, "mesh.Mes", "other.Mes", "out.Mes", "0"}, {"deck.dat"});
    }
    // A zero byte must not end a name where another file stands.
    const std::string zero_byte(1, '\0');
    refused("SourceNameHoldsAZeroByte", replaced(move, 2, "mesh.Mes" + zero_byte + "x"), {at("deck.dat", 4)});
    refused("ResultNameHoldsAZeroByte", replaced(move, 3, "out.Mes" + zero_byte + "x"), {at("deck.dat", 6)});
}

void deck_content_rows(Rows& rows) {
    const auto deck_text = [](const std::string& text) {
        return [text](const Project& project) { project.deck(text); };
    };
    rows.push_back({"DeckEmpty", deck_text(""), {"deck.dat"}});
    rows.push_back({"DeckOfZeroBytes", deck_text(std::string(100, '\0') + "\n"), {at("deck.dat", 1)}});
    rows.push_back({"DeckOfNoise", deck_text(noise(100, true)), {at("deck.dat", 1)}});
    rows.push_back({"DeckIsAMesh", deck_text(sample_text()), {at("deck.dat", 1)}});
    rows.push_back({"DeckSourceOfTenMegabytes",
                    [](const Project& project) {
                        project.deck(commented_deck(replaced(move_cards(), 2, ten_megabytes('n'))));
                    },
                    {"deck.dat, line 4: expected the file name of Card 3.1-1 (FILEA) in columns 1 to 126"}});
    // 126 columns without a blank count no value: that is the error report and no failure.
    rows.push_back({"DeckCardOfTenMegabytes",
                    [](const Project& project) {
                        project.deck(commented_deck(replaced(move_cards(), 1, ten_megabytes('1'))));
                    },
                    {},
                    1});
    rows.push_back({"DeckCardEmpty", deck(replaced(move_cards(), 1, "")), {}, 1});
    rows.push_back({"DeckCardOfCommas", deck(replaced(move_cards(), 6, ",,,,")), {}, 1});
    rows.push_back({"DeckCardTooShort", deck(replaced(move_cards(), 6, "0 0 0")), {}, 1});
    rows.push_back({"DeckCardTooLong", deck(replaced(move_cards(), 7, "1 1 1")), {}, 1});
    rows.push_back({"DeckWithoutItsComments", deck_text("Card 1.1\nIMOD\n1\n"), {at("deck.dat", 1)}});
}

void mesh_rows(Rows& rows) {
    // What each number of leading lines of the sample mesh ends in.
    const std::vector<std::pair<std::size_t, std::string>> cuts = {
        {0, "nothing"},          {1, "its_name"},        {2, "the_header"},       {3, "the_counts"},
        {5, "the_node_heads"},   {8, "some_nodes"},      {12, "the_nodes"},       {13, "a_continuum_head"},
        {14, "continuum_heads"}, {15, "some_continuum"}, {17, "the_continuum"},   {19, "the_beam_heads"},
        {20, "some_beams"},      {21, "the_beams"},      {23, "the_truss_heads"}, {24, "some_trusses"}};
    for (const Kind kind : ALL_KINDS) {
        for (const auto& [count, what] : cuts) {
            rows.push_back({"MeshEnds_" + name_of(kind) + "_behind_" + what,
                            mesh(first_lines(sample_text(kind), count)),
                            {at("mesh.Mes", count + 1)},
                            2,
                            kind});
        }
        const std::string text = sample_text(kind);
        for (const std::size_t line : {std::size_t{8}, std::size_t{16}, std::size_t{21}, std::size_t{25}}) {
            rows.push_back({"MeshEnds_" + name_of(kind) + "_within_line_" + std::to_string(line),
                            mesh(first_lines(text, line - 1) + lines_of(text)[line - 1].substr(0, 20)),
                            {"mesh.Mes"},
                            2,
                            kind});
        }

        // A count that is too high takes the next heading for a record, one that is too low takes a record
        // for a heading and the second heading for a record: the line is known. Behind the trusses only a
        // count that is too high shows.
        const auto counts = [&](const std::string& what, const std::string& line,
                                const std::string& fragment) {
            rows.push_back(
                {"MeshCount_" + name_of(kind) + "_" + what, mesh_line(3, line, kind), {fragment}, 2, kind});
        };
        counts("nodes_too_high", "     8       3       2       2", at("mesh.Mes", 13));
        counts("nodes_too_low", "     6       3       2       2", at("mesh.Mes", 14));
        counts("nodes_negative", "    -7       3       2       2", "mesh.Mes");
        counts("nodes_beyond_the_table", " 99991       3       2       2", "mesh.Mes");
        counts("continuum_too_high", "     7       4       2       2", at("mesh.Mes", 18));
        counts("continuum_too_low", "     7       2       2       2", at("mesh.Mes", 19));
        counts("continuum_zero", "     7       0       2       2", "mesh.Mes");
        counts("continuum_negative", "     7      -3       2       2", "mesh.Mes");
        counts("beams_too_high", "     7       3       3       2", at("mesh.Mes", 22));
        counts("beams_too_low", "     7       3       1       2", at("mesh.Mes", 23));
        counts("beams_negative", "     7       3      -2       2", "mesh.Mes");
        counts("trusses_too_high", "     7       3       2       3", "mesh.Mes");
        counts("trusses_far_too_high", "     7       3       2   99999", "mesh.Mes");
        counts("trusses_negative", "     7       3       2      -2", "mesh.Mes");
        counts("trusses_missing", "     7       3       2", at("mesh.Mes", 4));
        counts("all_missing", "", at("mesh.Mes", 4));
        counts("asterisks", " *****       3       2       2", at("mesh.Mes", 3));
        counts("real", "   7.0       3       2       2", at("mesh.Mes", 3));
        counts("beyond_its_type", "     7       3       2 99999999999", at("mesh.Mes", 3));

        // Values that no table has a place for.
        const auto changed = [&](const std::string& what, const std::function<void(Mesh&)>& change,
                                 std::size_t line, bool names_limit) {
            Mesh bad = sample_mesh(kind);
            change(bad);
            std::vector<std::string> fragments{at("mesh.Mes", line)};
            if (names_limit)
                fragments.emplace_back("99990");
            rows.push_back(
                {"MeshNumber_" + name_of(kind) + "_" + what, mesh(bad.text()), fragments, 2, kind});
        };
        changed(
            "node_zero", [](Mesh& m) { m.nodes[2].number = 0; }, 8, true);
        changed(
            "node_negative", [](Mesh& m) { m.nodes[2].number = -3; }, 8, true);
        changed(
            "node_beyond_the_table", [](Mesh& m) { m.nodes[6].number = 99991; }, 12, true);
        changed(
            "continuum_zero", [](Mesh& m) { m.continuum[1].number = 0; }, 16, true);
        changed(
            "continuum_beyond_the_table", [](Mesh& m) { m.continuum[1].number = 99991; }, 16, true);
        changed(
            "beam_zero", [](Mesh& m) { m.beams[0].number = 0; }, 20, true);
        changed(
            "beam_beyond_the_table", [](Mesh& m) { m.beams[0].number = 99991; }, 20, true);
        changed(
            "truss_beyond_the_table", [](Mesh& m) { m.trusses[1].number = 99991; }, 25, true);
        changed(
            "corner_beyond_the_table", [](Mesh& m) { m.continuum[0].corners[1] = 99991; }, 15, true);
        changed(
            "fourth_corner_beyond_the_table", [](Mesh& m) { m.continuum[0].corners[3] = 100000; }, 15, true);
        changed(
            "beam_end_beyond_the_table", [](Mesh& m) { m.beams[1].j = 99991; }, 21, true);
        changed(
            "truss_end_beyond_the_table", [](Mesh& m) { m.trusses[0].i = 99991; }, 24, true);
        if (kind == Kind::coupled || kind == Kind::displacement) {
            changed(
                "midside_beyond_the_table", [](Mesh& m) { m.continuum[2].midsides[0] = 99991; }, 17, true);
        }
        changed(
            "corner_too_wide", [](Mesh& m) { m.continuum[0].corners[0] = 1234567; }, 15, false);
        changed(
            "node_too_wide", [](Mesh& m) { m.nodes[0].number = 1234567; }, 6, false);

        // Values that are no numbers, one for each section.
        const std::string node = lines_of(text)[7];
        const std::size_t x = node.find('.') - 1;
        const auto value = [&](const std::string& what, std::size_t line, std::size_t column,
                               const std::string& field) {
            std::string changed_line = lines_of(text)[line - 1];
            changed_line.replace(column, field.size(), field);
            rows.push_back({"MeshValue_" + name_of(kind) + "_" + what,
                            mesh_line(line, changed_line, kind),
                            {at("mesh.Mes", line)},
                            2,
                            kind});
        };
        value("coordinate_asterisks", 8, x, "************");
        value("coordinate_no_number", 8, x, "NaN         ");
        value("coordinate_infinite", 8, x, "Infinity    ");
        value("coordinate_beyond_its_type", 8, x, "0.100000E+40");
        value("coordinate_text", 8, x, "two metres  ");
        value("coordinate_zero_bytes", 8, x, std::string(12, '\0'));
        value("node_number_real", 8, 3, " 3.0");
        value("node_number_text", 8, 3, "node");
        value("node_code_real", 8, 7, "  1.0");
        value("continuum_corner_text", 16, 8, "corner");
        value("continuum_number_asterisks", 16, 1, "******");
        value("beam_material_text", 20, 22, "  wood");
        value("truss_number_real", 24, 1, "   6.0");
    }

    rows.push_back({"MeshLineOfTenMegabytes",
                    [](const Project& project) {
                        project.write("mesh.Mes", with_line(sample_text(), 8, ten_megabytes('7')));
                    },
                    {at("mesh.Mes", 8)}});
    rows.push_back({"MeshOfOneLineOfTenMegabytes",
                    [](const Project& project) { project.write("mesh.Mes", ten_megabytes(' ')); },
                    {"mesh.Mes"}});
    rows.push_back({"MeshOfZeroBytes", mesh(std::string(100'000, '\0')), {"mesh.Mes"}});
    rows.push_back({"MeshOfNoise", mesh(noise(100'000, false)), {"mesh.Mes"}});
    rows.push_back(
        {"MeshOfComments", mesh(text_of(std::vector<std::string>(100, "* nothing here"))), {"mesh.Mes"}});
    rows.push_back({"MeshOfBlankLines", mesh(text_of(std::vector<std::string>(100, ""))), {"mesh.Mes"}});
    rows.push_back({"MeshIsADeck", mesh(commented_deck(move_cards())), {"mesh.Mes"}});
    rows.push_back({"MeshOfAnotherKind", mesh(sample_text()), {at("mesh.Mes", 15)}, 2, Kind::coupled});
    // The line is that of the user's file, its comments counted.
    std::string commented = with_inserted_line(with_line(sample_text(), 8, "     3    x"), 1, "* first");
    commented = with_inserted_line(commented, 4, "* before the counts");
    commented = with_inserted_line(commented, 7, "* among the heads");
    rows.push_back({"MeshWithCommentsBeforeTheFault", mesh(commented), {at("mesh.Mes", 11)}});
    // A record may run over several lines; the fault is where it stands.
    std::string broken = with_line(sample_text(), 8, "     3    1    1    1    1    1");
    broken = with_inserted_line(broken, 9, "   0.2E+01  half");
    rows.push_back({"MeshRecordOverTwoLines", mesh(broken), {at("mesh.Mes", 9)}});
}

void file_rows(Rows& rows) {
    rows.push_back({"SourceMissing",
                    [](const Project& project) { fs::remove(project.file("mesh.Mes")); },
                    {"mesh.Mes"}});
    rows.push_back({"SourceEmpty", mesh(""), {"mesh.Mes"}});
    rows.push_back({"SourceIsADirectory",
                    [](const Project& project) {
                        fs::remove(project.file("mesh.Mes"));
                        fs::create_directory(project.file("mesh.Mes"));
                    },
                    {"mesh.Mes"}});
    rows.push_back({"SourceIsALinkToNothing",
                    [](const Project& project) {
                        fs::remove(project.file("mesh.Mes"));
                        fs::create_symlink("nothing", project.file("mesh.Mes"));
                    },
                    {"mesh.Mes"}});
    rows.push_back({"SourceIsALinkToItself",
                    [](const Project& project) {
                        fs::remove(project.file("mesh.Mes"));
                        fs::create_symlink("mesh.Mes", project.file("mesh.Mes"));
                    },
                    {"mesh.Mes"}});
    rows.push_back({"SourceUnreadable",
                    [](const Project& project) { forbid(project.file("mesh.Mes"), fs::perms::none); },
                    {"mesh.Mes"},
                    2,
                    Kind::displacement,
                    true});
    rows.push_back({"DeckUnreadable",
                    [](const Project& project) { forbid(project.file("deck.dat"), fs::perms::none); },
                    {"deck.dat"},
                    2,
                    Kind::displacement,
                    true});
    rows.push_back({"EditionUnreadable",
                    [](const Project& project) { forbid(project.data_file("PROGRAM.DAT"), fs::perms::none); },
                    {"PROGRAM.DAT"},
                    2,
                    Kind::displacement,
                    true});
    rows.push_back({"TwoSourcesThatDifferInCaseOnly",
                    [](const Project& project) {
                        project.write("MESH.Mes", sample_text());
                        fs::rename(project.file("mesh.Mes"), project.file("Mesh.mes"));
                    },
                    {"mesh.Mes"}});
    rows.push_back({"TwoResultsThatDifferInCaseOnly",
                    [](const Project& project) {
                        project.write("OUT.Mes", "earlier\n");
                        project.write("Out.mes", "earlier\n");
                    },
                    {"out.Mes"}});

    constexpr fs::perms READ_ONLY = fs::perms::owner_read | fs::perms::owner_exec;
    rows.push_back({"WorkingDirectoryReadOnly",
                    [=](const Project& project) { forbid(project.work_file(""), READ_ONLY); },
                    {".TMP"},
                    2,
                    Kind::displacement,
                    true});
    rows.push_back({"ProjectDirectoryReadOnly",
                    [=](const Project& project) { forbid(project.file(""), READ_ONLY); },
                    {"out.Mes"},
                    2,
                    Kind::displacement,
                    true});
    rows.push_back({"DataDirectoryReadOnly",
                    [=](const Project& project) { forbid(project.data_file(""), READ_ONLY); },
                    {"FnPlot2D.dat"},
                    2,
                    Kind::displacement,
                    true});
    rows.push_back({"StatusFileCannotBeCreated",
                    [=](const Project& project) {
                        project.write_data("FnPlot2D.dat", "earlier\n");
                        forbid(project.data_file(""), READ_ONLY);
                    },
                    {"FnPlot2D.dat: its directory cannot hold the file that is to take its place"},
                    2,
                    Kind::displacement,
                    true});
    rows.push_back({"ResultReadOnly",
                    [](const Project& project) {
                        project.write("out.Mes", "an earlier result\n");
                        forbid(project.file("out.Mes"), fs::perms::owner_read);
                    },
                    {"out.Mes"},
                    2,
                    Kind::displacement,
                    true});
    rows.push_back(
        {"ResultDirectoryMissing", deck(replaced(move_cards(), 3, "..\\nowhere\\out.Mes")), {"out.Mes"}});
    rows.push_back({"ResultIsADirectory",
                    [](const Project& project) { fs::create_directory(project.file("out.Mes")); },
                    {"out.Mes"}});
    rows.push_back(
        {"ResultBelowAFile", deck(replaced(move_cards(), 3, "..\\mesh.Mes\\out.Mes")), {"out.Mes"}});

    for (const std::string name :
         {"TT55.TMP", "BRELAN.TMP", "T7.TMP", "FILEA.TMP", "TEMPO.TMP", "MeshFile.Mes"}) {
        std::string plain = name;
        std::replace(plain.begin(), plain.end(), '.', '_');
        rows.push_back({"WorkFileIsADirectory_" + plain, work_directory(name), {name}});
    }
    rows.push_back({"MessageIsADirectory",
                    [](const Project& project) {
                        project.deck(commented_deck(replaced(move_cards(), 6, "0 0 0")));
                        fs::create_directory(project.work_file("MESSAGE.INP"));
                    },
                    {"MESSAGE.INP"}});
    rows.push_back({"StatusFileIsADirectory",
                    [](const Project& project) { fs::create_directory(project.data_file("BRELAN2D.DAT")); },
                    {"BRELAN2D.DAT"},
                    2,
                    Kind::displacement,
                    false,
                    true});
    rows.push_back({"StatusFileIsADirectoryForAUserError",
                    [](const Project& project) {
                        project.deck(commented_deck(replaced(move_cards(), 6, "0 0 0")));
                        fs::create_directory(project.data_file("BRELAN2D.DAT"));
                    },
                    {"BRELAN2D.DAT"},
                    2,
                    Kind::displacement,
                    false,
                    true});
    rows.push_back({"PlotNameIsADirectory",
                    [](const Project& project) { fs::create_directory(project.data_file("FnPlot2D.dat")); },
                    {"FnPlot2D.dat"}});

    // A full disk. The device takes a file's place and refuses every write.
    for (const std::string name : {"TT55.TMP", "BRELAN.TMP", "FILEA.TMP", "MeshFile.Mes"}) {
        std::string plain = name;
        std::replace(plain.begin(), plain.end(), '.', '_');
        rows.push_back({"DiskFull_" + plain, full_work_file(name), {name}});
    }
    rows.push_back({"DiskFullForTheResult",
                    [](const Project& project) { fs::create_symlink("/dev/full", project.file("out.Mes")); },
                    {"out.Mes"}});
    rows.push_back({"DiskFullForTheListing",
                    [](const Project& project) {
                        project.deck(commented_deck(replaced(move_cards(), 6, "0 0 0")));
                        fs::create_symlink("/dev/full", project.work_file("T7.TMP"));
                    },
                    {"T7.TMP"},
                    2,
                    Kind::displacement,
                    false,
                    true});
    rows.push_back({"DiskFullForTheMessage",
                    [](const Project& project) {
                        project.deck(commented_deck(replaced(move_cards(), 6, "0 0 0")));
                        fs::create_symlink("/dev/full", project.work_file("MESSAGE.INP"));
                    },
                    {"MESSAGE.INP"}});
    rows.push_back(
        {"DiskFullForThePlotName",
         [](const Project& project) { fs::create_symlink("/dev/full", project.data_file("FnPlot2D.dat")); },
         {"FnPlot2D.dat"}});
    rows.push_back(
        {"DiskFullForTheStatus",
         [](const Project& project) { fs::create_symlink("/dev/full", project.data_file("BRELAN2D.DAT")); },
         {"BRELAN2D.DAT"},
         2,
         Kind::displacement,
         false,
         true});
    rows.push_back({"DiskFullForTheTrace",
                    [](const Project& project) {
                        project.write_data("DEBUG/Brelan_P1.dat", "1 43\n");
                        fs::create_symlink("/dev/full", project.work_file("Brelan_P1.deb"));
                    },
                    {"Brelan_P1.deb"},
                    2,
                    Kind::displacement,
                    false,
                    true});
    rows.push_back({"DiskFullForTheTraceOfAUserError",
                    [](const Project& project) {
                        project.deck(commented_deck(replaced(move_cards(), 6, "0 0 0")));
                        project.write_data("DEBUG/Brelan_P1.dat", "1 43\n");
                        fs::create_symlink("/dev/full", project.work_file("Brelan_P1.deb"));
                    },
                    {"Brelan_P1.deb"},
                    2,
                    Kind::displacement,
                    false,
                    true});
}

Rows all_rows() {
    Rows rows;
    start_up_rows(rows);
    short_deck_rows(rows);
    card_value_rows(rows);
    deck_content_rows(rows);
    mesh_rows(rows);
    file_rows(rows);
    return rows;
}

// A project whose deck would finish, as every row takes it over.
void prepare(const Project& project, Kind kind) {
    project.write("mesh.Mes", sample_text(kind));
    project.write("other.Mes", sample_text(kind));
    project.deck(commented_deck(move_cards()));
}

class BadInput : public ::testing::TestWithParam<Fault> {};

TEST_P(BadInput, EndsWithAMessageAndTouchesNothing) {
    const Fault& fault = GetParam();
    const Project project(fault.kind);
    prepare(project, fault.kind);
    fault.set_up(project);
    const Snapshot before = project.snapshot();

    RunOptions options;
    options.unprivileged = fault.unprivileged;
    const RunResult result = project.run("", options);

    if (fault.status == 2) {
        expect_failed(result, fault.fragments);
        if (!fault.late) {
            EXPECT_FALSE(project.exists_data("BRELAN2D.DAT")) << "a failure has no status of its own";
        }
    } else {
        EXPECT_EQ(result.status, fault.status) << result.err;
        EXPECT_EQ(result.signal, 0);
        EXPECT_FALSE(result.timed_out);
        EXPECT_EQ(result.out, "300\n");
        EXPECT_EQ(result.err, "");
        expect_data_file(project, "BRELAN2D.DAT", {"           1"});
        EXPECT_EQ(lines_of(project.read_work("MESSAGE.INP")).size(), 9U);
    }
    std::string changes;
    for (const auto& change : project.changed_since(before)) {
        // The plot tool's name file is an output also where an earlier run has left it.
        if (change.find("FnPlot2D.dat") == std::string::npos)
            changes += change + "\n";
    }
    EXPECT_EQ(changes, "");
}

INSTANTIATE_TEST_SUITE_P(Table, BadInput, ::testing::ValuesIn(all_rows()),
                         [](const auto& information) { return information.param.name; });

// The table shows something only if the same project without the fault is taken whole.
TEST(BadInputControl, ProjectWithoutAFaultFinishes) {
    for (const Kind kind : ALL_KINDS) {
        const Project project(kind);
        prepare(project, kind);
        const Snapshot before = project.snapshot();
        RunOptions options;
        options.unprivileged = true;
        expect_finished(project.run("", options));
        EXPECT_TRUE(project.changed_since(before).empty());
        EXPECT_EQ(expect_sound_mesh(project, "out.Mes", kind).area, 2.5);
        project.deck(commented_deck(code_window_cards(kind)));
        expect_finished(project.run("", options));
        project.deck(commented_deck(rebuild_cards()));
        expect_finished(project.run("", options));
    }
}

TEST(BadInputControl, ListsAndNumbersAtTheirLimitsAreTaken) {
    const Project project;
    prepare(project, Kind::displacement);
    project.deck(commented_deck(edit_cards({"1", "1", "500", several(500, "3"), "0", "1 1 1"})));
    expect_finished(project.run());
    project.deck(commented_deck(edit_cards({"1", "1", "2", "1 99990", "0", "1 1 1"})));
    expect_finished(project.run());
    // Nodes 99984 to 99990 and continuum elements 99984 to 99986, so beams to 99988 and trusses to 99990.
    project.deck(commented_deck(replaced(move_cards(), 4, "99984 99984 1 1")));
    expect_finished(project.run());
    const MeshCheck check = expect_sound_mesh(project, "out.Mes", Kind::displacement);
    EXPECT_EQ(check.mesh.nodes.back().number, 99990);
    EXPECT_EQ(check.mesh.trusses.back().number, 99990);
}

TEST(BadInputControl, CountThatEndsBeforeTheTrussesDoLeavesTheRestUnread) {
    // Nothing behind the last section tells whether more should follow: a file goes by its counts.
    const Project project;
    prepare(project, Kind::displacement);
    project.write("mesh.Mes", with_line(sample_text(), 3, "     7       3       2       1"));
    expect_finished(project.run());
    EXPECT_EQ(expect_sound_mesh(project, "out.Mes", Kind::displacement).mesh.trusses.size(), 1U);
}

TEST(BadInputControl, LongCommentsInAMeshAreTaken) {
    const Project project;
    prepare(project, Kind::displacement);
    project.write("mesh.Mes", with_inserted_line(sample_text(), 8, "*" + ten_megabytes('x')));
    expect_finished(project.run());
    EXPECT_EQ(expect_sound_mesh(project, "out.Mes", Kind::displacement).mesh.nodes.size(), 7U);
}

}  // namespace
}  // namespace brelan::test
