#include "text/termination.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <exception>
#include <new>
#include <stdexcept>

#include "text/run_end.h"

namespace brelan {
namespace {

constexpr int OF_MEMORY = 3, OF_FAULT = 4;

void tell() {
    std::_Exit(termination_by() == Termination::no_memory ? OF_MEMORY : OF_FAULT);
}

void out_of(void (*thrower)()) noexcept {
    thrower();
}

void terminated_by(void (*thrower)()) {
    std::set_terminate(tell);
    out_of(thrower);
}

TEST(TerminationDeath, WantOfMemoryIsToldWhereNothingMayBeThrown) {
    EXPECT_EXIT(terminated_by([] { throw std::bad_alloc(); }), testing::ExitedWithCode(OF_MEMORY), "");
    EXPECT_EXIT(terminated_by([] { throw std::bad_array_new_length(); }), testing::ExitedWithCode(OF_MEMORY),
                "");
}

TEST(TerminationDeath, WithoutRoomForAnExceptionThereIsNone) {
    EXPECT_EXIT(terminated_by([] { std::terminate(); }), testing::ExitedWithCode(OF_MEMORY), "");
}

TEST(TerminationDeath, AnythingElseIsAFaultOfTheProgram) {
    EXPECT_EXIT(terminated_by([] { throw std::logic_error("a fault"); }), testing::ExitedWithCode(OF_FAULT),
                "");
    EXPECT_EXIT(terminated_by([] { throw RunEnd{}; }), testing::ExitedWithCode(OF_FAULT), "");
    EXPECT_EXIT(terminated_by([] { throw 1; }), testing::ExitedWithCode(OF_FAULT), "");
}

// Where the exception is still at hand the answer is given without an end.
TEST(Termination, IsToldByTheExceptionThatIsBeingHandled) {
    EXPECT_EQ(termination_by(), Termination::no_memory);
    try {
        throw std::bad_alloc();
    } catch (...) {
        EXPECT_EQ(termination_by(), Termination::no_memory);
    }
    try {
        throw std::logic_error("a fault");
    } catch (...) {
        EXPECT_EQ(termination_by(), Termination::fault);
    }
}

}  // namespace
}  // namespace brelan
