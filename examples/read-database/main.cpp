// Reads a database as a debugger does: prints the variables of each kernel and, for each instance
// of the kernel, where in the device their bits lie.
//
//     read-database accelerator.bin
//
//     kernel scale_rows (HLS)
//       row: int
//         /top/region_0/scale_rows_1/U0/row_reg: 6656:128 6656:129 6656:130 6656:131
//
// A bit's location is address:offset; "-" stands for a bit whose location is not known.

#include <consolidator/consolidated/ConsolidatedFile.h>
#include <iostream>

namespace {

void print(const consolidator::HardwareVariable& net) {
    std::cout << "    " << net.name << ':';
    // Entry i is bit i. Runs, because bits that were never seen may be millions.
    net.locations.forEachRun([](auto entries) {
        for (const consolidator::LogicLocation& bit : entries) {
            if (bit == consolidator::LogicLocation{}) {
                std::cout << " -";
            } else {
                std::cout << ' ' << bit.address << ':' << bit.offset;
            }
        }
    });
    std::cout << '\n';
}

void print(const consolidator::Kernel& kernel) {
    std::cout << "kernel " << kernel.name() << " (" << label(kernel.type()) << ")\n";
    for (const consolidator::Variable& variable : kernel.variables()) {
        std::cout << "  " << variable.sourceName << ": " << variable.typeText << '\n';
        // A variable's registers bear its hardware name, one below each instance of the kernel.
        for (const consolidator::HardwareVariable& net : kernel.hardwareVariables()) {
            if (net.name.ends_with("/" + variable.hardwareName)) {
                print(net);
            }
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: read-database FILE\n";
        return 2;
    }
    consolidator::ConsolidatedFile database;
    // Of a damaged file, what came before the damage is there. Of a newer version, nothing is sure.
    const bool readable =
        database.readExisting(argv[1]) && database.header().majorVersion <= database.supportedMajor;
    if (!readable) {
        std::cerr << argv[1] << ": not a whole consolidated file of a known version\n";
        return 1;
    }
    for (const consolidator::Kernel& kernel : database.kernels()) {
        print(kernel);
    }
    return 0;
}
