#include "tests/support/InspectRun.h"

#include "inspect/Inspector.h"
#include "tests/support/ArgumentVector.h"

#include <sstream>

namespace consolidator::test {

namespace {

CommandResult run(const std::vector<std::string>& arguments, bool colour) {
    std::vector<std::string> words{"consolidator-inspect"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const ArgumentVector argv(words);
    std::ostringstream out;
    std::ostringstream err;
    inspect::Console console{.out = out, .err = err, .colour = colour};
    const int status = inspect::inspect(argv.count(), argv.pointers(), console);
    return {status, out.str(), err.str()};
}

} // namespace

CommandResult inspectRun(const std::vector<std::string>& arguments) {
    return run(arguments, false);
}

CommandResult inspectRunInColour(const std::vector<std::string>& arguments) {
    return run(arguments, true);
}

CommandResult runInspector(const std::string& directory, const std::vector<std::string>& arguments,
                           const Preparation& prepare) {
    std::vector<std::string> words{INSPECTOR_PATH};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return runProgram(directory, INSPECTOR_PATH, words, prepare);
}

} // namespace consolidator::test
