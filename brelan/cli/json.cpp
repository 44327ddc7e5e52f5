#include "cli/json.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

namespace brelan::tool {

namespace {

using Tree = nlohmann::ordered_json;

struct Builder {
    template <class Plain>
    Tree operator()(const Plain& value) const {
        return value;
    }

    Tree operator()(const Json::Array& values) const {
        Tree array = Tree::array();
        for (const Json& value : values)
            array.push_back(std::visit(*this, value.value()));
        return array;
    }

    Tree operator()(const Json::Object& members) const {
        Tree object = Tree::object();
        for (const Json::Member& member : members)
            object[member.first] = std::visit(*this, member.second.value());
        return object;
    }
};

std::string dumped(const Json& json, int indent, bool ascii) {
    return std::visit(Builder(), json.value()).dump(indent, ' ', ascii, Tree::error_handler_t::replace);
}

}  // namespace

Json& Json::operator[](std::string_view name) {
    if (std::holds_alternative<std::nullptr_t>(value_))
        value_ = Object();
    auto& members = std::get<Object>(value_);
    const auto found = std::find_if(members.begin(), members.end(),
                                    [&](const Member& member) { return member.first == name; });
    return found != members.end() ? found->second : members.emplace_back(name, Json()).second;
}

void Json::push_back(Json value) {
    if (std::holds_alternative<std::nullptr_t>(value_))
        value_ = Array();
    std::get<Array>(value_).push_back(std::move(value));
}

std::string Json::text() const {
    return dumped(*this, 2, false) + "\n";
}

std::string Json::compact() const {
    return dumped(*this, -1, true);
}

}  // namespace brelan::tool
