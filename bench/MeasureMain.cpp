// Runs commands in turn, again and again, and prints what each took:
//
//     bench_measure ROUNDS -- COMMAND [WORD]... [-- COMMAND [WORD]...]...
//
//     0.412305 0.398114 5120            a line for each command: median of its wall time, median of
//     0.713330 0.709221 2304            its CPU time (both in seconds), its peak memory in KiB
//
// Taking turns, all commands see the same moods of the machine. A command with the word "prepare:"
// in front is run in its place but not measured. What commands print to standard output is dropped.

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iostream>
#include <optional>
#include <span>
#include <spawn.h>
#include <string_view>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <type_traits>
#include <unistd.h>
#include <vector>

namespace {

struct Measurement {
    double wall = 0; ///< Seconds.
    double cpu = 0;  ///< Seconds, user and system.
    long peak = 0;   ///< KiB.
};

struct Command {
    std::vector<char*> words; ///< With a null pointer at the end.
    bool isMeasured = true;
    std::vector<Measurement> measurements;
};

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// Standard output goes to a file without a name: grep notices /dev/null and stops at the first
/// match.
class DroppedOutput {
public:
    DroppedOutput() : file_(std::tmpfile()) {
        posix_spawn_file_actions_init(&actions_);
        if (file_ != nullptr) {
            posix_spawn_file_actions_adddup2(&actions_, fileno(file_), STDOUT_FILENO);
        }
    }
    ~DroppedOutput() {
        posix_spawn_file_actions_destroy(&actions_);
        if (file_ != nullptr) {
            std::fclose(file_);
        }
    }
    DroppedOutput(const DroppedOutput&) = delete;
    DroppedOutput& operator=(const DroppedOutput&) = delete;

    const posix_spawn_file_actions_t& actions() const { return actions_; }

private:
    std::FILE* file_;
    posix_spawn_file_actions_t actions_{};
};

/// Nothing when the command could not be run or did not end well.
std::optional<Measurement> run(const Command& command, const DroppedOutput& output) {
    const auto start = std::chrono::steady_clock::now();
    pid_t process = 0;
    if (posix_spawnp(&process, command.words[0], &output.actions(), nullptr, command.words.data(),
                     environ) != 0) {
        return std::nullopt;
    }
    int status = 0;
    rusage usage{};
    if (wait4(process, &status, 0, &usage) != process || !WIFEXITED(status) ||
        WEXITSTATUS(status) != 0) {
        return std::nullopt;
    }
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
    return Measurement{.wall = wall.count(),
                       .cpu = seconds(usage.ru_utime) + seconds(usage.ru_stime),
                       .peak = usage.ru_maxrss};
}

/// valueOf: a member of a measurement.
template <typename Member>
auto median(std::span<const Measurement> measurements, Member valueOf) {
    std::vector<std::decay_t<std::invoke_result_t<Member, const Measurement&>>> values;
    for (const Measurement& measurement : measurements) {
        values.push_back(std::invoke(valueOf, measurement));
    }
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// The commands between the words "--".
std::vector<Command> commandsIn(std::span<char*> words) {
    std::vector<Command> commands;
    for (char* const word : words) {
        const std::string_view text = word;
        if (text == "--") {
            commands.emplace_back();
        } else if (commands.empty()) {
            return {};
        } else if (text == "prepare:" && commands.back().words.empty()) {
            commands.back().isMeasured = false;
        } else {
            commands.back().words.push_back(word);
        }
    }
    for (Command& command : commands) {
        if (command.words.empty()) {
            return {};
        }
        command.words.push_back(nullptr);
    }
    return commands;
}

bool runAll(std::vector<Command>& commands, int rounds) {
    const DroppedOutput output;
    for (int round = 0; round < rounds; ++round) {
        for (Command& command : commands) {
            const std::optional<Measurement> measurement = run(command, output);
            if (!measurement) {
                std::cerr << "bench_measure: " << command.words[0] << " failed\n";
                return false;
            }
            command.measurements.push_back(*measurement);
        }
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    const std::span words(argv, static_cast<std::size_t>(argc));
    int rounds = 0;
    std::vector<Command> commands;
    if (words.size() > 2) {
        std::from_chars(words[1], words[1] + std::strlen(words[1]), rounds);
        commands = commandsIn(words.subspan(2));
    }
    if (rounds < 1 || commands.empty()) {
        std::cerr << "usage: bench_measure ROUNDS -- COMMAND [WORD]... [-- COMMAND ...]...\n";
        return EXIT_FAILURE;
    }
    if (!runAll(commands, rounds)) {
        return EXIT_FAILURE;
    }
    for (const Command& command : commands) {
        if (command.isMeasured) {
            std::printf("%.6f %.6f %ld\n", median(command.measurements, &Measurement::wall),
                        median(command.measurements, &Measurement::cpu),
                        median(command.measurements, &Measurement::peak));
        }
    }
    return EXIT_SUCCESS;
}
