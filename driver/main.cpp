// The consolidator's entry point.

#include "driver/Driver.h"

#include <exception>
#include <iostream>

int main(int argc, char** argv) {
    try {
        return consolidator::run(argc, argv, std::cout, std::cerr);
    } catch (const std::exception& error) {
        // Nothing that a command line or a file holds leads here, only a machine without memory.
        std::cerr << "consolidator: " << error.what() << std::endl;
        return 2;
    }
}
