// Running an executable as its user does.
#pragma once

#include <string>
#include <vector>

namespace consolidator::test {

/// What a run left behind.
struct CommandResult {
    int status = 0; ///< Exit status, or the negated signal number that ended the run.
    std::string out;
    std::string err;

    bool operator==(const CommandResult&) const = default;
};

/// How a result shows in a failed test.
void PrintTo(const CommandResult& result, std::ostream* out);

/// Runs `program` (a path) with `words` as its argument vector, the first of which it sees as its
/// name, in the folder `directory`, waits for it and collects its streams. Standard input is empty.
/// A run that hangs is ended after some minutes.
CommandResult runProgram(const std::string& directory, const std::string& program,
                         std::vector<std::string> words);

/// The same, for a program that is started by its path: words[0].
CommandResult runCommand(const std::string& directory, const std::vector<std::string>& words);

/// The same for the built consolidator: `arguments` come after its name.
CommandResult runConsolidator(const std::string& directory,
                              const std::vector<std::string>& arguments);

/// The path of the built consolidator, as its usage text shows it.
std::string consolidatorPath();

} // namespace consolidator::test
