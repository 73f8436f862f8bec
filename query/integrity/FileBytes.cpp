#include "query/integrity/FileBytes.h"

#include <unistd.h>

namespace consolidator {

bool FileBytes::open(const std::string& path) {
    file_ = openFile(path, "r");
    if (!file_) {
        return false;
    }
    const off_t end = lseek(fileno(file_.get()), 0, SEEK_END);
    size_ = end < 0 ? 0 : static_cast<std::uint64_t>(end);
    return end >= 0;
}

std::size_t FileBytes::read(std::uint64_t offset, std::span<char> bytes) const {
    std::size_t came = 0;
    while (came < bytes.size()) {
        const ssize_t count = pread(fileno(file_.get()), bytes.data() + came, bytes.size() - came,
                                    static_cast<off_t>(offset + came));
        if (count <= 0) {
            break;
        }
        came += static_cast<std::size_t>(count);
    }
    return came;
}

} // namespace consolidator
