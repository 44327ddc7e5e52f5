// Block files written by hand: they say what the cards cannot.
#pragma once

#include <array>
#include <filesystem>
#include <sstream>
#include <utility>

#include "blocks/block_mesh.h"
#include "lib/blocks/listing.h"
#include "mesh/block_tables.h"
#include "support/state.h"

namespace brelan::test {

// A block by its nine key points: corners from the top right anti-clockwise, then the middles of top, left,
// bottom and right side, then the centre; 0 for none.
struct HandBlock {
    std::array<int, 9> keys{};
    int material = 1, ndx = 1, ndy = 1;
    const char* attributes = nullptr;  // those of the kind where nothing is said
};

struct HandFile {
    std::vector<std::pair<double, double>> points;
    std::vector<HandBlock> blocks;
    int block_columns = 1, block_rows = 1;
    int double_x = 0, double_y = 0, order = 0;
    int first_node = 1, first_element = 1;
    double scale = 1.0;
    std::string title = "by hand";

    std::string text() const {
        const bool scalar =
            state.settings.kind() == LayoutKind::temperature || state.settings.kind() == LayoutKind::head;
        const char* usual = state.settings.kind() == LayoutKind::coupled ? "0 1" : scalar ? "0" : "1.0 2.3";
        std::ostringstream out;
        out.precision(9);
        out << title << "\n0\n"
            << blocks.size() << " " << points.size() << " " << first_element << " " << scale;
        out << (scalar ? " 20.0\n" : "\n");
        out << block_columns << " " << block_rows << " " << double_x << " " << double_y << " " << order << " "
            << first_node << "\n";
        for (std::size_t k = 0; k < points.size(); ++k)
            out << k + 1 << " " << points[k].first << " " << points[k].second << "\n";
        for (std::size_t k = 0; k < blocks.size(); ++k) {
            const HandBlock& block = blocks[k];
            out << "a block\n" << k + 1 << "\n";
            for (const int key : block.keys)
                out << key << " ";
            out << (scalar ? "\n" : "\n0 0 0 0 0 0 0 0 0\n") << block.material << " " << block.ndx << " "
                << block.ndy;
            out << " " << (block.attributes == nullptr ? usual : block.attributes) << "\n0\n";
        }
        out << "0\n";
        return out.str();
    }
};

// Key points of one block with straight sides and the mid points in the middles, by columns from the top; and
// the block's keys among them.
inline std::vector<std::pair<double, double>> rectangle(double left, double right, double bottom,
                                                        double top) {
    std::vector<std::pair<double, double>> points;
    for (const double x : {left, (left + right) / 2.0, right})
        for (const double y : {top, (bottom + top) / 2.0, bottom})
            points.emplace_back(x, y);
    return points;
}
inline constexpr std::array<int, 9> RECTANGLE_KEYS{7, 1, 3, 9, 4, 2, 6, 8, 5};

// A working directory below a project directory, so that "..\Bmesh.dat" has its place.
class BlockMeshTest : public ::testing::Test {
protected:
    BlockMeshTest() {
        std::filesystem::create_directory("work");
        std::filesystem::current_path("work");
        state.deck.blocks.fixes_left = state.deck.blocks.fixes_right = state.deck.blocks.fixes_top =
            state.deck.blocks.fixes_bottom = 0;
        state.deck.blocks.third = 0.0F;
        state.field = {-1000.0F, 1000.0F, -1000.0F, 1000.0F};  // out of reach
    }

    void write_blocks(const HandFile& file) const { directory_.write("work/Bmesh.Tmp", file.text()); }
    void generate(const HandFile& file) const {
        write_blocks(file);
        make_block_mesh(state.channels, state.settings.kind(), state.deck.blocks, state.field);
    }
    const WorkDirectory& directory() const { return directory_; }
    std::string coord() const { return directory_.read("work/Coord.dat"); }
    std::string index() const { return directory_.read("work/Index.dat"); }
    std::string base() const { return directory_.read("Bmesh.dat"); }

    // Lines of "..\Bmesh.dat" from the nodes on, without the headings of the elements.
    std::vector<std::string> records() const {
        std::vector<std::string> lines;
        std::istringstream text(base());
        for (std::string line; std::getline(text, line);)
            lines.push_back(line);
        lines.erase(lines.begin(), lines.begin() + 5);
        for (auto at = lines.begin(); at != lines.end(); ++at) {
            if (*at == "    ELEMENT INDEX ") {
                lines.erase(at, at + 2);
                break;
            }
        }
        return lines;
    }

private:
    WorkDirectory directory_;
    Edition edition_{DISPLACEMENT};
};

}  // namespace brelan::test
