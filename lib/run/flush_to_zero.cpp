#include "run/flush_to_zero.h"

#if defined(__x86_64__) || defined(__SSE__) || defined(_M_X64)
#include <xmmintrin.h>
#endif

namespace brelan {

namespace {

#if defined(__x86_64__) || defined(__SSE__) || defined(_M_X64)

constexpr std::uint64_t FLUSH_RESULTS = 0x8000;

std::uint64_t mode() {
    return _mm_getcsr();
}
void set_mode(std::uint64_t mode) {
    _mm_setcsr(static_cast<unsigned int>(mode));
}

#elif defined(__aarch64__) && defined(__GNUC__)

constexpr std::uint64_t FLUSH_RESULTS = std::uint64_t{1} << 24;

std::uint64_t mode() {
    std::uint64_t control = 0;
    asm volatile("mrs %0, fpcr" : "=r"(control));
    return control;
}
void set_mode(std::uint64_t mode) {
    asm volatile("msr fpcr, %0" : : "r"(mode));
}

#else
#error "flush-to-zero is not known for this processor: results would depend on the machine"
#endif

}  // namespace

FlushToZero::FlushToZero() : before_(mode()) {
    set_mode(before_ | FLUSH_RESULTS);
}

// Flags that the run has raised stay with it.
FlushToZero::~FlushToZero() {
    set_mode(before_);
}

}  // namespace brelan
