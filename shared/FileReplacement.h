// A file whose content is replaced as a whole: until the new one is complete, the old one stays.
#pragma once

#include "shared/FileDescriptor.h"

#include <cstdint>
#include <string>

namespace consolidator {

/// Takes the new content of a file and puts it into the old one's place when it is complete.
///
///     FileReplacement file;
///     if (file.open(path)) {            // nothing is emptied
///         write to file.begin() …
///         file.commit();
///     }
///
/// An object that goes without commit(), a process that is killed and a disk that is full leave
/// what was there. The ways, best first:
///
/// - The content goes into a file without a name in the same directory, which gets the old one's
///   owner, group, mode and extended attributes and, by renaming, its name. Symbolic links are
///   followed to the file that they lead to. A kill leaves nothing behind, but for the instant
///   between naming and renaming. Where the file system has no files without names it has one from
///   the beginning: "NAME.unfinished-PID-0".
/// - Where the file has lost its name meanwhile, to another process or to nobody, the new one takes
///   it all the same.
/// - Where a user would see that it is another file (it has a second name, its owner cannot be
///   given, something is mounted there), the content is copied over the old one when it is
///   complete, once there is room for it.
/// - Where no file can be made in the directory, the old one is emptied and written to when the
///   writing begins.
/// - Pipes, devices, and files that are the standard output or error are written to as
///   std::fopen(path, "w") does it.
///
/// Of two processes that replace a file at the same time the last one wins as a whole. Waiting for
/// each other would save both changes, but a process that stands still would stop all others. Those
/// that write in place wait (flock) for each other and for who reads, some seconds at most.
class FileReplacement {
public:
    /// What is to be done with a file that has come to a new file's name meanwhile.
    enum class Existing { Keep, Replace };

    FileReplacement() = default;
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    /// Opens `path` for writing. Fails, with errno, where std::fopen(path, "w") fails; but neither
    /// empties a file nor, where the file system lets it be, makes one.
    bool open(const std::string& path);

    /// Makes another file instead, which commit() gives the name `path`, whatever stands there
    /// then. Fails, with errno, where none can be made in the directory.
    bool make(const std::string& path);

    bool isOpen() const { return way_ != Way::None; }

    /// Whether begin() has given, or would give, the old file itself.
    bool isInPlace() const { return way_ == Way::InPlace; }

    /// Where the new content goes: a descriptor, open for writing at the start of an empty file (or
    /// a pipe or device), which belongs to this object. -1, with errno, when there is no room for
    /// it or it cannot be emptied; the old file is as it was then.
    int begin();

    /// Puts what was written into place, whole. False, with errno, when that is impossible; then
    /// the old file is as it was, but for one that is written in place.
    bool commit(Existing existing = Existing::Replace);

    /// Whether there is an old file to go over to.
    bool canGoInPlace() const { return way_ == Way::Scratch && target_.isOpen(); }

    /// Goes over to writing in place, for a disk that has room for one of both only: what was
    /// written is given up, and the old file gets room for so many bytes. False, and nothing has
    /// changed in it, if there is not even that. Afterwards begin() has the old content under it,
    /// to be written over and cut off at the new end.
    bool beginInPlace(std::uint64_t size);

    /// Waits, before a file is read, until one that is writing to it in place has done so, some
    /// seconds at most, and keeps others from it until the file is closed.
    static void waitForWriter(int file);

    /// Whether the path leads to the file that is to be replaced, or will come to be.
    bool isTarget(const std::string& path) const;

private:
    enum class Way { None, Direct, Scratch, InPlace };

    bool openNew(const std::string& path);
    bool openDirectly(const std::string& path, int flags);
    void findPlace(const std::string& path);
    bool makeScratch(unsigned mode);
    bool makeNamedScratch(unsigned mode);
    bool isNamed() const;
    bool isRenamedAway() const;
    bool isStored() const;
    bool takesOverAll();
    void takeOverFromName();
    bool renameOver(Existing existing);
    bool link(const std::string& name);
    bool copyOver();
    std::string unfinishedName(int number) const;

    Way way_ = Way::None;
    FileDescriptor target_;    ///< The old file, or the pipe or device. Not open for a new file.
    FileDescriptor directory_; ///< Of the file, if it is known by a name there.
    FileDescriptor scratch_;   ///< The new content.
    std::string name_;         ///< In the directory.
    std::string scratchName_;  ///< There, while the scratch has one.
    bool isMade_ = false;      ///< The target was made by open(), and nothing is in it.
    bool isOther_ = false;     ///< Of make(): the old file is not written to.
};

} // namespace consolidator
