// Changes a kernel description: gives another name to a kernel and everything that is named after
// it, and writes the document anew.
//
//     edit-kernel-xml kernel.xml scale_rows blend > blend.xml
//
//     <kernel name="blend" language="c" …>
//     …
//     <instance name="blend_1">
//
// What the schema does not know is left out of the new document, and so are comments.

#include <consolidator/shared/schemas/KernelDescription.h>
#include <iostream>
#include <string>

namespace {

/// "scale_rows" and "scale_rows_1" begin with the name.
void rename(Mekto::Text& name, const std::string& from, const std::string& to) {
    if (name.value.starts_with(from)) {
        name.value.replace(0, from.size(), to);
    }
}

/// Returns whether there is such a kernel.
bool rename(Mekto::Core& core, const std::string& from, const std::string& to) {
    bool isThere = false;
    for (Mekto::Kernel& kernel : core.kernel) {
        if (kernel.name.value == from) {
            isThere = true;
            kernel.name = {to, true};
            for (Mekto::Instance& instance : kernel.instance) {
                rename(instance.name, from, to);
            }
        }
    }
    return isThere;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "usage: edit-kernel-xml FILE NAME NEW_NAME\n";
        return 2;
    }
    try {
        Mekto::Project document;
        document.readFile(argv[1]);
        bool isThere = false;
        for (Mekto::Platform& platform : document.platform) {
            for (Mekto::Device& device : platform.device) {
                for (Mekto::Core& core : device.core) {
                    isThere = rename(core, argv[2], argv[3]) || isThere;
                }
            }
        }
        if (!isThere) {
            std::cerr << argv[1] << ": no kernel " << argv[2] << '\n';
            return 1;
        }
        document.write(std::cout);
    } catch (const lmx60::c_lmx_exception& exception) {
        std::cerr << exception.what() << '\n'; // file, line, column and reason
        return 1;
    }
}
