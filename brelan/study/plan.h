// The cases of a study: their count, and the values of each.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "study/study_file.h"

namespace brelan::tool {

class Plan {
public:
    // Throws Failure where there would be too many.
    explicit Plan(const StudyFile& study);

    std::size_t count() const { return count_; }

    // Of case `number`, from 1, in the order of the parameters. In a grid the last parameter changes first.
    NamedValues values(std::size_t number) const;

private:
    std::vector<Parameter> parameters_;
    Method method_;
    std::size_t count_ = 1;
    std::vector<std::vector<double>> samples_;  // of each parameter, from 0 to below 1, where they are drawn
};

}  // namespace brelan::tool
