#include "shared/FileReplacement.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <linux/fs.h>
#include <memory>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <thread>
#include <tuple>
#include <unistd.h>
#include <utility>
#include <vector>

namespace consolidator {

namespace {

constexpr mode_t forEverybody = 0666; // less what the process's mask takes away
constexpr mode_t forOwner = 0600;     // until the old file's mode is known
constexpr mode_t modeBits = 07777;

using Status = struct stat;

bool isSameFile(const Status& first, const Status& second) {
    return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

/// Whether the file is what standard output or error go to: whoever reads on there must find the
/// content in the same file.
bool isStandardStream(const Status& file) {
    Status stream = {};
    return (fstat(STDOUT_FILENO, &stream) == 0 && isSameFile(file, stream)) ||
           (fstat(STDERR_FILENO, &stream) == 0 && isSameFile(file, stream));
}

/// The directory of a path, and the name in it.
std::pair<std::string, std::string> split(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        return {".", path};
    }
    return {path.substr(0, std::max<std::size_t>(slash, 1)), path.substr(slash + 1)};
}

FileDescriptor openDirectory(const std::string& path) {
    return FileDescriptor(open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}

/// A value of an extended attribute, or the list of their names: get(memory, size) is one of the
/// system's calls for it. False when it cannot be read.
template <typename Get>
bool readAttribute(Get get, std::vector<char>& value) {
    const ssize_t size = get(nullptr, 0);
    if (size < 0) {
        return false;
    }
    value.resize(static_cast<std::size_t>(size));
    return size == 0 || get(value.data(), value.size()) == size;
}

/// Calls visit(name) for each extended attribute until it returns false. Whether it never did, and
/// the names could be read; a file system that knows none has none.
template <typename Visit>
bool forEachAttribute(int file, Visit visit) {
    std::vector<char> names;
    if (!readAttribute([=](char* to, std::size_t size) { return flistxattr(file, to, size); },
                       names)) {
        return errno == ENOTSUP;
    }
    for (std::size_t at = 0; at < names.size();) {
        const std::string name(&names[at]);
        if (!visit(name)) {
            return false;
        }
        at += name.size() + 1;
    }
    return true;
}

bool readAttribute(int file, const std::string& name, std::vector<char>& value) {
    return readAttribute(
        [&](char* to, std::size_t size) { return fgetxattr(file, name.c_str(), to, size); }, value);
}

/// Gives `to` the extended attributes of `from`, access lists among them, and no others.
bool copyAttributes(int from, int to) {
    const bool copied = forEachAttribute(from, [&](const std::string& name) {
        std::vector<char> wanted;
        std::vector<char> present;
        return readAttribute(from, name, wanted) &&
               ((readAttribute(to, name, present) && present == wanted) ||
                fsetxattr(to, name.c_str(), wanted.data(), wanted.size(), 0) == 0);
    });
    return copied && forEachAttribute(to, [&](const std::string& name) {
               std::vector<char> wanted;
               return readAttribute(from, name, wanted) || fremovexattr(to, name.c_str()) == 0;
           });
}

/// Whether both have the same flags of those that a user can set, such as "not to be dumped".
bool haveSameFlags(int first, int second) {
    const auto flagsOf = [](int file) {
        int flags = 0;
        return ioctl(file, FS_IOC_GETFLAGS, &flags) == 0 ? flags & FS_FL_USER_MODIFIABLE : 0;
    };
    return flagsOf(first) == flagsOf(second);
}

/// Room for a file of this size, which it does not get yet. A file system that cannot promise it
/// lets one try.
bool reserve(int file, off_t size) {
    return size == 0 || fallocate(file, FALLOC_FL_KEEP_SIZE, 0, size) == 0 || errno == EOPNOTSUPP ||
           errno == ENOSYS;
}

/// Whether a file cannot be made for a reason that speaks against writing to any file.
bool isLackOfMeans(int fault) {
    return fault == ENOSPC || fault == EDQUOT || fault == EMFILE || fault == ENFILE ||
           fault == ENOMEM || fault == EIO;
}

/// Locks a file (flock) until it is closed. Whoever may read a file may lock it for good, so that
/// after some seconds it is done without.
void lock(int file, int kind) {
    constexpr int mostTries = 500;
    constexpr std::chrono::milliseconds pause(10);
    for (int i = 0; i < mostTries && flock(file, kind | LOCK_NB) != 0 && errno == EWOULDBLOCK;
         ++i) {
        std::this_thread::sleep_for(pause);
    }
}

/// Signals wait while it lives.
class SignalsHeld {
public:
    SignalsHeld() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, &before_);
    }
    ~SignalsHeld() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;

private:
    sigset_t before_{};
};

/// Renames in a directory, but not over another file. Where the file system does not offer this in
/// one step, two have to do.
bool renameToNewName(int directory, const std::string& from, const std::string& to) {
    if (renameat2(directory, from.c_str(), directory, to.c_str(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return false;
    }
    if (faccessat(directory, to.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0) {
        errno = EEXIST;
        return false;
    }
    return renameat(directory, from.c_str(), directory, to.c_str()) == 0;
}

} // namespace

void FileReplacement::waitForWriter(int file) {
    lock(file, LOCK_SH);
}

FileReplacement::~FileReplacement() {
    if (!scratchName_.empty()) {
        unlinkat(directory_.number(), scratchName_.c_str(), 0);
    }
    Status made = {};
    if (isMade_ && isNamed() && fstat(target_.number(), &made) == 0 && made.st_size == 0) {
        unlinkat(directory_.number(), name_.c_str(), 0);
    }
}

bool FileReplacement::open(const std::string& path) {
    Status there = {};
    if (stat(path.c_str(), &there) != 0) {
        return openNew(path);
    }
    if (!S_ISREG(there.st_mode) || isStandardStream(there)) {
        return openDirectly(path, O_TRUNC);
    }
    if (!openDirectly(path, 0)) {
        return false;
    }
    way_ = Way::Scratch;
    findPlace(path);
    return true;
}

bool FileReplacement::make(const std::string& path) {
    const auto [directory, name] = split(path);
    directory_ = openDirectory(directory);
    name_ = name;
    isOther_ = true;
    if (!directory_.isOpen() || !makeScratch(forEverybody)) {
        return false;
    }
    way_ = Way::Scratch;
    return true;
}

bool FileReplacement::openNew(const std::string& path) {
    const bool isFree = errno == ENOENT;
    Status link = {};
    if (isFree && lstat(path.c_str(), &link) != 0 && errno == ENOENT) {
        const auto [directory, name] = split(path);
        directory_ = openDirectory(directory);
        name_ = name;
        if (!name.empty() && directory_.isOpen()) {
            // With the right to make this file comes the one to make the other.
            scratch_ = FileDescriptor(
                openat(directory_.number(), ".", O_TMPFILE | O_RDWR | O_CLOEXEC, forEverybody));
        }
        if (scratch_.isOpen()) {
            way_ = Way::Scratch;
            return true;
        }
    }
    // Be it that it cannot be made, that a link leads to it, or that the file system has no files
    // without names: the system knows. What is made through a link might be somebody else's.
    const bool isOwn = openDirectly(path, O_EXCL);
    if (!isOwn && !openDirectly(path, 0)) {
        return false;
    }
    way_ = Way::Scratch;
    findPlace(path);
    isMade_ = isOwn && directory_.isOpen();
    return true;
}

bool FileReplacement::openDirectly(const std::string& path, int flags) {
    // O_CREAT, although it is there: the system refuses some files of others to it.
    target_ =
        FileDescriptor(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, forEverybody));
    way_ = target_.isOpen() ? Way::Direct : Way::None;
    return target_.isOpen();
}

/// Finds the directory and the name of the target. Neither is set where its name is not known, as
/// of a file that was deleted and is open under a number.
void FileReplacement::findPlace(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> whole(realpath(path.c_str(), nullptr),
                                                            &std::free);
    if (!whole) {
        return;
    }
    const auto [directory, name] = split(whole.get());
    Status target = {};
    Status named = {};
    FileDescriptor opened = openDirectory(directory);
    if (fstat(target_.number(), &target) == 0 &&
        fstatat(opened.number(), name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
        isSameFile(target, named)) {
        directory_ = std::move(opened);
        name_ = name;
    }
}

int FileReplacement::begin() {
    if (way_ == Way::Scratch && !scratch_.isOpen() && !makeScratch(forOwner)) {
        if (isLackOfMeans(errno)) {
            return -1;
        }
        lock(target_.number(), LOCK_EX);
        if (ftruncate(target_.number(), 0) != 0) {
            return -1;
        }
        way_ = Way::InPlace;
    }
    return scratch_.isOpen() ? scratch_.number() : target_.number();
}

bool FileReplacement::makeScratch(mode_t mode) {
    if (!directory_.isOpen()) {
        errno = ENOENT; // nobody knows it by a name
        return false;
    }
    scratch_ =
        FileDescriptor(openat(directory_.number(), ".", O_TMPFILE | O_RDWR | O_CLOEXEC, mode));
    return scratch_.isOpen() || makeNamedScratch(mode);
}

bool FileReplacement::makeNamedScratch(mode_t mode) {
    constexpr int mostTries = 100; // processes of other machines may have the same number
    for (int number = 0; number < mostTries; ++number) {
        const std::string name = unfinishedName(number);
        scratch_ = FileDescriptor(
            openat(directory_.number(), name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode));
        if (scratch_.isOpen()) {
            scratchName_ = name;
            return true;
        }
        if (errno != EEXIST) {
            break;
        }
    }
    return false;
}

std::string FileReplacement::unfinishedName(int number) const {
    const std::string end =
        ".unfinished-" + std::to_string(getpid()) + '-' + std::to_string(number);
    return name_.substr(0, NAME_MAX - end.size()) + end;
}

bool FileReplacement::commit(Existing existing) {
    if (way_ != Way::Scratch) {
        return true;
    }
    if (isOther_) {
        takeOverFromName();
        return isStored() && renameOver(existing);
    }
    // Where the target has lost its name meanwhile, as to another run, its content is of no use to
    // anybody, and the name is what counts.
    const bool isReplaceable = !target_.isOpen() || takesOverAll() || isRenamedAway();
    if (isReplaceable && renameOver(existing)) {
        isMade_ = false;
        return true;
    }
    return !isRenamedAway() && copyOver();
}

/// Whether the target is still what its name leads to.
bool FileReplacement::isNamed() const {
    Status target = {};
    Status named = {};
    return directory_.isOpen() && target_.isOpen() && fstat(target_.number(), &target) == 0 &&
           fstatat(directory_.number(), name_.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           isSameFile(target, named);
}

/// Whether the target had a name and is no longer what it leads to.
bool FileReplacement::isRenamedAway() const {
    return directory_.isOpen() && target_.isOpen() && !isNamed();
}

/// Gives the scratch what it can have of the owner, mode and attributes of a file that it will take
/// the name of.
void FileReplacement::takeOverFromName() {
    const int to = scratch_.number();
    Status old = {};
    if (fstatat(directory_.number(), name_.c_str(), &old, AT_SYMLINK_NOFOLLOW) != 0 ||
        !S_ISREG(old.st_mode)) {
        return;
    }
    std::ignore = fchown(to, old.st_uid, old.st_gid);
    std::ignore = fchmod(to, old.st_mode & modeBits);
    const FileDescriptor from(
        openat(directory_.number(), name_.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (from.isOpen()) {
        copyAttributes(from.number(), to);
    }
}

/// Whether the file system has taken all that was written: some tell only when a file is closed.
bool FileReplacement::isStored() const {
    const int copy = fcntl(scratch_.number(), F_DUPFD_CLOEXEC, 0);
    return copy >= 0 && ::close(copy) == 0;
}

/// Gives the scratch all that a user sees of the target but its content. False where that cannot be
/// done; also where the target has a second name.
bool FileReplacement::takesOverAll() {
    const int from = target_.number();
    const int to = scratch_.number();
    Status old = {};
    Status fresh = {};
    if (fstat(from, &old) != 0 || fstat(to, &fresh) != 0 || old.st_nlink > 1) {
        return false;
    }
    const bool isOwned = old.st_uid == fresh.st_uid && old.st_gid == fresh.st_gid;
    // The owner first, as a change of it takes bits off the mode.
    return (isOwned || fchown(to, old.st_uid, old.st_gid) == 0) &&
           fchmod(to, old.st_mode & modeBits) == 0 && copyAttributes(from, to) &&
           haveSameFlags(from, to);
}

bool FileReplacement::renameOver(Existing existing) {
    if (!directory_.isOpen()) {
        return false;
    }
    if (!target_.isOpen() && scratchName_.empty()) {
        if (link(name_)) {
            return true;
        }
        if (errno != EEXIST || existing == Existing::Keep) {
            return false;
        }
    }
    const SignalsHeld held; // nothing stays behind if one ends the process
    const bool hadNoName = scratchName_.empty();
    for (int number = 0; scratchName_.empty(); ++number) {
        const std::string name = unfinishedName(number);
        if (link(name)) {
            scratchName_ = name;
        } else if (errno != EEXIST) {
            return false;
        }
    }
    const bool isRenamed = existing == Existing::Keep && !target_.isOpen()
                               ? renameToNewName(directory_.number(), scratchName_, name_)
                               : renameat(directory_.number(), scratchName_.c_str(),
                                          directory_.number(), name_.c_str()) == 0;
    const int fault = errno;
    if (isRenamed) {
        scratchName_.clear();
    } else if (hadNoName) {
        unlinkat(directory_.number(), std::exchange(scratchName_, {}).c_str(), 0);
    }
    errno = fault;
    return isRenamed;
}

/// Gives the scratch, which has none, a name in the directory.
bool FileReplacement::link(const std::string& name) {
    // The first way needs a privilege on most systems, the second one the proc file system.
    const std::string number = "/proc/self/fd/" + std::to_string(scratch_.number());
    return linkat(scratch_.number(), "", directory_.number(), name.c_str(), AT_EMPTY_PATH) == 0 ||
           (errno != EEXIST && linkat(AT_FDCWD, number.c_str(), directory_.number(), name.c_str(),
                                      AT_SYMLINK_FOLLOW) == 0);
}

bool FileReplacement::copyOver() {
    if (!target_.isOpen()) {
        target_ = FileDescriptor(openat(directory_.number(), name_.c_str(),
                                        O_WRONLY | O_CREAT | O_CLOEXEC, forEverybody));
    }
    Status content = {};
    lock(target_.number(), LOCK_EX);
    if (!target_.isOpen() || fstat(scratch_.number(), &content) != 0 ||
        !reserve(target_.number(), content.st_size)) {
        return false;
    }
    isMade_ = false;
    constexpr std::size_t blockSize = std::size_t{128} * 1024;
    std::vector<char> block(blockSize);
    for (off_t at = 0; at < content.st_size;) {
        const ssize_t count = pread(scratch_.number(), block.data(), block.size(), at);
        if (count <= 0) {
            return false;
        }
        for (ssize_t done = 0; done < count;) {
            const ssize_t more = pwrite(target_.number(), block.data() + done,
                                        static_cast<std::size_t>(count - done), at + done);
            if (more <= 0) {
                return false;
            }
            done += more;
        }
        at += count;
    }
    return ftruncate(target_.number(), content.st_size) == 0;
}

bool FileReplacement::beginInPlace(std::uint64_t size) {
    if (way_ != Way::Scratch || !target_.isOpen()) {
        return false;
    }
    if (!scratchName_.empty()) {
        unlinkat(directory_.number(), std::exchange(scratchName_, {}).c_str(), 0);
    }
    scratch_.close();
    lock(target_.number(), LOCK_EX);
    if (fallocate(target_.number(), FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(size)) != 0) {
        return false;
    }
    way_ = Way::InPlace;
    return true;
}

bool FileReplacement::isTarget(const std::string& path) const {
    Status there = {};
    Status own = {};
    if (stat(path.c_str(), &there) == 0) {
        return S_ISREG(there.st_mode) && target_.isOpen() && fstat(target_.number(), &own) == 0 &&
               isSameFile(there, own);
    }
    const auto [directory, name] = split(path);
    return !target_.isOpen() && directory_.isOpen() && name == name_ &&
           stat(directory.c_str(), &there) == 0 && fstat(directory_.number(), &own) == 0 &&
           isSameFile(there, own);
}

} // namespace consolidator
