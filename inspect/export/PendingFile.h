// A file that appears under its name only when it is complete.
#pragma once

#include <string>

namespace consolidator::inspect {

/// Made under a temporary name beside its target, "TARGET.k3Xa9f", and removed unless it is put in
/// place: work that fails leaves nothing behind, and what stood there before stays.
class PendingFile {
public:
    enum class Existing { Keep, Replace };

    explicit PendingFile(std::string target);
    ~PendingFile();
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;

    /// Makes the empty file. When it cannot be made, false, and error() says why.
    bool make();

    /// Gives the file the target's name. A file that has come there meanwhile is replaced only if
    /// the caller says so. False and an error() when that cannot be done.
    bool putInPlace(Existing existing);

    /// The absolute path of the temporary name.
    const std::string& path() const { return path_; }

    /// Why a call has failed, in words of the system.
    const std::string& error() const { return error_; }

private:
    bool fail();

    std::string target_;
    std::string path_;
    std::string error_;
    bool isThere_ = false;
};

} // namespace consolidator::inspect
