// Settings of a run, read once at start-up. Who fills them: run/start_up.cpp. Every stage may read them.
#pragma once

#include <cstdint>

namespace brelan {

// The kind of solver that the mesh is for. It decides the record layout of nodes and elements throughout;
// switches over it take the kinds in this order.
enum class LayoutKind {
    coupled,       // skeleton and fluid: IPROGM 2, 3, 4, 11, 12
    temperature,   // IPROGM 5, 6
    head,          // IPROGM 9, 10
    displacement,  // IPROGM 1, 7, 8 and any other
};

inline std::int32_t IPROGM = 1;  // edition number of the solver
inline std::int32_t ISKEL = 0;   // 1 for the coupled editions
inline std::int32_t IDEBUG = 0;  // the trace is on when greater than 0
inline float DBGPASS = 0.0F;     // last pass to be traced

// 1 for an edition of the coupled kind, else 0.
constexpr std::int32_t skeleton_switch(std::int32_t edition) {
    return edition == 2 || edition == 3 || edition == 4 || edition == 11 || edition == 12 ? 1 : 0;
}

constexpr LayoutKind kind_of(std::int32_t edition) {
    if (skeleton_switch(edition) == 1)
        return LayoutKind::coupled;
    if (edition == 5 || edition == 6)
        return LayoutKind::temperature;
    if (edition == 9 || edition == 10)
        return LayoutKind::head;
    return LayoutKind::displacement;
}

// The kind of the running edition.
inline LayoutKind KIND() {
    return kind_of(run.settings.edition);
}

}  // namespace brelan
