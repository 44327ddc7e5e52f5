#include "output/node_lists.h"

#include <cstdint>
#include <vector>

#include "mesh/group_tables.h"
#include "output/blocks.h"
#include "text/layout.h"

namespace brelan {

namespace {

constexpr Layout<"(2X,I5)"> LIST_COUNT;
constexpr Layout<"('* Number of Nodes = ',I4)"> NODE_COUNT;
constexpr Layout<"(5(1X,I6))"> NODES;

constexpr std::size_t NODE_SWITCH = 6;  // place of the switch in GroupPost::toggle

struct NodeList {
    std::int32_t group = 0;
    std::vector<NodeNumber> nodes;
};

// The lines of the groups that want them; a node that the mesh lost is left out.
std::vector<NodeList> wanted_lists(const GroupCards& group_cards, const GroupListing& listing) {
    std::vector<NodeList> lists;
    for (const ListingRow& row : listing.rows) {
        if (row.sub_kind != ROW_OUTLINE)
            continue;
        const GroupPost& post = group_cards.outputs[row.group];
        if (post.wants_outputs == 0 || post.toggle[NODE_SWITCH] == 0)
            continue;
        NodeList list{row.group, {}};
        for (const NodeNumber node : row.nodes)
            if (node.names_one())
                list.nodes.push_back(node);
        if (!list.nodes.empty())
            lists.push_back(std::move(list));
    }
    return lists;
}

}  // namespace

void write_node_lists(const GroupCards& group_cards, const GroupListing& listing, Channel& post,
                      std::string_view count_card, std::string_view nodes_card) {
    const std::vector<NodeList> lists = wanted_lists(group_cards, listing);
    write_lines(post, {count_card, "*   NRL      "});
    LIST_COUNT.write(post, static_cast<std::int32_t>(lists.size()));
    for (const NodeList& list : lists) {
        write_group_head(group_cards, post, list.group);
        NODE_COUNT.write(post, static_cast<std::int32_t>(list.nodes.size()));
        write_lines(post, {"*", nodes_card, "* NODE1  NODE2  NODE3  NODE4  NODE5"});
        NODES.write_list(post, std::span<const std::int32_t>(values_of(list.nodes)));
    }
}

}  // namespace brelan
