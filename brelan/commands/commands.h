// The commands of brelan with what the command line says for them. Each returns its exit status, or throws
// Failure or RunEnd.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/context.h"
#include "commands/options.h"

namespace brelan::tool {

// Which mesh a run leaves; `automatic` takes the sound cut where the mesh by the rules is unsound.
enum class Cut { rules, sound, automatic };

struct RunOptions {
    std::string deck, project, data, program, work, apart;
    Cut cut = Cut::automatic;
    bool keep = false, json = false;
    EditionOptions edition;
};
int run(const RunOptions& options, const Context& context);

struct NewOptions {
    std::string kind_of_deck, directory, name, kind = "displacement";
    bool list = false, force = false;
};
int new_deck(const NewOptions& options, const Context& context);

struct CheckOptions {
    std::string deck, project, work;
    Cut cut = Cut::rules;
    bool json = false, strict = false, dry_run = false;
    EditionOptions edition;
};
int check(const CheckOptions& options, const Context& context);

inline constexpr std::size_t USUAL_LIST = 5;  // places of each finding of a mesh

// What is asked of a mesh in place of the report on it.
struct QueryOptions {
    std::vector<std::string> nodes_on;     // "x=20"
    std::vector<double> nodes_in;          // XMIN YMIN XMAX YMAX, or nothing
    std::vector<std::string> elements_of;  // "5", "beam 1", or a material's name
    bool border = false, pairs = false;
    std::string on;  // of the pairs
    bool card = false;

    bool any() const {
        return !nodes_on.empty() || !nodes_in.empty() || !elements_of.empty() || border || pairs;
    }
};

struct InfoOptions {
    std::vector<std::string> files;
    std::string deck;  // that made the meshes and tells when their elements come and go
    QueryOptions queries;
    bool json = false;
    std::size_t list = USUAL_LIST;
    double tolerance = 0.0;
    KindOption kind;
};
int info(const InfoOptions& options, const Context& context);

struct PlotOptions {
    std::string mesh, output, format, deck, numbers, title;
    std::vector<double> window;
    double width = 1000.0, scale = 2.0;
    std::optional<std::int32_t> step;  // of the analysis, by the deck
    bool no_codes = false, no_lines = false, no_legend = false, no_axes = false, faults = false;
    KindOption kind;
};
int plot(const PlotOptions& options, const Context& context);

// What belongs to .inp alone.
struct InpChoices {
    std::string joints;     // empty where none was chosen
    std::string materials;  // the table's file; empty for none
    std::optional<double> gravity;
    bool axisymmetric = false;
};

struct ConvertOptions {
    std::string from, to;
    std::string format;
    std::string deck;                // that made the mesh and tells when its elements come and go
    std::vector<std::string> codes;  // "left,right: IDX"
    bool bare = false, stages = false;
    std::vector<std::int32_t> cables;  // materials of trusses
    InpChoices inp;
    KindOption kind;
};
int convert(const ConvertOptions& options, const Context& context);

struct DiffOptions {
    std::string a, b;
    bool by_place = false, json = false;
    double tolerance = 0.0;
    std::size_t list = 10;
    KindOption kind;
};
int diff(const DiffOptions& options, const Context& context);

struct EditOptions {
    std::string deck, project;
    int port = 0;  // 0: one that is free
    Cut cut = Cut::automatic;
    bool no_browser = false, watch = false;
    EditionOptions edition;
};
int edit(const EditOptions& options, const Context& context);

struct WatchOptions {
    std::string deck, project;
    Cut cut = Cut::automatic;
    EditionOptions edition;
};
int watch(const WatchOptions& options, const Context& context);
struct StudyOptions {
    std::vector<std::string> words;  // "report" and the like, if any, and the study's file
    std::string output;              // of new, report and csv
    unsigned jobs = 0;               // 0: as many as there are cores
    std::string engine = "local";
    std::string partition, account;  // of Slurm
    std::vector<std::string> slurm;  // options of sbatch
    std::size_t chunk = 100;         // cases of a task
    std::string cases;               // file of numbers, of a task
    bool again = false, force = false, no_pictures = false;
};
int study(const StudyOptions& options, const Context& context);

}  // namespace brelan::tool
