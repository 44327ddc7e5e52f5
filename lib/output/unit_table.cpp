#include "output/unit_table.h"

#include <array>
#include <cstddef>
#include <span>

#include "mesh/edition.h"
#include "text/channel_numbers.h"
#include "text/channels.h"
#include "text/free_field.h"

namespace brelan {

namespace {

constexpr std::string_view UNIT_FILE = "C:\\VORK\\QX\\QXDATA\\UNIT.DAT";

// --- labels, by code from 1 ----------------------------------------------------------------------

constexpr std::array<std::string_view, 7> FORCE = {"(N)  ", "(KN) ", "(MN) ", "(Kg) ",
                                                   "(ton)", "(lb) ", "(Kip)"};
constexpr std::array<std::string_view, 4> LENGTH = {"cm  ", " m  ", "in  ", "ft  "};
constexpr std::array<std::string_view, 4> TIME = {"(sec)", "(min)", "(hr) ", "(day)"};
constexpr std::array<std::string_view, 4> ENERGY = {"(Joule)", "(erg)  ", "(lb-in)", "(Btu)  "};
constexpr std::array<std::string_view, 4> TEMPERATURE = {"(o C)", "(o F)", "(o R)", "(K)  "};
constexpr std::array<std::string_view, 4> HEAD = {" cm  ", "  m  ", " in  ", " ft  "};

// By force and length.
constexpr std::array<std::array<std::string_view, 4>, 7> STRESS = {{
    {"(N/cm2)  ", "(Pa)     ", "(N/in2)  ", "(N/ft2)  "},
    {"(KN/cm2) ", "(KPa)    ", "(KN/in2) ", "(KN/ft2) "},
    {"(MN/cm2) ", "(MPa)    ", "(MN/in2) ", "(MN/ft2) "},
    {"(Kg/cm2) ", "(Kg/m2)  ", "(Kg/in2) ", "(Kg/ft2) "},
    {"(ton/cm2)", "(ton/m2) ", "(ton/in2)", "(ton/ft2)"},
    {"(lb/cm2) ", "(lb/m2)  ", "(psi)    ", "(psf)    "},
    {"(Kip/cm2)", "(Kip/m2) ", "(Ksi)    ", "(Ksf)    "},
}};

// --- codes ---------------------------------------------------------------------------------------

// The place in a table that a code names, from 0; the table's size where it names none. Codes are reals and
// must be whole.
template <std::size_t N>
std::size_t place_in(const std::array<std::string_view, N>& /*table*/, float code) {
    for (std::size_t i = 0; i < N; ++i)
        if (code == static_cast<float>(i + 1))
            return i;
    return N;
}

template <std::size_t N>
void set_label(std::string_view& label, const std::array<std::string_view, N>& table, float code) {
    if (const std::size_t place = place_in(table, code); place < N)
        label = table[place];
}

// A label without its brackets and the blanks round it.
std::string_view word_of(std::string_view label) {
    const std::size_t first = label.find_first_not_of(" (");
    return label.substr(first, label.find_last_not_of(" )") + 1 - first);
}

std::string compound(std::string_view a, char between, std::string_view b, std::string_view end,
                     std::size_t width) {
    std::string label = "(";
    label += word_of(a);
    label += between;
    label += word_of(b);
    label += end;
    label.resize(width, ' ');
    return label;
}

void set_compound_labels(UnitLabels& units, float force_code, float length_code, float time_code) {
    const std::size_t force = place_in(FORCE, force_code);
    const std::size_t length = place_in(LENGTH, length_code);
    const std::size_t time = place_in(TIME, time_code);
    if (length == LENGTH.size())
        return;
    if (force < FORCE.size()) {
        units.stress = STRESS[force][length];
        units.moment = compound(FORCE[force], '-', LENGTH[length], ")", units.moment.size());
    }
    if (time < TIME.size()) {
        units.velocity = compound(LENGTH[length], '/', TIME[time], ")", units.velocity.size());
        units.acceleration = compound(LENGTH[length], '/', TIME[time], "2)", units.acceleration.size());
    }
}

}  // namespace

void read_unit_table(Channels& channels, LayoutKind kind, UnitLabels& units) {
    constexpr int lines_to_title = 4, lines_to_codes = 10, title_columns = 80;
    Channel& file = channels.open(CHANNEL_GROUP, UNIT_FILE, OpenStatus::old);
    file.skip_lines(lines_to_title, "the comment lines in front of the project's title");
    units.title = file.read_line("the project's title").first(title_columns);
    file.skip_lines(lines_to_codes, "the comment lines in front of the unit codes");
    float force_code = 0.0F, length_code = 0.0F, time_code = 0.0F, energy_code = 0.0F,
          temperature_code = 0.0F;
    read_free(file, "the unit codes (IFORCE, ILENGTH, ITIME, IENERGY, ITEMP)", force_code, length_code,
              time_code, energy_code, temperature_code);
    channels.close(CHANNEL_GROUP);
    set_label(units.force, FORCE, force_code);
    set_label(units.length, LENGTH, length_code);
    set_label(units.time, TIME, time_code);
    set_label(units.energy, ENERGY, energy_code);
    if (kind == LayoutKind::temperature)
        set_label(units.temperature, TEMPERATURE, temperature_code);
    else if (kind == LayoutKind::head)
        set_label(units.temperature, HEAD, temperature_code);
    set_compound_labels(units, force_code, length_code, time_code);
}

}  // namespace brelan
