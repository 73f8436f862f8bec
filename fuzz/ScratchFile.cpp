#include "fuzz/ScratchFile.h"

#include "fuzz/Fuzzing.h"

#include <algorithm>
#include <sys/mman.h>
#include <unistd.h>

namespace consolidator::fuzz {

ScratchFile::ScratchFile()
    : descriptor_(memfd_create("consolidator-fuzz", MFD_CLOEXEC)),
      path_("/proc/self/fd/" + std::to_string(descriptor_)) {
    require(descriptor_ >= 0, "there are files in memory");
}

ScratchFile::~ScratchFile() {
    close(descriptor_);
}

void ScratchFile::setBytes(std::string_view bytes) {
    const bool isEmpty = ftruncate(descriptor_, 0) == 0;
    const ssize_t written = pwrite(descriptor_, bytes.data(), bytes.size(), 0);
    require(isEmpty && written == static_cast<ssize_t>(bytes.size()),
            "a file in memory is written");
}

std::string ScratchFile::bytes() const {
    const off_t size = lseek(descriptor_, 0, SEEK_END);
    std::string result(static_cast<std::size_t>(std::max<off_t>(size, 0)), '\0');
    const ssize_t came = pread(descriptor_, result.data(), result.size(), 0);
    require(came == size, "a file in memory is read");
    return result;
}

} // namespace consolidator::fuzz
