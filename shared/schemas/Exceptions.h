// What is thrown when an XML document cannot be read.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace lmx60 {

/// Why a document cannot be read.
enum class ErrorCode {
    None = 0,
    CannotOpen,     ///< The file cannot be opened.
    CannotRead,     ///< The file was opened but cannot be read to its end.
    NotWellFormed,  ///< The text is not well-formed XML.
    UnexpectedRoot, ///< The root element is not the one that was asked for.
    InvalidValue,   ///< A value is not of its attribute's type.
    UnsafeDocument, ///< Its document type would make a small document large.
    TooLarge,       ///< The document asks for more memory than its reader gives it.
};

/// The code in words.
std::string_view get_error_description(ErrorCode code); // NOLINT(readability-identifier-naming)

/// The base of all that is thrown when a document cannot be read. The text is made for users: file,
/// line, column and reason.
class lmx_exception : public std::runtime_error { // NOLINT(readability-identifier-naming)
public:
    lmx_exception(ErrorCode code, const std::string& text)
        : std::runtime_error(text), code_(code) {}

    ErrorCode code() const { return code_; }

private:
    ErrorCode code_;
};

/// A document that cannot be read as a whole, as its file cannot be opened.
class c_lmx_exception : public lmx_exception { // NOLINT(readability-identifier-naming)
public:
    using lmx_exception::lmx_exception;
};

/// A fault at a place inside a document.
class c_lmx_reader_exception final // NOLINT(readability-identifier-naming)
    : public c_lmx_exception {
public:
    /// Line and column are counted from 1. The text becomes "NAME:LINE:COLUMN: DESCRIPTION:
    /// REASON".
    c_lmx_reader_exception(ErrorCode code, const std::string& documentName, std::uint64_t line,
                           std::uint64_t column, const std::string& reason);

    std::uint64_t line() const { return line_; }
    std::uint64_t column() const { return column_; }
    const std::string& reason() const { return reason_; }

private:
    std::uint64_t line_;
    std::uint64_t column_;
    std::string reason_;
};

/// Thrown by a function of the tables (see Binding.h) that takes no more of the document.
/// readDocument knows the place and makes a c_lmx_reader_exception of it.
class Refusal final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace lmx60
