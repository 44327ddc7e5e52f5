#include "input.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "deck/deck_checker.h"
#include "deck/deck_tables.h"
#include "text/channels.h"
#include "text/console.h"
#include "text/run_end.h"

namespace brelan::fuzz {

std::int32_t Header::edition() const {
    switch (kind) {
        case LayoutKind::coupled:
            return 2;
        case LayoutKind::temperature:
            return 5;
        case LayoutKind::head:
            return 9;
        default:
            return 1;
    }
}

Header take_header(std::string_view& input) {
    if (input.empty())
        return {};
    const auto bits = static_cast<unsigned char>(input.front());
    input.remove_prefix(1);
    return {static_cast<LayoutKind>(bits & 3U), (bits & 4U) != 0};
}

std::vector<std::string> parts_of(std::string_view input, std::size_t count) {
    std::vector<std::string> parts(count);
    for (std::size_t k = 0; k < count && !input.empty(); ++k) {
        const std::size_t end = k + 1 < count ? input.find('\0') : input.size();
        parts[k] = input.substr(0, end);
        input.remove_prefix(std::min(input.size(), parts[k].size() + 1));
    }
    return parts;
}

std::unique_ptr<Deck> checked_deck(std::string_view text, LayoutKind kind) {
    auto files = std::make_shared<MemoryFiles>();
    files->put("..\\deck.dat", text);
    Channels channels(files);
    KeptConsole console;
    auto deck = std::make_unique<Deck>();
    try {
        CardMemory memory;
        check_deck(channels, kind, memory, *deck, console, TextLine("..\\deck.dat"), "BRELAN.TMP");
        channels.close_all();
        return deck;
    } catch (const RunEnd&) {
        channels.close_all();
        return nullptr;
    }
}

void require(bool holds, const std::string& law) {
    if (!holds)
        throw std::logic_error(law);
}

}  // namespace brelan::fuzz
