#include "deck/deck_checker.h"

#include "deck/card_source.h"
#include "deck/card_stream.h"
#include "deck/deck_walk.h"
#include "deck/error_report.h"
#include "text/channel_numbers.h"
#include "text/run_end.h"

namespace brelan {

namespace {

// The checker's own use of the channels while it runs.
constexpr int CHANNEL_STRIPPED = CHANNEL_MESH_A;
constexpr int CHANNEL_NORMALISED = CHANNEL_MESH_B;
constexpr int CHANNEL_LISTING = CHANNEL_WORK;

// Tells the plot tool the name of the result mesh.
class PlotToolNotes : public DeckNotes {
public:
    explicit PlotToolNotes(Channels& channels) : channels_(channels) {}

    void result(const TextLine& name) override {
        channels_.open(CHANNEL_DATA, "C:\\Vork\\Qx\\Qxdata\\FnPlot2D.dat", OpenStatus::setting)
            .write_columns(name.view());
        channels_.close(CHANNEL_DATA);
    }

private:
    Channels& channels_;
};

}  // namespace

void check_deck(Channels& channels, LayoutKind kind, CardMemory& memory, Deck& deck, Console& console,
                const TextLine& deck_name, std::string_view normalised_name, const MadeCards* made) {
    channels.open(CHANNEL_DECK, deck_name.view(), OpenStatus::old);
    Channel& stripped = channels.open(CHANNEL_STRIPPED, "TT55.TMP", OpenStatus::work);
    Channel& normalised = channels.open(CHANNEL_NORMALISED, normalised_name, OpenStatus::work);
    channels.open(CHANNEL_LISTING, "T7.TMP", OpenStatus::work);
    strip_deck(channels, CHANNEL_DECK, CHANNEL_STRIPPED);
    normalised.follow(stripped);

    PlotToolNotes notes(channels);
    DeckCards cards(stripped, normalised, kind, memory, deck, notes);
    if (made != nullptr && made->stand)
        cards.take_made(*made);
    try {
        read_cards(cards, deck, notes);
    } catch (const WrongCount& card) {
        report_card(channels, console, card);
    }
    if (deck.is_dam())
        return;
    for (const int number : {CHANNEL_DECK, CHANNEL_STRIPPED, CHANNEL_NORMALISED, CHANNEL_LISTING})
        channels.close(number);
}

void drop_checked_deck(Channels& channels) {
    channels.close(CHANNEL_STRIPPED, CloseAction::remove);
    channels.close(CHANNEL_NORMALISED, CloseAction::remove);
}

}  // namespace brelan
