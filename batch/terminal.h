// The terminal that the batch program is started in.
#pragma once

#include "text/console.h"

namespace brelan {

class Terminal : public Console {
public:
    void write(std::string_view text) override;
    bool read(std::string& line) override;
};

}  // namespace brelan
