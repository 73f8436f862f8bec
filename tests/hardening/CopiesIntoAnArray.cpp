// A program with a copy that the library checks, where the consolidator itself has none: it keeps
// everything in containers. It shows that the checks are on wherever they have something to check.

#include <array>
#include <cstring>
#include <iostream>

int main(int argc, char** argv) {
    std::array<char, 16> copy{};
    if (argc == 2) {
        std::memcpy(copy.data(), argv[1], std::strlen(argv[1]));
    }
    std::cout.write(copy.data(), copy.size());
}
