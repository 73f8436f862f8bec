// A file for what fuzz targets read and write by path.
#pragma once

#include <string>
#include <string_view>

namespace consolidator::fuzz {

/// A file without a place on any disk, which can be opened by its path as often as one likes.
class ScratchFile {
public:
    ScratchFile();
    ~ScratchFile();
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    const std::string& path() const { return path_; }
    void setBytes(std::string_view bytes);
    std::string bytes() const;

private:
    int descriptor_;
    std::string path_;
};

} // namespace consolidator::fuzz
