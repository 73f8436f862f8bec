// Running an executable as its user does.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <sys/resource.h>
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

/// What a process does to itself just before it becomes the program: standard streams and folder
/// are set by then. Ends the process if it cannot be done.
using Preparation = std::function<void()>;

/// Closes these descriptors.
Preparation closed(std::vector<int> descriptors);

/// Opens the file for writing on this descriptor.
Preparation redirected(int descriptor, std::string path);

/// Makes the descriptor a pipe that nobody reads.
Preparation unread(int descriptor);

/// Sets both limits of a resource, for example RLIMIT_FSIZE.
Preparation limited(__rlimit_resource resource, std::uint64_t most);

/// Becomes a user without any rights of its own, if it is root.
Preparation withoutPrivileges();

/// Runs `program` (the path of one that the build has made) with `words` as its argument vector,
/// the first of which it sees as its name, in the folder `directory`, waits for it and collects its
/// streams. Standard input is empty. A run that hangs is ended after some minutes. The status is
/// 127 if the program cannot be started.
CommandResult runProgram(const std::string& directory, const std::string& program,
                         std::vector<std::string> words, const Preparation& prepare = {});

/// The same for the built consolidator: `arguments` come after its name.
CommandResult runConsolidator(const std::string& directory,
                              const std::vector<std::string>& arguments,
                              const Preparation& prepare = {});

/// The path of the built consolidator, as its usage text shows it.
std::string consolidatorPath();

} // namespace consolidator::test
