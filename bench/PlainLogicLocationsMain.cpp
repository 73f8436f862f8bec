// Reads logic locations in the plain way that the tests compare LLFile with, against the kernels of
// a database, which stays as it is:
//
//     bench_plain_ll DATABASE FILE

#include "consolidated/ConsolidatedFile.h"
#include "tests/support/PlainLogicLocations.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    consolidator::ConsolidatedFile database;
    if (argc != 3 || !database.readExisting(argv[1])) {
        std::cerr << "usage: bench_plain_ll DATABASE FILE\n";
        return EXIT_FAILURE;
    }
    std::ifstream file(argv[2]);
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    std::vector<consolidator::Kernel> kernels = database.kernels();
    return consolidator::test::readPlainLogicLocations(text, kernels) ? EXIT_SUCCESS : EXIT_FAILURE;
}
