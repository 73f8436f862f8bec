// The arguments of a kernel: its own, or the beginning of a list that many kernels share.
#pragma once

#include "model/Variable.h"
#include "shared/UniqueList.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>
#include <utility>
#include <variant>

namespace consolidator {

struct BySourceName {
    std::string_view operator()(const Variable& variable) const { return variable.sourceName; }
};

/// Variables, unique by source name as far as findOrAdd() has added them.
using VariableList = UniqueList<Variable, BySourceName>;

/// A list of arguments, unique by source name unless append() was told otherwise.
///
/// Each kernel of a kernel.xml has the arguments of all kernels before it and then its own: a
/// thousand kernels with four arguments each have two million, and a database of 150 MB has room
/// for them. In memory all are beginnings of one list, the last kernel's. A list that is shared is
/// never changed: whoever adds to a beginning gets a copy of it first.
class ArgumentList {
public:
    /// Starts empty.
    ArgumentList() = default;

    /// Takes over a whole list, for nobody else.
    explicit ArgumentList(VariableList own) : items_(std::move(own)) {}

    /// Starts as the first `count` elements of `list`, which has as many. All elements must have
    /// come by findOrAdd() and have no locations of their own, and `list` must not be changed any
    /// more when this object is given to others. Costs no more than a pointer.
    ArgumentList(std::shared_ptr<VariableList> list, std::size_t count)
        : items_(Beginning{std::move(list), count}) {}

    /// They hold until the list is changed.
    std::span<const Variable> items() const;

    /// Whether it is the beginning of a list that it may share with others.
    bool isShared() const { return std::holds_alternative<Beginning>(items_); }

    /// Whether this list and `other` are beginnings of the same shared list.
    bool sharesWith(const ArgumentList& other) const;

    /// The first argument of this source name, or null. Takes constant time on average.
    const Variable* find(std::string_view sourceName);

    /// Adds an argument without locations unless there is one of this source name.
    void add(std::string_view sourceName, std::string_view hardwareName, std::string_view typeText);

    /// Appends the argument, whether or not its source name is there already.
    Variable& append(Variable argument);

    /// Adds the arguments of `other` one by one, without their locations. Shares them instead where
    /// that comes to the same.
    void merge(const ArgumentList& other);

private:
    struct Beginning {
        std::shared_ptr<VariableList> list; ///< Null in an object that was moved from.
        std::size_t count = 0;

        std::span<const Variable> items() const;
    };

    /// The elements as a list that may be changed.
    VariableList& own();

    std::variant<VariableList, Beginning> items_;
};

} // namespace consolidator
