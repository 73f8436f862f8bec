// The consolidator's entry point.

#include "driver/Driver.h"

#include <exception>
#include <iostream>

int main(int argc, char** argv) {
    try {
        return consolidator::run(argc, argv, std::cout, std::cerr);
    } catch (const std::exception& error) {
        // Only a machine without memory leads here.
        std::cerr << "consolidator: " << error.what() << std::endl;
        return 2;
    }
}
