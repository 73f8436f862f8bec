#include "readers/KernelFile.h"

#include <ostream>

namespace consolidator {

namespace {

constexpr std::string_view startCondition = "== $i/kc_start 1'b1";
constexpr std::string_view stopCondition = "== $i/kc_done 1'b1";

} // namespace

bool KernelFile::parse() {
    Mekto::Project project;
    try {
        project.read(stream_, fileName_.value_or("document"));
    } catch (const lmx60::c_lmx_reader_exception& exception) {
        return stopUnread(exception.line(), exception.reason());
    } catch (const lmx60::c_lmx_exception& exception) {
        return stopUnread(0, std::string(lmx60::get_error_description(exception.code())));
    }
    Kernel kernel; // one for all: see above
    for (const Mekto::Platform& platform : project.platform) {
        for (const Mekto::Device& device : platform.device) {
            for (const Mekto::Core& core : device.core) {
                for (const Mekto::Kernel& description : core.kernel) {
                    addKernel(description, kernel);
                }
            }
        }
    }
    return true;
}

bool KernelFile::stopUnread(std::uint64_t atLine, const std::string& reason) {
    errors_ << "Could not parse kernel file" << std::endl;
    return stop(atLine, reason);
}

void KernelFile::addKernel(const Mekto::Kernel& description, Kernel& kernel) {
    kernel.setName(description.name.value);
    for (const Mekto::Arg& argument : description.arg) {
        const std::string& port = argument.name.value;
        kernel.addArgument(sourceName(port), port, argument.type.value);
    }
    kernel.addBreakableCondition(BreakableCondition::Start, startCondition);
    kernel.addBreakableCondition(BreakableCondition::Stop, stopCondition);
    kernels_.push_back(kernel);
}

std::string KernelFile::sourceName(std::string_view hardwareName) const {
    return reservedWords_.sourceName(hardwareName);
}

std::string KernelFile::hardwareName(std::string_view sourceName) const {
    return reservedWords_.hardwareName(sourceName);
}

} // namespace consolidator
