// A library to be loaded before the C library (LD_PRELOAD). It counts the calls with which a
// program opens, reads, writes and names files, and lets one go wrong:
//
//     FAILING_CALL=17 FAILING_HOW=kill   at the 17th the process is killed
//     FAILING_CALL=17 FAILING_HOW=28     from the 17th on, those that need room fail, errno 28
//     FAILING_COUNT=FILE                 the number of calls goes into FILE in the end
//     FAILING_UNNAMED=1                  as on a file system without files that have no name
//
// Calls that the C library makes within itself are not seen; so the standard streams' functions are
// counted, and not only what they are made of.
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

int calls = 0;
int failingCall = 0;
int failingErrno = 0; // 0: the process is killed
bool unnamedFails = false;

__attribute__((constructor)) void begin() {
    const char* const call = std::getenv("FAILING_CALL");
    const char* const how = std::getenv("FAILING_HOW");
    failingCall = call == nullptr ? 0 : std::atoi(call);
    failingErrno = how == nullptr ? 0 : std::atoi(how);
    unnamedFails = std::getenv("FAILING_UNNAMED") != nullptr;
}

__attribute__((destructor)) void end() {
    if (const char* const path = std::getenv("FAILING_COUNT")) {
        std::array<char, 16> digits{};
        const int length = std::snprintf(digits.data(), digits.size(), "%d", calls);
        const int file = static_cast<int>(
            syscall(SYS_openat, AT_FDCWD, path, O_WRONLY | O_CREAT | O_TRUNC, 0600));
        syscall(SYS_write, file, digits.data(), static_cast<std::size_t>(length));
    }
}

/// Counts a call. True when it is to fail; errno is set then.
bool fails(bool needsRoom) {
    ++calls;
    if (failingCall == 0 || calls < failingCall) {
        return false;
    }
    if (failingErrno == 0) {
        std::raise(SIGKILL);
    }
    if (needsRoom) {
        errno = failingErrno;
    }
    return needsRoom;
}

/// The C library's function of this name.
template <typename Function>
Function next(Function, const char* name) {
    Function function = nullptr;
    void* const found = dlsym(RTLD_NEXT, name);
    std::memcpy(&function, &found, sizeof function);
    return function;
}

bool makesFile(int flags) {
    return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
}

/// As the C library leaves a stream that could not be written to.
void setError(std::FILE* stream) {
    constexpr int errorSeen = 0x20;
    stream->_flags |= errorSeen;
}

} // namespace

// NOLINTBEGIN(cert-dcl50-cpp): they are the C library's
extern "C" {

int open(const char* path, int flags, ...) {
    std::va_list list;
    va_start(list, flags);
    const auto mode = static_cast<mode_t>(makesFile(flags) ? va_arg(list, int) : 0);
    va_end(list);
    return fails(makesFile(flags)) ? -1 : next(&::open, "open")(path, flags, mode);
}

int openat(int directory, const char* path, int flags, ...) {
    std::va_list list;
    va_start(list, flags);
    const auto mode = static_cast<mode_t>(makesFile(flags) ? va_arg(list, int) : 0);
    va_end(list);
    if (unnamedFails && (flags & O_TMPFILE) == O_TMPFILE) {
        errno = EOPNOTSUPP;
        return -1;
    }
    return fails(makesFile(flags)) ? -1 : next(&::openat, "openat")(directory, path, flags, mode);
}

std::FILE* fopen(const char* path, const char* mode) {
    return fails(*mode != 'r') ? nullptr : next(&::fopen, "fopen")(path, mode);
}

std::FILE* fdopen(int file, const char* mode) noexcept {
    return fails(false) ? nullptr : next(&::fdopen, "fdopen")(file, mode);
}

std::size_t fread(void* to, std::size_t size, std::size_t count, std::FILE* stream) {
    fails(false);
    return next(&::fread, "fread")(to, size, count, stream);
}

std::size_t fwrite(const void* from, std::size_t size, std::size_t count, std::FILE* stream) {
    if (fails(true)) {
        setError(stream);
        return 0;
    }
    return next(&::fwrite, "fwrite")(from, size, count, stream);
}

std::size_t fread_unlocked(void* to, std::size_t size, std::size_t count, std::FILE* stream) {
    fails(false);
    return next(&::fread_unlocked, "fread_unlocked")(to, size, count, stream);
}

std::size_t fwrite_unlocked(const void* from, std::size_t size, std::size_t count,
                            std::FILE* stream) {
    if (fails(true)) {
        setError(stream);
        return 0;
    }
    return next(&::fwrite_unlocked, "fwrite_unlocked")(from, size, count, stream);
}

std::FILE* fopen64(const char* path, const char* mode) {
    return fails(*mode != 'r') ? nullptr : next(&::fopen64, "fopen64")(path, mode);
}

int fseek(std::FILE* stream, long offset, int whence) {
    fails(false);
    return next(&::fseek, "fseek")(stream, offset, whence);
}

int fflush(std::FILE* stream) {
    if (fails(true)) {
        setError(stream);
        return EOF;
    }
    return next(&::fflush, "fflush")(stream);
}

int fclose(std::FILE* stream) {
    fails(false);
    return next(&::fclose, "fclose")(stream);
}

ssize_t read(int file, void* to, std::size_t size) {
    fails(false);
    return next(&::read, "read")(file, to, size);
}

ssize_t write(int file, const void* from, std::size_t size) {
    return fails(true) ? -1 : next(&::write, "write")(file, from, size);
}

ssize_t pwrite(int file, const void* from, std::size_t size, off_t offset) {
    return fails(true) ? -1 : next(&::pwrite, "pwrite")(file, from, size, offset);
}

int fallocate(int file, int mode, off_t offset, off_t size) {
    return fails(true) ? -1 : next(&::fallocate, "fallocate")(file, mode, offset, size);
}

int ftruncate(int file, off_t size) noexcept {
    return fails(true) ? -1 : next(&::ftruncate, "ftruncate")(file, size);
}

int fchown(int file, uid_t owner, gid_t group) noexcept {
    return fails(true) ? -1 : next(&::fchown, "fchown")(file, owner, group);
}

int fchmod(int file, mode_t mode) noexcept {
    return fails(true) ? -1 : next(&::fchmod, "fchmod")(file, mode);
}

int linkat(int from, const char* path, int to, const char* name, int flags) noexcept {
    return fails(true) ? -1 : next(&::linkat, "linkat")(from, path, to, name, flags);
}

int fsetxattr(int file, const char* name, const void* value, std::size_t size, int flags) noexcept {
    return fails(true) ? -1 : next(&::fsetxattr, "fsetxattr")(file, name, value, size, flags);
}

ssize_t pread(int file, void* to, std::size_t size, off_t offset) {
    fails(false);
    return next(&::pread, "pread")(file, to, size, offset);
}

int flock(int file, int operation) noexcept {
    fails(false);
    return next(&::flock, "flock")(file, operation);
}

int renameat2(int from, const char* path, int to, const char* name, unsigned flags) noexcept {
    return fails(true) ? -1 : next(&::renameat2, "renameat2")(from, path, to, name, flags);
}

int renameat(int from, const char* path, int to, const char* name) noexcept {
    return fails(true) ? -1 : next(&::renameat, "renameat")(from, path, to, name);
}

int unlinkat(int directory, const char* name, int flags) noexcept {
    fails(false);
    return next(&::unlinkat, "unlinkat")(directory, name, flags);
}

int close(int file) {
    fails(false);
    return next(&::close, "close")(file);
}

} // extern "C"
// NOLINTEND(cert-dcl50-cpp)
