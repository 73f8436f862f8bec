// A directory for fuzz targets that need files with names.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace consolidator::fuzz {

/// A directory in memory, where the machine has one, for as long as the process lives.
class ScratchDirectory {
public:
    ScratchDirectory();
    ~ScratchDirectory();
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    std::string path(std::string_view name) const;
    void write(std::string_view name, std::string_view bytes) const;

    /// All bytes of a file; nothing if there is none.
    std::optional<std::string> read(std::string_view name) const;

    /// Removes a file, if it is there.
    void remove(std::string_view name) const;

    /// Removes all files.
    void clear() const;

private:
    std::string path_;
};

} // namespace consolidator::fuzz
