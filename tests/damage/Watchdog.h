// Ends a test program whose current case does not come to an end.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace consolidator::test {

/// Watches one case after the other. A case that takes longer than the limit is named on standard
/// error, and the program is aborted.
class Watchdog {
public:
    explicit Watchdog(std::chrono::seconds limit);
    ~Watchdog();
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

    /// Begins a case, which ends the one before.
    void begin(const std::string& what);

private:
    using Clock = std::chrono::steady_clock;

    void watch();

    std::chrono::seconds limit_;
    std::mutex mutex_;
    std::condition_variable ended_;
    bool over_ = false;
    std::string what_;
    Clock::time_point begun_ = Clock::now();
    std::thread thread_; ///< Begins when all of the above is there.
};

} // namespace consolidator::test
