#include "query/NamePattern.h"

#include "query/KernelView.h"
#include "shared/Printable.h"

#include <re2/re2.h>

namespace consolidator {

namespace {

std::unique_ptr<re2::RE2> compiled(const std::string& expression) {
    re2::RE2::Options options;
    options.set_log_errors(false);
    options.set_dot_nl(true); // a name may hold a newline, and is one text all the same
    return std::make_unique<re2::RE2>(expression, options);
}

} // namespace

NamePattern::NamePattern(const std::string& pattern, Kind kind)
    : hasSlash_(pattern.find('/') != std::string::npos),
      matcher_(kind == Kind::Glob ? Matcher(Glob(pattern)) : Matcher(compiled(pattern))) {}

NamePattern::~NamePattern() = default;

std::string NamePattern::error() const {
    if (const Glob* glob = std::get_if<Glob>(&matcher_)) {
        return glob->error();
    }
    // It quotes the expression.
    return printable(std::get<std::unique_ptr<re2::RE2>>(matcher_)->error());
}

bool NamePattern::matchesName(std::string_view name) const {
    if (const Glob* glob = std::get_if<Glob>(&matcher_)) {
        return glob->matches(name);
    }
    const re2::StringPiece text(name.data(), name.size());
    return re2::RE2::PartialMatch(text, *std::get<std::unique_ptr<re2::RE2>>(matcher_));
}

bool NamePattern::matchesNet(std::string_view net) const {
    if (matchesName(net)) {
        return true;
    }
    if (!std::holds_alternative<Glob>(matcher_)) {
        return false;
    }
    return (net.starts_with('/') && matchesName(net.substr(1))) ||
           (!hasSlash_ && matchesName(lastComponent(net)));
}

} // namespace consolidator
