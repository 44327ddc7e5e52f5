#include "output/main_file.h"

#include "mesh/edition.h"
#include "mesh/result_names.h"
#include "output/blocks.h"
#include "text/channel_numbers.h"
#include "text/layout.h"

namespace brelan {

namespace {

constexpr Layout<"(4(2X,I5))"> VALUES;
constexpr Layout<"(1X,1(1X,I6),2(2X,I5))"> LINE_COUNT;

// Columns that edition 1 has more: the user fills them in.
constexpr std::int32_t MATERIAL_MODEL = 0, WATER_WEIGHT = 0;

bool is_first_edition(const Settings& settings) {
    return settings.edition == 1;
}

void write_material_card(const Settings& settings, Channel& file, const Activity& activity) {
    file.write_line("* Continuum Materials To Be Added");
    if (is_first_edition(settings))
        write_lines(file, {"* Card 5.3.2.1", "* MATNO  MODEL  GAMAW  MATNP"});
    else
        write_lines(file, {"* Card 5.3.2.0", "* MATNO  MATNP"});
    MaterialNumber number = activity.first_new;
    for (const NewMaterial& material : activity.materials) {
        if (is_first_edition(settings))
            VALUES.write(file, number.value, MATERIAL_MODEL, WATER_WEIGHT, material.old.value);
        else
            VALUES.write_front(file, number.value, material.old.value);
        ++number;
    }
    file.write_line("*");
}

void write_material_activity(const Settings& settings, Channel& file, const Activity& activity) {
    file.write_line("* Continuum Element");
    file.write_line(is_first_edition(settings) ? "*   MAT    NAC   NDAC    MCH" : "*   MAT    NAC   NDAC");
    MaterialNumber number = activity.first_new;
    for (const NewMaterial& material : activity.materials) {
        const auto [NAC, NDAC] = material.activity;
        if (is_first_edition(settings))
            VALUES.write(file, number.value, NAC, NDAC, ACTIVITY_CODE);
        else
            VALUES.write_front(file, number.value, NAC, NDAC);
        ++number;
    }
}

}  // namespace

void write_materials(Channels& channels, const Settings& settings, const Activity& activity) {
    // Beams and trusses keep their materials.
    constexpr std::int32_t beam_count = 0, truss_count = 0;
    const auto continuum_count = static_cast<std::int32_t>(activity.materials.size());
    Channel& file = channels.open(CHANNEL_MESH_COPY, MATERIAL_MAIN_FILE, OpenStatus::side_result);
    if (continuum_count > 0)
        write_material_card(settings, file, activity);
    write_lines(file, {"* Main File: Material Activity", "* Card 8.1", "*  NFAD  MCFAD  MBFAD  MTFAD"});
    VALUES.write(file, continuum_count + beam_count + truss_count, continuum_count, beam_count, truss_count);
    write_lines(file, {"* Card 8.2", "* KSTEP ", "      1 "});
    if (continuum_count > 0)
        write_material_activity(settings, file, activity);
    file.write_line("* End Of Data ");
    channels.close(CHANNEL_MESH_COPY);
}

void write_group_activity(Channels& channels, LayoutKind kind, const GroupCards& group_cards,
                          const Activity& activity, const std::vector<GroupMembers>& members) {
    Channel& file = channels.open(CHANNEL_GROUP, GROUP_MAIN_FILE, OpenStatus::side_result);
    file.set_write_only(true);
    write_banner(file, "*         MAIN FILE: ELEMENT ACTIVITY            *",
                 "*         (CARD 8)                               *");
    write_lines(file, {"* Card 8.1", "*   NFAD"});
    LINE_COUNT.write_front(file, activity.line_count);
    write_lines(file, {"*", "* Card 8.2", "*  KSTEP", "       1", "*"});
    write_activity(channels, kind, group_cards, file, members);
    channels.close(CHANNEL_GROUP);
}

}  // namespace brelan
