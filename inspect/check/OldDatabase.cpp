#include "inspect/check/OldDatabase.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace consolidator::inspect {

namespace {

/// Why a run cannot write to what is at `path`; empty if it can.
std::string writingError(const std::string& path) {
    return access(path.c_str(), W_OK) == 0 ? "" : std::strerror(errno);
}

/// The folder of a file that is to be made, with a "/" behind it, so that a file is none.
std::string folderOf(const std::string& path) {
    const std::string folder = std::filesystem::path(path).parent_path().string();
    return folder.empty() ? "./" : folder + '/';
}

void reportUnwritable(const std::string& path, const std::string& reason, Findings& findings) {
    findings.add({path, 0, Severity::Error, Code::NotWritable,
                  reason + ": a run cannot open it and does nothing"});
}

} // namespace

bool OldDatabase::read(const std::string& path, const std::string& project, Findings& findings) {
    std::error_code error;
    if (!std::filesystem::exists(path, error) && !error) {
        if (checkWritable(path, findings)) {
            findings.add(
                {path, 0, Severity::Note, Code::NewDatabase, "does not exist: a run makes it"});
        }
        return true;
    }
    const Database::Readable readable = database_.read(path);
    if (readable == Database::Readable::Not) {
        if (std::filesystem::is_directory(path, error) || !std::ifstream(path).is_open()) {
            return false;
        }
        reportUnusable(findings);
        return true;
    }
    checkWritable(path, findings);
    if (readable == Database::Readable::InPart) {
        findings.add({path, 0, Severity::Error, Code::DamagedDatabase,
                      database_.error() + "; what could not be read is lost after a run"});
    }
    if (!project.empty() && !database_.project().empty() && project != database_.project()) {
        findings.add({path, 0, Severity::Error, Code::OtherProject,
                      "is of project " + quotedName(database_.project()) + ", not " +
                          quotedName(project) + ": a run refuses it and does nothing"});
    }
    return true;
}

bool OldDatabase::checkWritable(const std::string& path, Findings& findings) {
    std::error_code error;
    const bool exists = std::filesystem::exists(path, error) || error;
    std::string reason = writingError(exists ? path : folderOf(path));
    if (reason.empty() && std::filesystem::is_directory(path, error)) {
        reason = std::strerror(EISDIR);
    }
    if (!reason.empty()) {
        reportUnwritable(
            path, (exists ? "cannot be written: " : "does not exist and cannot be made: ") + reason,
            findings);
    }
    return reason.empty();
}

void OldDatabase::reportUnusable(Findings& findings) {
    const std::string path = database_.path();
    const bool isNewer = database_.content().isNewer();
    findings.add({path, 0, Severity::Error, isNewer ? Code::NewerVersion : Code::NoDatabase,
                  isNewer ? database_.error() + ": a run refuses it and does nothing"
                          : "is no consolidated file: a run replaces all of its content"});
    database_ = Database(); // the inputs are looked at all the same
}

} // namespace consolidator::inspect
