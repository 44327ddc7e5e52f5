// What a person is told when the batch program has not finished.
#pragma once

#include <filesystem>
#include <string>

#include "commands/batch/batch_program.h"
#include "model/deck.h"

namespace brelan::tool {

struct FailedRun {
    const NotedDeck& deck;
    std::filesystem::path project, working_directory;
    std::string name_in_messages;  // of the deck, by which the program knows it
    std::string pass;              // the last one of the trace; empty when there is none
    BatchResult result;
};

// The message in one line, its files named as the person knows them.
std::string failure_message(const FailedRun& run);

// The lines below it: the card or mesh line in question, or what else there is to know; each with its end.
std::string failure_details(const FailedRun& run);

}  // namespace brelan::tool
