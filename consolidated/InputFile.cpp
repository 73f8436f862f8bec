#include "consolidated/InputFile.h"

#include <cerrno>
#include <cstring>
#include <exception>
#include <fstream>
#include <locale>
#include <new>
#include <unistd.h>
#include <utility>

namespace consolidator {

InputFile::InputFile(const std::string& path, std::ostream& errors)
    : fileName_(path), source_(std::make_unique<std::filebuf>()), errors_(errors) {
    stream_.imbue(std::locale::classic());
    // A file buffer does not say why it failed; what it calls leaves the reason there.
    errno = 0;
    if (static_cast<std::filebuf&>(*source_).open(path, std::ios::in) == nullptr) {
        if (errno == ENOMEM) {
            throw std::bad_alloc(); // which says nothing about the file
        }
        diagnostic_.stop(0, std::string("cannot be opened: ") + std::strerror(errno));
        stream_.setstate(std::ios::failbit);
    }
}

InputFile::InputFile(std::unique_ptr<std::streambuf> source, std::ostream& errors)
    : source_(std::move(source)), errors_(errors) {
    stream_.imbue(std::locale::classic());
}

InputFile::~InputFile() = default;

bool InputFile::isOpen() const {
    return stream_.good();
}

void InputFile::beEmpty() {
    auto* const file = dynamic_cast<std::filebuf*>(source_.get());
    if (file != nullptr && file->close() == nullptr && access(fileName_->c_str(), F_OK) != 0) {
        // It has not even been made yet.
        diagnostic_ = Diagnostic();
        stream_.clear();
    }
}

bool InputFile::tryToParse() {
    try {
        // What is not open was told of when it was opened, and has found no kernels.
        return !isOpen() || parse();
    } catch (const std::bad_alloc&) {
        throw; // no fault of the input: what other inputs have added would be lost in silence
    } catch (const std::exception& error) {
        return stop(0, error.what());
    }
}

std::string_view InputFile::readLine(std::span<char> buffer) {
    stream_.getline(buffer.data(), static_cast<std::streamsize>(buffer.size()));
    return buffer.data(); // getline puts a zero byte behind the line in any case
}

bool InputFile::stop(std::uint64_t atLine, std::string reason) {
    diagnostic_.stop(atLine, std::move(reason));
    return false;
}

bool InputFile::stopAtLine(std::uint64_t atLine, std::size_t most) {
    return stop(atLine, stream_.bad()
                            ? "the file cannot be read"
                            : "the line has more than " + std::to_string(most) + " characters");
}

} // namespace consolidator
