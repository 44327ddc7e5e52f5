// What a person, or a program, wants to know of a run.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "analysis/mesh_lists.h"
#include "commands/batch/edition.h"
#include "mesh/cut_method.h"
#include "model/deck.h"

namespace brelan::tool {

struct RunReport {
    std::filesystem::path deck, project;
    bool cuts = false;  // along groups, or a dam, by the rules alone: the sound cut is another way
    Edition edition;
    CutMethod cut = CutMethod::by_rules;  // of the mesh that stands there
    std::string cut_reason;               // why, where a choice was made; else empty
    double seconds = 0.0;
    int decks = 0;                            // that the run has begun
    std::string pass;                         // the last one; empty before the first
    int status = 0;                           // exit status of the batch program
    std::string message, details;             // when it is not 0: in one line, and the lines below it
    std::filesystem::path result;             // empty: none is known, or the run has not come to it
    std::vector<std::filesystem::path> also;  // written besides it
    std::vector<std::filesystem::path> deleted;
    std::vector<std::string> remarks;  // each as it stands behind "remark"
    MaterialNames names;               // that the deck gives
};

// A mesh that has come out of a deck.
struct MeshOfRun {
    const MeshLists& mesh;
    std::filesystem::path file;  // where it lies; empty: nowhere
    std::filesystem::path deck;  // of which the sound cut may make another mesh; empty: it cuts nothing
    std::vector<std::string> remarks = {};
    CutMethod cut = CutMethod::by_rules;  // the sound cut tells its smallest angle
};

// True for a deck whose mesh another cut would make another.
bool has_cut(const NotedDeck& deck);

// Counts, materials, area, smallest angle and soundness, a line each.
std::string mesh_summary(const MeshOfRun& made);

// Of a run that has finished.
std::string run_summary(const RunReport& report);

// The mesh that a run has left, with the names that its deck gives. Throws Failure or RunEnd.
MeshLists mesh_of(const RunReport& report);

// As an object, whatever the end.
std::string run_json(const RunReport& report);  // commands/run_json.cpp

}  // namespace brelan::tool
