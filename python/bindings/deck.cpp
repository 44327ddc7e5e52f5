// Decks, and their runs in memory.
#include <map>
#include <stdexcept>
#include <utility>

#include "bindings.h"
#include "cli/output_file.h"
#include "commands/checking/deck_check.h"
#include "commands/checking/drawn_lines.h"
#include "commands/memory_choice.h"
#include "commands/memory_run.h"
#include "commands/run_failure.h"
#include "drawing/soundness_text.h"
#include "formats/mesh_file.h"
#include "model/deck_edit.h"
#include "run/run_deck.h"
#include "text/text_line.h"

namespace brelan::python {

namespace py = pybind11;
namespace fs = std::filesystem;

namespace {

// --- decks ---------------------------------------------------------------------------------------

using DeckHandle = std::shared_ptr<const HeldDeck>;

DeckHandle deck_of(tool::DeckSource source, const std::string& project, const std::string& kind) {
    const py::gil_scoped_release unlocked;
    const std::string file = source.file.string();
    return reported(file, [&] {
        auto deck = std::make_shared<HeldDeck>();
        deck->place.project = project;
        deck->kind_wish = kind;
        kind_of_name(kind);
        if (source.text.starts_with(BYTE_ORDER_MARK)) {
            source.text.erase(0, BYTE_ORDER_MARK.size());
            source.byte_order_mark = true;
        }
        deck->edition = tool::edition_of_deck(source, project, {}, {0, kind}).edition;
        deck->noted = tool::read_deck(source, deck->edition.kind);
        return DeckHandle(std::move(deck));
    });
}

DeckHandle deck_of_text(const std::string& text, const std::string& file, const std::string& project,
                        const std::string& kind) {
    return deck_of({file, text, false}, project, kind);
}

DeckHandle deck_of_file(const std::string& file, const std::string& kind) {
    const tool::DeckSource source = reported(file, [&] { return tool::deck_source(file); });
    const fs::path project = fs::path(file).parent_path();
    return deck_of(source, project.empty() ? "." : project.string(), kind);
}

// A deck with another text at the same place.
DeckHandle with_text(const HeldDeck& deck, const std::string& text) {
    return deck_of({deck.noted.file, text, deck.noted.byte_order_mark}, deck.place.project.string(),
                   deck.kind_wish);
}

template <class Edit>
DeckHandle edited(const HeldDeck& deck, Edit edit) {
    return with_text(deck, reported(deck.noted.file.string(), edit));
}

py::object value_of(const tool::DeckField& field) {
    if (!field.known)
        return py::none();
    if (field.form == FieldForm::real)
        return py::float_(static_cast<double>(field.value));
    return py::int_(field.integer());
}

// --- runs ----------------------------------------------------------------------------------------

// The package's data of a kind, read once.
struct Data {
    tool::TextsByName texts;
};

struct HeldRun {
    RunResult result;
    double seconds = 0.0;
    CutMethod cut = CutMethod::by_rules;
    std::string cut_reason;
    Remark end;  // of a run that has not finished, its files named as the person knows them
    std::shared_ptr<HeldMesh> mesh;
    std::vector<std::string> remarks;
};

struct RunWishes {
    std::string cut;  // rules, sound, auto
    bool listings = false;
};

// How a run ended, its files named as the person knows them. A mesh that is not there, or cannot be read as a
// whole, is one that a card names.
Remark end_of(const HeldDeck& deck, const RunEnd& end) {
    const std::string message = tool::failure_message({deck.noted,
                                                       deck.place.project,
                                                       {},
                                                       std::string(tool::MEMORY_DECK),
                                                       "",
                                                       {end.status, end.text, end.text}});
    Remark remark = taken_apart(message, deck.noted.file.string());
    for (const tool::DeckCard& card : deck.noted.cards)
        if (remark.file.empty() && card.type == tool::CardType::name)
            remark = taken_apart(
                message, tool::file_of_card(deck.place.project, card.name).lexically_normal().string());
    return remark;
}

HeldRun held_run(const HeldDeck& deck, tool::MemoryRun made) {
    HeldRun run;
    run.seconds = made.seconds;
    run.cut = made.cut;
    run.cut_reason = std::move(made.cut_reason);
    run.result = std::move(made.result);
    if (run.result.end.status != STATUS_FINISHED)
        run.end = end_of(deck, run.result.end);
    else if (made.mesh)
        run.mesh = std::make_shared<HeldMesh>(std::move(*made.mesh));
    return run;
}

tool::Cut cut_of(const std::string& name) {
    return name == "sound" ? tool::Cut::sound : name == "auto" ? tool::Cut::automatic : tool::Cut::rules;
}

HeldRun run_held(const HeldDeck& deck, const Data& data, const std::map<std::string, std::string>& files,
                 const RunWishes& wishes) {
    const py::gil_scoped_release unlocked;
    return reported(deck.noted.file.string(), [&] {
        RunInput input = tool::run_input(deck.noted, deck.edition, deck.place, data.texts);
        for (const auto& [name, text] : files)
            input.files[tool::name_in_run(name)] = text;
        input.listings = wishes.listings ? Listings::kept : Listings::left_out;
        HeldRun run = held_run(
            deck, tool::run_in_memory(deck.noted, deck.edition.kind, std::move(input), cut_of(wishes.cut)));
        if (run.mesh)
            run.remarks = tool::changed_lines(deck.noted, std::nullopt, run.mesh->lists);
        return run;
    });
}

// The files that a run left, by the names that a person knows; the package's data are not among them.
std::map<std::string, py::bytes> files_of_run(const HeldRun& run) {
    std::map<std::string, py::bytes> files;
    if (run.result.files == nullptr)
        return files;
    const std::string project = "project/", work = "project/work/";
    for (const std::string& path : run.result.files->names()) {
        if (!path.starts_with(project))
            continue;
        const bool at_work = path.starts_with(work);
        const std::string name = path.substr(at_work ? work.size() : project.size());
        if (name == "TFNAME.TMP" || name == "deck.dat")
            continue;
        files.emplace(at_work ? "work/" + name : name,
                      py::bytes(std::string(run.result.files->text(at_work ? name : "..\\" + name))));
    }
    return files;
}

// Numbers of the elements that come or go, and for each the step at which it comes, that at which it goes,
// and the material that it had before it got one of its group's own.
py::tuple activity_of(const HeldRun& run) {
    const std::vector<ElementActivity>& activity = run.result.activity;
    py::array_t<std::int32_t> numbers(static_cast<py::ssize_t>(activity.size()));
    py::array_t<std::int32_t> rows({activity.size(), std::size_t{3}});
    auto row = rows.mutable_unchecked<2>();
    for (std::size_t k = 0; k < activity.size(); ++k) {
        const auto at = static_cast<py::ssize_t>(k);
        numbers.mutable_at(at) = activity[k].element.value;
        row(at, 0) = activity[k].pair.activated;
        row(at, 1) = activity[k].pair.deactivated;
        row(at, 2) = activity[k].old_material.value;
    }
    return py::make_tuple(numbers, rows);
}

py::list doubts_of(const HeldDeck& deck) {
    tool::DeckCheck check;
    {
        const py::gil_scoped_release unlocked;
        check = reported(deck.noted.file.string(),
                         [&] { return tool::check_of(deck.noted, deck.edition, deck.place); });
    }
    py::list all;
    if (check.verdict.status != 0)
        all.append(py::make_tuple("refused", check.verdict.line, check.verdict.message, true));
    for (const tool::Doubt& doubt : check.doubts)
        all.append(py::make_tuple(doubt.id, doubt.line, doubt.message, doubt.ends_run));
    return all;
}

// What the deck draws: title, whether it is closed, and its points.
py::list shapes_of_deck(const HeldDeck& deck) {
    py::list all;
    for (const tool::DeckShape& shape : tool::shapes_of(deck.noted)) {
        py::array_t<double> points({shape.points.size(), std::size_t{2}});
        auto rows = points.mutable_unchecked<2>();
        for (std::size_t k = 0; k < shape.points.size(); ++k) {
            rows(static_cast<py::ssize_t>(k), 0) = shape.points[k].x;
            rows(static_cast<py::ssize_t>(k), 1) = shape.points[k].y;
        }
        all.append(py::make_tuple(shape.title, shape.group, shape.closed, points));
    }
    return all;
}

void bind_cards(py::module_& module) {
    py::class_<tool::DeckField>(module, "Field")
        .def_readonly("name", &tool::DeckField::name)
        .def_readonly("given", &tool::DeckField::given)
        .def_readonly("text", &tool::DeckField::text)
        .def_property_readonly("is_real",
                               [](const tool::DeckField& field) { return field.form == FieldForm::real; })
        .def_property_readonly("value", &value_of);
    py::class_<tool::DeckCard>(module, "Card")
        .def_property_readonly(
            "type",
            [](const tool::DeckCard& card) {
                static constexpr std::array<const char*, 4> NAMES{"values", "name", "title", "list"};
                return NAMES[static_cast<std::size_t>(card.type)];
            })
        .def_readonly("number", &tool::DeckCard::number)
        .def_readonly("heading", &tool::DeckCard::heading)
        .def_readonly("line", &tool::DeckCard::line)
        .def_readonly("group", &tool::DeckCard::group)
        .def_readonly("fields", &tool::DeckCard::fields)
        .def_readonly("list", &tool::DeckCard::list)
        .def_readonly("name", &tool::DeckCard::name);
}

void bind_runs(py::module_& module) {
    [[maybe_unused]] const py::class_<Data, std::shared_ptr<Data>> data(module, "Data");
    module.def("read_data", [](const std::string& place, const std::string& kind) {
        return reported(place, [&] {
            return std::make_shared<Data>(
                Data{tool::package_data(place, kind_of_name(kind).value_or(LayoutKind::displacement))});
        });
    });
    py::class_<HeldRun>(module, "Run")
        .def_property_readonly("status", [](const HeldRun& run) { return run.result.end.status; })
        .def_property_readonly("message", [](const HeldRun& run) { return run.end.text; })
        .def_property_readonly("file", [](const HeldRun& run) { return run.end.file; })
        .def_property_readonly("line", [](const HeldRun& run) { return run.end.line; })
        .def_property_readonly("field", [](const HeldRun& run) { return run.result.end.field; })
        .def_property_readonly("console", [](const HeldRun& run) { return run.result.console; })
        .def_property_readonly(
            "cut", [](const HeldRun& run) { return run.cut == CutMethod::sound ? "sound" : "rules"; })
        .def_property_readonly("result", [](const HeldRun& run) { return tool::name_of_result(run.result); })
        .def_readonly("cut_reason", &HeldRun::cut_reason)
        .def_readonly("seconds", &HeldRun::seconds)
        .def_readonly("mesh", &HeldRun::mesh)
        .def_readonly("remarks", &HeldRun::remarks)
        .def_property_readonly("activity", &activity_of)
        .def("files", &files_of_run);
}

}  // namespace

void bind_deck(py::module_& module) {
    bind_cards(module);
    bind_runs(module);
    py::class_<HeldDeck, std::shared_ptr<HeldDeck>>(module, "Deck")
        .def_property_readonly("text", [](const HeldDeck& deck) { return py::bytes(deck.noted.text); })
        .def_property_readonly("file", [](const HeldDeck& deck) { return deck.noted.file.string(); })
        .def_property_readonly("project", [](const HeldDeck& deck) { return deck.place.project.string(); })
        .def_property_readonly("kind",
                               [](const HeldDeck& deck) { return std::string(name_of(deck.edition.kind)); })
        .def_property_readonly("edition", [](const HeldDeck& deck) { return deck.edition.number; })
        .def_property_readonly("mode", [](const HeldDeck& deck) { return deck.noted.mode; })
        .def_property_readonly("result", [](const HeldDeck& deck) { return deck.noted.result; })
        .def_property_readonly("byte_order_mark",
                               [](const HeldDeck& deck) { return deck.noted.byte_order_mark; })
        .def_property_readonly("cards", [](const HeldDeck& deck) { return deck.noted.cards; })
        .def_property_readonly("fault",
                               [](const HeldDeck& deck) -> py::object {
                                   if (!deck.noted.fault)
                                       return py::none();
                                   const tool::DeckFault& fault = *deck.noted.fault;
                                   return py::make_tuple(fault.message, fault.line, fault.field);
                               })
        .def("with_value",
             [](const HeldDeck& deck, std::size_t card, std::size_t field, float value) {
                 return edited(deck, [&] {
                     return tool::with_value(
                         deck.noted, card, field,
                         tool::shortest_text(value, deck.noted.cards.at(card).fields.at(field).form));
                 });
             })
        .def("with_name",
             [](const HeldDeck& deck, std::size_t card, const std::string& name) {
                 return edited(deck, [&] { return tool::with_name(deck.noted, card, name); });
             })
        .def("with_list",
             [](const HeldDeck& deck, std::size_t card, const std::vector<float>& values) {
                 return edited(deck, [&] { return tool::with_list(deck.noted, card, values); });
             })
        .def("with_text", &with_text)
        .def("save",
             [](const HeldDeck& deck, const std::string& file) {
                 reported(file, [&] {
                     const std::string mark(deck.noted.byte_order_mark ? BYTE_ORDER_MARK : "");
                     tool::write_file(file, mark + deck.noted.text);
                 });
             })
        .def("doubts", &doubts_of)
        .def("run",
             [](const HeldDeck& deck, const Data& data, const std::map<std::string, std::string>& files,
                const std::string& cut, bool listings) {
                 return run_held(deck, data, files, {cut, listings});
             })
        .def("shapes", &shapes_of_deck);
    module.def("deck_of_text", &deck_of_text);
    module.def("deck_of_file", &deck_of_file);
}

}  // namespace brelan::python
