#include "readers/KernelFile.h"

#include "readers/KernelOutline.h"
#include "shared/schemas/Exceptions.h"

#include <algorithm>
#include <iterator>
#include <ostream>
#include <utility>
#include <vector>

namespace consolidator {

bool KernelFile::parse() {
    try {
        std::vector<Kernel> kernels = KernelOutline(reservedWords_, diagnostic_)
                                          .read(stream_, fileName_.value_or("document"));
        std::ranges::move(kernels, std::back_inserter(kernels_));
        return true;
    } catch (const lmx60::c_lmx_reader_exception& exception) {
        const bool isRoot = exception.code() == lmx60::ErrorCode::UnexpectedRoot;
        return stopUnread(exception.line(),
                          (isRoot ? "the root element is " : "") + exception.reason());
    } catch (const lmx60::c_lmx_exception& exception) {
        return stopUnread(0, std::string(lmx60::get_error_description(exception.code())));
    }
}

bool KernelFile::stopUnread(std::uint64_t atLine, const std::string& reason) {
    errors_ << "Could not parse kernel file" << std::endl;
    return stop(atLine, reason);
}

std::string KernelFile::sourceName(std::string_view hardwareName) const {
    return reservedWords_.sourceName(hardwareName);
}

std::string KernelFile::hardwareName(std::string_view sourceName) const {
    return reservedWords_.hardwareName(sourceName);
}

} // namespace consolidator
