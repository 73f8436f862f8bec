// The consolidator's entry point.

#include "driver/Driver.h"
#include "driver/Process.h"

#include <exception>
#include <iostream>
#include <new>

int main(int argc, char** argv) {
    consolidator::prepareProcess();
    try {
        return consolidator::run(argc, argv, std::cout, std::cerr);
    } catch (const std::bad_alloc&) {
        // An allocation that did not go through the handler which prepareProcess() sets.
        consolidator::endForLackOfMemory();
    } catch (const std::exception& error) {
        // Nothing is known that would lead here; a run that ends so must not look well.
        std::cerr << "consolidator: " << error.what() << std::endl;
        return consolidator::outOfMemoryStatus;
    }
}
