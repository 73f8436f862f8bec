#include "query/SectionName.h"

namespace consolidator {

std::string describe(const SectionEntry& entry) {
    switch (static_cast<SectionType>(entry.type)) {
    case SectionType::ProjectName:
        return "project name";
    case SectionType::Dwarf:
        return "DWARF";
    case SectionType::KernelData:
        return "kernel data";
    case SectionType::KernelJson:
        return "kernel JSON";
    }
    return "type " + std::to_string(entry.type) + " (unknown)";
}

} // namespace consolidator
