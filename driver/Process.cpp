#include "driver/Process.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <fcntl.h>
#include <new>
#include <string_view>
#include <unistd.h>

namespace consolidator {

namespace {

constexpr std::string_view outOfMemoryMessage = "consolidator: out of memory\n";

bool isClosed(int descriptor) {
    return fcntl(descriptor, F_GETFD) < 0 && errno == EBADF;
}

/// The lowest free descriptor is the one that is opened, so going upwards fills exactly the gaps.
void fillStandardDescriptors() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        // Where there is no null device, the root directory keeps the place as well: nothing can
        // be written to it.
        if (isClosed(descriptor) && open("/dev/null", O_RDWR) < 0) {
            (void)open("/", O_RDONLY | O_DIRECTORY);
        }
    }
}

/// The stack grows when it is first used, and the process is killed if there is no memory for that.
/// Using as much as a run needs at the start leaves no such moment for later.
[[gnu::noinline]] void growStack() {
    constexpr std::size_t need = std::size_t{64} * 1024;
    constexpr std::size_t page = 4096;
    // Volatile, as the compiler would leave out writes that nobody reads.
    std::array<volatile char, need> room; // NOLINT(cppcoreguidelines-pro-type-member-init)
    for (std::size_t i = 0; i < room.size(); i += page) {
        room[i] = 0;
    }
}

} // namespace

void prepareProcess() {
    fillStandardDescriptors();
    (void)std::signal(SIGXFSZ, SIG_IGN);
    (void)std::signal(SIGPIPE, SIG_IGN);
    growStack();
    std::set_new_handler(endForLackOfMemory);
}

void endForLackOfMemory() {
    // No stream, and no exit handlers: both may want memory. If the message cannot be written, the
    // status alone has to do.
    [[maybe_unused]] const ssize_t written =
        write(STDERR_FILENO, outOfMemoryMessage.data(), outOfMemoryMessage.size());
    std::_Exit(outOfMemoryStatus);
}

} // namespace consolidator
