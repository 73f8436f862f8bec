#include "query/Stops.h"

#include <algorithm>
#include <tuple>

namespace consolidator {

namespace {

bool isPathOrItsEnd(std::string_view file, std::string_view path) {
    return path == file || (path.size() > file.size() && path.ends_with(file) &&
                            path[path.size() - file.size() - 1] == '/');
}

template <typename Visit>
void forEachStop(std::span<const Kernel> kernels, Visit visit) {
    for (const Kernel& kernel : kernels) {
        for (const BreakableCondition& condition : kernel.breakableConditions()) {
            if (condition.kind == BreakableCondition::FileLine) {
                visit(Stop{&kernel, &condition});
            }
        }
    }
}

} // namespace

std::string Stop::conditionFor(std::size_t instance) const {
    return consolidator::conditionFor(*kernel, *condition, instance);
}

std::string conditionFor(const Kernel& kernel, const BreakableCondition& condition,
                         std::size_t instance) {
    constexpr std::string_view placeholder = "$i";
    const std::string path = conditionPath(kernel, instance);
    const std::string_view text = condition.condition;
    std::string result;
    std::size_t from = 0;
    for (std::size_t at = 0; (at = text.find(placeholder, from)) != text.npos;) {
        result += text.substr(from, at - from);
        result += path;
        from = at + placeholder.size();
    }
    result += text.substr(from);
    return result;
}

std::string conditionPath(const Kernel& kernel, std::size_t instance) {
    std::string path = kernel.instancePaths().at(instance);
    path += kernel.instanceSuffix();
    return path;
}

std::vector<Stop> stopsIn(std::span<const Kernel> kernels, std::string_view file) {
    std::vector<Stop> stops;
    forEachStop(kernels, [&](const Stop& stop) {
        if (isPathOrItsEnd(file, stop.file())) {
            stops.push_back(stop);
        }
    });
    std::ranges::stable_sort(stops, [](const Stop& left, const Stop& right) {
        return std::tie(left.file(), left.condition->line) <
               std::tie(right.file(), right.condition->line);
    });
    return stops;
}

std::vector<Stop> allStops(std::span<const Kernel> kernels) {
    std::vector<Stop> stops;
    forEachStop(kernels, [&stops](const Stop& stop) { stops.push_back(stop); });
    return stops;
}

} // namespace consolidator
