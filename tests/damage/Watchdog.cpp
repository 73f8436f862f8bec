#include "tests/damage/Watchdog.h"

#include <cstdlib>
#include <iostream>

namespace consolidator::test {

Watchdog::Watchdog(std::chrono::seconds limit) : limit_(limit), thread_([this] { watch(); }) {}

Watchdog::~Watchdog() {
    {
        const std::lock_guard lock(mutex_);
        over_ = true;
    }
    ended_.notify_one();
    thread_.join();
}

void Watchdog::begin(const std::string& what) {
    const std::lock_guard lock(mutex_);
    what_ = what;
    begun_ = Clock::now();
}

void Watchdog::watch() {
    std::unique_lock lock(mutex_);
    while (!over_) {
        ended_.wait_until(lock, begun_ + limit_);
        if (!over_ && Clock::now() >= begun_ + limit_) {
            std::cerr << "no end after " << limit_.count() << " seconds: " << what_ << std::endl;
            std::abort();
        }
    }
}

} // namespace consolidator::test
