// A progress bar on one line of a terminal.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>

namespace consolidator::inspect {

/// Shows how much of a long file has been read:
///
///     top.ll  [##########..............................]  26 %
///
/// The line is written ten times a second at most, and is gone when the file has been read.
class Progress {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    /// Files below this are read before anyone could look.
    static constexpr std::uint64_t shortestFile = std::uint64_t{16} << 20;

    /// `out` must outlive the bar. Nothing is ever written unless `isShown`.
    Progress(std::ostream& out, bool isShown, Clock clock = std::chrono::steady_clock::now)
        : out_(out), isShown_(isShown), clock_(std::move(clock)) {}

    /// A file of so many bytes is to be read; `name` is not printable() yet.
    void begin(const std::string& name, std::uint64_t size);

    /// How many of its bytes have been read.
    void update(std::uint64_t bytes);

    /// The file has been read, or reading it has stopped.
    void end();

private:
    std::ostream& out_;
    bool isShown_;
    Clock clock_;
    std::string name_;
    std::uint64_t size_ = 0; ///< 0 while there is nothing to be shown.
    bool isDrawn_ = false;
    std::chrono::steady_clock::time_point next_; ///< Not before this.
};

} // namespace consolidator::inspect
