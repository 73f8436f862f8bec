// The inspector's entry point.

#include "driver/Process.h"
#include "inspect/Inspector.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <new>
#include <unistd.h>

namespace {

/// A user who sets NO_COLOR to anything but an empty text wants no colour (https://no-color.org).
bool wantsColour() {
    const char* noColour = std::getenv("NO_COLOR");
    return (noColour == nullptr || *noColour == '\0') && isatty(STDOUT_FILENO) == 1;
}

} // namespace

int main(int argc, char** argv) {
    using namespace consolidator;
    constexpr int unreadable = static_cast<int>(inspect::Status::Unreadable);
    prepareProcess();
    inspect::Console console{.out = std::cout,
                             .err = std::cerr,
                             .colour = wantsColour(),
                             .progress = isatty(STDERR_FILENO) == 1};
    try {
        const int status = inspect::inspect(argc, argv, console);
        std::cout.flush();
        if (!std::cout) {
            // Whatever failed before, files are looked for before anything is written.
            const int reason = errno;
            std::cerr << "consolidator-inspect: error: standard output cannot be written: "
                      << std::strerror(reason) << std::endl;
            return unreadable;
        }
        return status;
    } catch (const std::bad_alloc&) {
        endForLackOfMemory();
    } catch (const std::exception& error) {
        std::cerr << "consolidator-inspect: error: " << error.what() << std::endl;
        return unreadable;
    }
}
