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

#include <consolidator/query/Bits.h>
#include <consolidator/query/Database.h>
#include <consolidator/query/KernelView.h>
#include <iostream>

int main(int argc, char** argv) {
    consolidator::Database database;
    if (argc != 2 || database.read(argv[1]) != consolidator::Database::Readable::Whole) {
        std::cerr << (argc != 2
                          ? "usage: read-database FILE"
                          : database.path() + ": not a whole consolidated file of a known version")
                  << '\n';
        return argc != 2 ? 2 : 1;
    }
    for (const consolidator::Kernel& kernel : database.kernels()) {
        std::cout << "kernel " << kernel.name() << " (" << label(kernel.type()) << ")\n";
        const consolidator::KernelView view(kernel);
        for (const consolidator::Variable& variable : kernel.variables()) {
            std::cout << "  " << variable.sourceName << ": " << variable.typeText << '\n';
            for (const std::uint32_t position : view.registersOf(variable.hardwareName)) {
                const consolidator::HardwareVariable& net = kernel.hardwareVariables()[position];
                std::cout << "    " << net.name << ':';
                forEachBitRun(net.locations, [](const consolidator::BitRun& run) {
                    for (std::uint32_t bit = 0; bit <= run.last - run.first; ++bit) {
                        run.isLocated()
                            ? std::cout << ' ' << run.place.address << ':' << run.place.offset + bit
                            : std::cout << " -";
                    }
                });
                std::cout << '\n';
            }
        }
    }
}
