#include "mesh/table.h"

#include <string>

#include "text/run_end.h"

namespace brelan {

void fail_outside_table(std::string_view table, std::int32_t number, std::int32_t last) {
    fail("table " + std::string(table) + ": number " + std::to_string(number) + " is outside 1 to " +
         std::to_string(last));
}

}  // namespace brelan
