#include "tests/support/Command.h"

#include "tests/support/ArgumentVector.h"
#include "tests/support/HowBuilt.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <grp.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace consolidator::test {

namespace {

/// A run that takes longer hangs, and is ended by a signal.
constexpr unsigned longestRunSeconds = 300;

constexpr int cannotStart = 127;

/// For use in a child.
void insist(bool done) {
    if (!done) {
        _exit(cannotStart);
    }
}

/// A nameless temporary file that collects one stream, so that no pipe can fill up.
class Capture {
public:
    Capture() : file_(std::tmpfile()) {
        if (file_ == nullptr) {
            throw std::runtime_error("cannot make a temporary file");
        }
        fcntl(descriptor(), F_SETFD, FD_CLOEXEC); // the program has what it needs as its stream
    }
    ~Capture() { std::fclose(file_); }
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;

    int descriptor() const { return fileno(file_); }

    std::string text() const {
        std::string result;
        std::array<char, 4096> block{};
        std::rewind(file_);
        for (std::size_t came = 0; (came = std::fread(block.data(), 1, block.size(), file_)) > 0;) {
            result.append(block.data(), came);
        }
        return result;
    }

private:
    std::FILE* file_;
};

[[noreturn]] void becomeCommand(const std::string& directory, const std::string& program,
                                const ArgumentVector& words, const Capture& out, const Capture& err,
                                const Preparation& prepare) {
    const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (chdir(directory.c_str()) == 0 && dup2(nothing, STDIN_FILENO) >= 0 &&
        dup2(out.descriptor(), STDOUT_FILENO) >= 0 && dup2(err.descriptor(), STDERR_FILENO) >= 0) {
        alarm(longestRunSeconds);
        if (prepare) {
            prepare();
        }
        execv(program.c_str(), words.pointers());
    }
    _exit(cannotStart);
}

} // namespace

void PrintTo(const CommandResult& result, std::ostream* out) {
    *out << "status " << result.status << "\nout: " << testing::PrintToString(result.out)
         << "\nerr: " << testing::PrintToString(result.err);
}

Preparation closed(std::vector<int> descriptors) {
    return [descriptors = std::move(descriptors)] {
        for (const int descriptor : descriptors) {
            close(descriptor);
        }
    };
}

Preparation redirected(int descriptor, std::string path) {
    return [descriptor, path = std::move(path)] {
        const int file = open(path.c_str(), O_WRONLY | O_CLOEXEC);
        insist(file >= 0 && dup2(file, descriptor) >= 0);
    };
}

Preparation unread(int descriptor) {
    return [descriptor] {
        std::array<int, 2> ends{};
        insist(pipe2(ends.data(), O_CLOEXEC) == 0 && dup2(ends[1], descriptor) >= 0);
        close(ends[0]);
    };
}

Preparation limited(__rlimit_resource resource, std::uint64_t most) {
    return [=] {
        const rlimit limit{most, most};
        insist(setrlimit(resource, &limit) == 0);
    };
}

Preparation withoutPrivileges() {
    return [] {
        constexpr uid_t nobody = 65534;
        insist(geteuid() != 0 ||
               (setgroups(0, nullptr) == 0 && setgid(nobody) == 0 && setuid(nobody) == 0));
    };
}

CommandResult runProgram(const std::string& directory, const std::string& program,
                         std::vector<std::string> words, const Preparation& prepare) {
    std::string started = program;
    if (emulated) {
        const std::string name = std::exchange(words.at(0), program);
        started = CONSOLIDATOR_EMULATOR;
        words.insert(words.begin(), {started, "-0", name}); // qemu's way to give a program's name
    }
    const ArgumentVector vector(std::move(words));
    const Capture out;
    const Capture err;
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("cannot fork");
    }
    if (child == 0) {
        becomeCommand(directory, started, vector, out, err, prepare);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), out.text(), err.text()};
}

CommandResult runConsolidator(const std::string& directory,
                              const std::vector<std::string>& arguments,
                              const Preparation& prepare) {
    std::vector<std::string> words{consolidatorPath()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return runProgram(directory, consolidatorPath(), words, prepare);
}

std::string consolidatorPath() {
    return CONSOLIDATOR_PATH;
}

} // namespace consolidator::test
