// The entry of a fuzzer; FUZZ_TARGET is the target's name.
#include <cstddef>
#include <cstdint>

#include "targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    brelan::fuzz::FUZZ_TARGET({reinterpret_cast<const char*>(bytes), size});
    return 0;
}
