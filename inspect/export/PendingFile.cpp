#include "inspect/export/PendingFile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace consolidator::inspect {

namespace {

/// What a file that is made in the ordinary way may be used for by whom. The mask can only be asked
/// for by setting it.
mode_t ordinaryMode() {
    constexpr mode_t everyone = 0666;
    const mode_t mask = umask(0);
    umask(mask);
    return everyone & ~mask;
}

/// Renames, but not over another file. Where the file system does not offer this in one step, two
/// have to do.
int renameToNewName(const char* from, const char* to) {
    if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) {
        return 0;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return -1;
    }
    struct stat existing = {};
    if (lstat(to, &existing) == 0) {
        errno = EEXIST;
        return -1;
    }
    return std::rename(from, to);
}

} // namespace

PendingFile::PendingFile(std::string target) : target_(std::move(target)) {}

PendingFile::~PendingFile() {
    if (isThere_) {
        unlink(path_.c_str());
    }
}

bool PendingFile::make() {
    std::error_code error;
    path_ = std::filesystem::absolute(target_, error).string() + ".XXXXXX";
    const int descriptor = mkostemp(path_.data(), O_CLOEXEC);
    if (descriptor < 0) {
        return fail();
    }
    isThere_ = true;
    const bool made = fchmod(descriptor, ordinaryMode()) == 0;
    return (close(descriptor) == 0 && made) || fail();
}

bool PendingFile::putInPlace(Existing existing) {
    const int result = existing == Existing::Replace
                           ? std::rename(path_.c_str(), target_.c_str())
                           : renameToNewName(path_.c_str(), target_.c_str());
    if (result != 0) {
        return fail();
    }
    isThere_ = false;
    return true;
}

bool PendingFile::fail() {
    error_ = std::strerror(errno);
    return false;
}

} // namespace consolidator::inspect
