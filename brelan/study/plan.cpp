#include "study/plan.h"

#include <fmt/core.h>

#include <algorithm>

#include "cli/exit_status.h"
#include "study/samples.h"

namespace brelan::tool {

namespace {

StudyValue drawn_value(const Parameter& parameter, double share) {
    if (parameter.is_interval())
        return parameter.from + (parameter.to - parameter.from) * share;
    const std::size_t size = parameter.values.size();
    return parameter.values[std::min(static_cast<std::size_t>(share * static_cast<double>(size)), size - 1)];
}

}  // namespace

Plan::Plan(const StudyFile& study) : parameters_(study.parameters), method_(study.method) {
    switch (method_) {
        case Method::grid:
            for (const Parameter& parameter : parameters_) {
                count_ *= parameter.values.size();
                if (count_ > MOST_CASES)
                    throw Failure(
                        fmt::format("{}: expected at most {} cases", study.file.string(), MOST_CASES));
            }
            break;
        case Method::list:
            for (const Parameter& parameter : parameters_)
                count_ = std::max(count_, parameter.values.size());
            break;
        case Method::random:
        case Method::latin:
            count_ = study.count;
            for (std::size_t k = 0; k < parameters_.size(); ++k)
                samples_.push_back(samples(method_ == Method::latin ? Sampling::latin : Sampling::random,
                                           count_, study.seed, k));
            break;
    }
}

NamedValues Plan::values(std::size_t number) const {
    NamedValues all;
    all.reserve(parameters_.size());
    std::size_t in_row = 1;  // cases over which a value of the parameter stays
    for (const Parameter& parameter : parameters_)
        in_row *= method_ == Method::grid ? parameter.values.size() : 1;
    for (std::size_t k = 0; k < parameters_.size(); ++k) {
        const Parameter& parameter = parameters_[k];
        if (method_ == Method::grid) {
            in_row /= parameter.values.size();
            all.emplace_back(parameter.name,
                             parameter.values[(number - 1) / in_row % parameter.values.size()]);
        } else if (method_ == Method::list) {
            all.emplace_back(parameter.name, parameter.values[parameter.values.size() == 1 ? 0 : number - 1]);
        } else {
            all.emplace_back(parameter.name, drawn_value(parameter, samples_[k][number - 1]));
        }
    }
    return all;
}

}  // namespace brelan::tool
