#include "readers/HierarchyFile.h"

#include <array>
#include <istream>
#include <locale>
#include <ostream>
#include <sstream>
#include <utility>

namespace consolidator {

namespace {

constexpr std::string_view typeWords = "clc, c, ip, hls";

KernelType typeOf(std::string_view word) {
    if (word == "clc") {
        return KernelType::OpenCL;
    }
    if (word == "c") {
        return KernelType::C;
    }
    if (word == "ip") {
        return KernelType::RTL;
    }
    if (word == "hls") {
        return KernelType::HLS;
    }
    return KernelType::Unknown;
}

/// A version in six digits at most, the same in every locale: "1", "2.5".
std::string versionText(double version) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << version;
    return text.str();
}

} // namespace

bool HierarchyFile::parse() {
    current_.clear();
    begun_ = 0;
    appended_ = 0;
    // One word for the whole read: what a failed extraction leaves in it is handled again.
    std::string word;
    while (!stream_.eof()) {
        stream_ >> std::ws >> word;
        if (!stream_.fail()) {
            // White space behind the word is not read yet, so this is not the next line.
            wordLine_ = line();
        } else if (stream_.eof()) {
            remarkOnRepeatedWord(word);
        } else {
            return stop(line(), "the file cannot be read");
        }
        if (!handle(word)) {
            return false;
        }
    }
    // Not by the name: a kernel without one, which a file without words gives, counts as well.
    if (begun_ > appended_) {
        appendCurrent();
    }
    return true;
}

bool HierarchyFile::handle(std::string& word) {
    if (word.starts_with('#')) {
        return skipComment();
    }
    if (word == "version:") {
        return readVersion();
    }
    if (word == "instance") {
        return readInstance(word);
    }
    if (word == "type:") {
        readType(word);
    } else {
        beginKernel(word);
    }
    return true;
}

bool HierarchyFile::skipComment() {
    std::array<char, longestComment + 1> rest{};
    readLine(rest);
    if (stuck()) {
        return stop(wordLine_, stream_.bad() ? "the file cannot be read"
                                             : "the comment is longer than " +
                                                   std::to_string(longestComment) + " characters");
    }
    return true;
}

bool HierarchyFile::readVersion() {
    stream_ >> std::ws >> version_;
    const bool noNumber = stuck();
    stream_ >> std::ws;
    // Before the failure: a number too large for a float fails too, and counts as the largest one.
    if (static_cast<double>(version_) > supportedVersion) {
        reportUnsupportedVersion();
        return stop(wordLine_, "version " + versionText(version_) + " is above " +
                                   versionText(supportedVersion) + ", the highest that is known");
    }
    if (noNumber) {
        return stop(wordLine_, stream_.bad() ? "the file cannot be read"
                                             : "expected a number after \"version:\"");
    }
    return true;
}

void HierarchyFile::reportUnsupportedVersion() {
    errors_ << "Unsupported hierarchy file: ";
    if (fileName_) {
        errors_ << *fileName_;
    } else {
        // The absent name is a null string to the stream, which goes bad on it and stays so:
        // nothing more of the message comes out.
        errors_.setstate(std::ios::badbit);
    }
    errors_ << std::endl;
    errors_ << "Version: " << versionText(version_) << std::endl;
    errors_ << "Supported Version: " << versionText(supportedVersion) << std::endl;
}

bool HierarchyFile::readInstance(std::string& word) {
    stream_ >> std::ws >> word >> std::ws;
    if (word != "path:") {
        errors_ << "Parse error" << std::endl;
        return stop(wordLine_, "expected \"path:\" after \"instance\"");
    }
    if (stream_.eof()) {
        diagnostic_.remark(wordLine_, Code::MissingPath,
                           "the file ends after \"instance path:\"; the path is taken "
                           "to be \"path:\"");
    }
    stream_ >> std::ws >> word >> std::ws;
    current_.addInstancePath(word);
    return true;
}

void HierarchyFile::readType(std::string& word) {
    stream_ >> std::ws >> word >> std::ws;
    current_.setType(typeOf(word));
    if (current_.type() == KernelType::Unknown) {
        diagnostic_.remark(wordLine_, Code::UnknownType,
                           "type " + inQuotes(word) + " is none of " + std::string(typeWords) +
                               " and counts as unknown");
    }
}

void HierarchyFile::beginKernel(const std::string& name) {
    if (name == "instance:") {
        diagnostic_.remark(wordLine_, Code::InstanceAsKernel,
                           "\"instance:\" is taken for the name of a kernel; is "
                           "\"instance path:\" meant?");
    }
    if (!current_.name().empty()) {
        appendCurrent();
    }
    current_.setName(name);
    ++begun_;
}

void HierarchyFile::appendCurrent() {
    kernels_.push_back(std::move(current_));
    ++appended_;
    current_.clear();
}

void HierarchyFile::remarkOnRepeatedWord(const std::string& word) {
    if (word.empty()) {
        diagnostic_.remark(wordLine_, Code::NoWord,
                           "the file holds no word; a kernel without a name is made");
    } else if (!word.starts_with('#')) {
        diagnostic_.remark(wordLine_, Code::NameAtEnd,
                           "kernel name " + inQuotes(word) +
                               " ends the file; a second, empty "
                               "record of that name is made");
    }
}

} // namespace consolidator
