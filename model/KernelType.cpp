#include "model/KernelType.h"

namespace consolidator {

std::string_view label(KernelType type) {
    switch (type) {
    case KernelType::OpenCL:
        return "OpenCL";
    case KernelType::C:
        return "C";
    case KernelType::RTL:
        return "RTL";
    case KernelType::HLS:
        return "HLS";
    case KernelType::Unknown:
        break;
    }
    return "Unknown";
}

} // namespace consolidator
