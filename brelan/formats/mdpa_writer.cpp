#include <fmt/core.h>

#include <string>

#include "cli/formatted_text.h"
#include "formats/mdpa.h"

namespace brelan::tool {

namespace {

class MdpaWriter {
public:
    explicit MdpaWriter(OutputFile& out) : text_(out) {}

    void write(const MdpaModel& model) {
        text_.add("// {}, a mesh of the {} kind\n", model.source, name_of(model.kind));
        for (const std::int32_t number : model.properties)
            text_.add("\nBegin Properties {}\nEnd Properties\n", number);
        text_.add("\nBegin Nodes\n");
        for (const Node& node : model.nodes)
            text_.add("    {}  {:#} {:#} 0.0\n", node.number.value, node.x, node.y);
        text_.add("End Nodes\n");
        for (const MdpaBlock& block : model.blocks)
            write_block(block);
        for (const MdpaPart& part : model.parts)
            write_part(part);
        text_.flush();
    }

private:
    void write_block(const MdpaBlock& block) {
        text_.add("\nBegin Elements {}\n", block.type);
        for (const MdpaElement& element : block.elements) {
            text_.add("    {}  {} ", element.number, element.properties);
            for (const Number node : element.nodes)
                text_.add(" {}", node);
            text_.add("\n");
        }
        text_.add("End Elements\n");
    }

    void write_part(const MdpaPart& part) {
        text_.add("\nBegin SubModelPart {}\n", part.name);
        write_numbers("Nodes", part.nodes);
        write_numbers("Elements", part.elements);
        text_.add("End SubModelPart\n");
    }

    void write_numbers(std::string_view of, const std::vector<Number>& numbers) {
        text_.add("  Begin SubModelPart{}\n", of);
        for (const Number number : numbers)
            text_.add("    {}\n", number);
        text_.add("  End SubModelPart{}\n", of);
    }

    FormattedText text_;
};

}  // namespace

void write_mdpa(const MdpaModel& model, const std::filesystem::path& path) {
    OutputFile out(path);
    MdpaWriter(out).write(model);
    out.commit();
}

}  // namespace brelan::tool
