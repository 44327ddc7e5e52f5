#include "cli/json.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "cli/exit_status.h"

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

// Takes what the parser finds, without a call for each level of nesting.
class Reader : public nlohmann::json_sax<Tree> {
public:
    bool null() override { return take(Json()); }
    bool boolean(bool value) override { return take(value); }
    bool number_integer(std::int64_t value) override { return take(value); }
    bool number_unsigned(std::uint64_t value) override {
        return take(std::in_range<std::int64_t>(value) ? Json(static_cast<std::int64_t>(value))
                                                       : Json(static_cast<double>(value)));
    }
    bool number_float(double value, const std::string& /*text*/) override { return take(value); }
    bool string(std::string& value) override { return take(std::move(value)); }
    bool binary(Tree::binary_t& /*value*/) override { return false; }
    bool start_object(std::size_t /*count*/) override { return open(Json::Object()); }
    bool key(std::string& name) override {
        open_.back().name = std::move(name);
        return true;
    }
    bool end_object() override { return close(); }
    bool start_array(std::size_t /*count*/) override { return open(Json::Array()); }
    bool end_array() override { return close(); }
    bool parse_error(std::size_t place, const std::string& /*token*/,
                     const nlohmann::detail::exception& /*error*/) override {
        throw Failure("expected JSON, found a fault at character " + std::to_string(place));
    }

    Json result() { return std::move(result_); }

private:
    struct Open {
        Json value;
        bool is_object;
        std::string name;  // of the member that comes next
    };

    bool open(Json value) {
        constexpr std::size_t DEEPEST = 16;
        if (open_.size() == DEEPEST)
            throw Failure("expected JSON, found one that is nested too deep");
        const bool is_object = std::holds_alternative<Json::Object>(value.value());
        open_.push_back({std::move(value), is_object, {}});
        return true;
    }

    bool close() {
        Json whole = std::move(open_.back().value);
        open_.pop_back();
        return take(std::move(whole));
    }

    bool take(Json value) {
        if (open_.empty())
            result_ = std::move(value);
        else if (open_.back().is_object)
            open_.back().value[open_.back().name] = std::move(value);
        else
            open_.back().value.push_back(std::move(value));
        return true;
    }

    std::vector<Open> open_;
    Json result_;
};

std::string dumped(const Json& json, int indent, bool ascii) {
    return std::visit(Builder(), json.value()).dump(indent, ' ', ascii, Tree::error_handler_t::replace);
}

}  // namespace

Json Json::parsed(std::string_view text) {
    Reader reader;
    Tree::sax_parse(text, &reader);
    return reader.result();
}

const Json* Json::find(std::string_view name) const {
    const Object* const members = std::get_if<Object>(&value_);
    if (members == nullptr)
        return nullptr;
    const auto found = std::find_if(members->begin(), members->end(),
                                    [&](const Member& member) { return member.first == name; });
    return found != members->end() ? &found->second : nullptr;
}

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
