#include "deck/card_source.h"

#include <algorithm>

#include "deck/card_stream.h"
#include "deck/normalised_deck.h"
#include "text/free_field.h"
#include "text/real_to_integer.h"

namespace brelan {

// --- values --------------------------------------------------------------------------------------

std::int32_t CardSource::integer(std::int32_t position) const {
    return to_integer(values[position]);
}

std::int32_t CardSource::count(const Card& card) const {
    const std::int32_t found = integer(1);
    if (found > card.most)
        refuse(name_of(card) + ": expected at most " + std::to_string(card.most) + " in " + card.names(kind) +
               ", found " + std::to_string(found));
    return found;
}

// --- the cards of a deck -------------------------------------------------------------------------

DeckCards::DeckCards(Channel& stripped, Channel& normalised, LayoutKind card_kind, CardMemory& memory,
                     Deck& deck, DeckNotes& notes, CardNaming naming)
    : CardSource(card_kind, memory.values),
      stripped_(stripped),
      normalised_(normalised),
      memory_(memory),
      deck_(deck),
      notes_(notes),
      naming_(naming) {}

float DeckCards::shown(std::int32_t position) const {
    if (card_->fields_of(kind)[position].form == FieldForm::integer)
        return static_cast<float>(integer(position));
    return shown_real(values[position]);
}

void DeckCards::complete(std::int32_t position, float value) {
    set(position, value);
    notes_.value_is(position, value);
}

std::string DeckCards::name_of(const Card& card) const {
    return "Card " + std::string(naming_ == CardNaming::label ? card.label : card.number);
}

void DeckCards::hold(const RunEnd& end) {
    if (!deck_.fault && part_ != DeckPart::nothing)
        deck_.fault = {part_, end};
}

void DeckCards::check_integer(float value, std::string_view called) {
    if (!fits_shown_integer(to_integer(value)))
        hold(std::string(part_ == DeckPart::groups ? "expected a number in " : "expected an integer in ") +
             std::string(called) + ", found \"*****\"");
}

void DeckCards::read(const Card& card) {
    card_ = &card;
    const CardFields& fields = card.fields_of(kind);
    for (std::int32_t position = 1; position <= fields.count(); ++position)
        if (fields[position].otherwise)
            set(position, *fields[position].otherwise);
    const std::string name = name_of(card);
    if (made_ != nullptr) {
        const std::vector<float>& made = made_->values.at(next_made_++);
        std::copy(made.begin(), made.end(), &values[1]);
        stripped_.skip_lines(1, name);
        return;
    }
    if (stripped_.at_end())
        stripped_.fail_here("the file ends here; expected " + name);
    notes_.card(card, stripped_);
    std::int32_t known = 0;
    try {
        read_values(stripped_, memory_.values, name, card.label, card.minimum_of(kind), card.maximum_of(kind),
                    known);
    } catch (const RunEnd&) {
        notes_.values(std::span<const float>(&values[1], static_cast<std::size_t>(known)));
        throw;
    }
    notes_.values(std::span<const float>(&values[1], static_cast<std::size_t>(fields.count())));
}

void DeckCards::pass(const Card& card) {
    if (card.not_shown_in == kind)
        return;
    const CardFields& fields = card.fields_of(kind);
    write_card(values, normalised_, fields);
    for (std::int32_t position = 1; position <= fields.shown(); ++position)
        if (fields[position].form == FieldForm::integer)
            check_integer(values[position], card.in_messages(kind));
}

void DeckCards::show(std::initializer_list<std::int32_t> integers) {
    write_integers(normalised_, std::span(integers.begin(), integers.size()));
}

// --- lists ---------------------------------------------------------------------------------------

void DeckCards::read_list(const Card& card, std::int32_t count, std::string_view heading,
                          const std::string& expected) {
    if (!stripped_.at_end())
        notes_.list(card, heading, stripped_);
    const std::span list(&values[1], static_cast<std::size_t>(count));
    read_free_list<float>(stripped_, expected, list);
    notes_.list_values(list, stripped_);
}

std::vector<std::int32_t> DeckCards::list(const Card& card, std::int32_t count, std::string_view heading,
                                          std::string_view called) {
    if (count <= 0)
        return {};
    read_list(card, count, heading, "the list of " + std::to_string(count) + " values of " + name_of(card));
    std::vector<std::int32_t> integers;
    for (std::int32_t i = 1; i <= count; ++i) {
        integers.push_back(integer(i));
        check_integer(values[i], called);
    }
    write_integers(normalised_, integers);
    return integers;
}

std::vector<std::int32_t> DeckCards::list_line(const Card& card, std::int32_t count, std::string_view heading,
                                               std::string_view called) {
    if (count <= 0)
        show({});
    return list(card, count, heading, called);
}

std::vector<float> DeckCards::reals(const Card& card, std::int32_t count, std::string_view heading,
                                    const std::string& expected) {
    read_list(card, count, heading, expected);
    const std::span<const float> list(&values[1], static_cast<std::size_t>(count));
    write_reals(normalised_, list);
    std::vector<float> reals;
    std::transform(list.begin(), list.end(), std::back_inserter(reals), shown_real);
    return reals;
}

// --- names and titles ----------------------------------------------------------------------------

TextLine DeckCards::file_name(std::string_view number, std::string_view field) {
    const std::string what = "the file name of Card " + std::string(number) + " (" + std::string(field) + ")";
    if (stripped_.at_end())
        stripped_.fail_here("the file ends here; expected " + what);
    notes_.name(number, field, stripped_);
    const TextLine line = stripped_.read_line(what);
    if (line.blank())
        refuse("expected " + what + ", found a blank line");
    if (line.view().find('\0') != std::string_view::npos)
        refuse("expected " + what + ", found one that holds a zero byte");
    // What is left of the name would be another file.
    if (stripped_.was_cut())
        refuse("expected " + what + " in columns 1 to " + std::to_string(LINE_COLUMNS) +
               ", found a longer one");
    // The last columns of a bare name are cut: with nothing in the others it is as good as blank.
    if (is_bare_name(line) && TextLine(line.first(LINE_COLUMNS - 3)).blank())
        refuse("expected " + what + ", found a line with nothing in its first 123 columns");
    notes_.name_is(line);
    const TextLine name = name_from_parent(memory_.name_field, line);
    normalised_.write_columns(name.view());
    return name;
}

void DeckCards::unused_file_name(std::string_view number, std::string_view field) {
    const std::string what = "the file name of Card " + std::string(number) + " (" + std::string(field) + ")";
    notes_.name(number, std::string(field) + ", not used by this edit", stripped_);
    notes_.name_is(stripped_.read_line(what));
}

void DeckCards::result_name(std::string_view number, std::string_view field, TextLine& name) {
    name = file_name(number, field);
    notes_.result(name);
}

std::string DeckCards::title() {
    constexpr std::string_view what = "a group's title";
    if (stripped_.at_end())
        stripped_.fail_here("the file ends here; expected " + std::string(what));
    notes_.title(stripped_);
    const TextLine line = stripped_.read_line(what);
    const std::int32_t columns = last_title_column(line);
    std::string title(columns == 0 ? " " : line.first(columns));
    notes_.title_is(line.first(columns));
    normalised_.write_line(title);
    return title;
}

// IEDIT stands on the fourth line from here; it decides whether the first of them counts. Behind a blank
// fourth line the step back of four ends one line late, so such a deck is reported at Card 3.2.
std::int32_t DeckCards::look_ahead_to_edit() {
    constexpr int lines = 4;
    if (made_ != nullptr)
        return to_integer(made_->values.at(next_made_ + 1).front());
    stripped_.skip_lines(lines - 1, "Cards 3.1-1 to 3.3");
    float edit = 0.0F;
    read_free(stripped_, "Card 3.3", edit);
    stripped_.step_back(lines);
    return to_integer(edit);
}

// --- lines of the normalised deck ----------------------------------------------------------------

void ShownCards::read(const Card& card) {
    const std::string expected = card.in_messages(kind);
    FreeFieldReader reader(normalised_, expected);
    const std::int32_t fields = card.fields_of(kind).shown();
    for (std::int32_t position = 1; position <= fields; ++position)
        reader.read(values[position]);
    reader.finish();
}

std::string ShownCards::title() {
    return std::string(normalised_.read_line("a group's title").first(80));
}

}  // namespace brelan
