// Where the bits of a variable lie, for each instance of its kernel.
#pragma once

#include "model/LogicLocation.h"

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace consolidator {

/// A vector, by instance number, of an instance's locations.
///
/// Only a database that another tool wrote has any, and a project holds a million variables: so one
/// without locations takes the room of a pointer here, a third of what a vector does.
class InstanceLocations {
public:
    using value_type = std::vector<LogicLocation>;
    using const_iterator = const value_type*;

    InstanceLocations() = default;
    ~InstanceLocations() = default;
    InstanceLocations(InstanceLocations&&) noexcept = default;
    InstanceLocations& operator=(InstanceLocations&&) noexcept = default;

    // Not explicit: wherever a list of this kind is expected, a vector is one.
    InstanceLocations(std::vector<value_type> instances) { // NOLINT(google-explicit-constructor)
        if (!instances.empty()) {
            instances_ = std::make_unique<std::vector<value_type>>(std::move(instances));
        }
    }

    InstanceLocations(const InstanceLocations& other)
        : instances_(other.empty() ? nullptr
                                   : std::make_unique<std::vector<value_type>>(*other.instances_)) {
    }
    InstanceLocations& operator=(const InstanceLocations& other) {
        instances_ = InstanceLocations(other).instances_;
        return *this;
    }

    bool empty() const { return instances_ == nullptr; }
    std::size_t size() const { return empty() ? 0 : instances_->size(); }

    const_iterator begin() const { return empty() ? nullptr : instances_->data(); }
    const_iterator end() const { return begin() + size(); }

    /// The locations of an instance below size().
    const value_type& operator[](std::size_t instance) const { return (*instances_)[instance]; }
    value_type& operator[](std::size_t instance) { return (*instances_)[instance]; }

    /// Appends an instance without locations, to be filled.
    value_type& addInstance() {
        if (empty()) {
            instances_ = std::make_unique<std::vector<value_type>>(1);
            return instances_->front();
        }
        return instances_->emplace_back();
    }

    friend bool operator==(const InstanceLocations& left, const InstanceLocations& right) {
        return left.size() == right.size() &&
               (left.empty() || *left.instances_ == *right.instances_);
    }

private:
    std::unique_ptr<std::vector<value_type>> instances_; ///< Null, or not empty.
};

} // namespace consolidator
