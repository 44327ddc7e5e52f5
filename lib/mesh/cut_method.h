// How the elements that a drawn line crosses are made to conform to it.
#pragma once

namespace brelan {

enum class CutMethod {
    by_rules,  // moved nodes and split patterns: what existing decks count on
    sound,     // elements that a solver takes, or a message that says where none can be made
};

}  // namespace brelan
