#include "run/flush_to_zero.h"

#include <cstdint>

#if defined(__x86_64__) || defined(__SSE__) || defined(_M_X64)
#include <xmmintrin.h>
#endif

namespace brelan {

void flush_to_zero() {
#if defined(__x86_64__) || defined(__SSE__) || defined(_M_X64)
    constexpr unsigned int flush_results = 0x8000;
    _mm_setcsr(_mm_getcsr() | flush_results);
#elif defined(__aarch64__) && defined(__GNUC__)
    constexpr std::uint64_t flush = std::uint64_t{1} << 24;
    std::uint64_t control = 0;
    asm volatile("mrs %0, fpcr" : "=r"(control));
    asm volatile("msr fpcr, %0" : : "r"(control | flush));
#else
#error "flush-to-zero is not known for this processor: results would depend on the machine"
#endif
}

}  // namespace brelan
