// Records that end early, at every length at which a file can end, for the readers that keep what
// came before the end.
//
//     const Stages<HardwareVariable> stages{
//         {text("/top/k/n"), [](HardwareVariable& read) { read.name = "/top/k/n"; }},
//         {u32(0), [](HardwareVariable& read) { read.valid = true; }}};
//     expectEveryPrefixRead(stages, HardwareVariable::read);
#pragma once

#include "tests/support/MemoryFile.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

/// A piece of a record that a reader takes whole or not at all.
template <typename Fields>
struct Stage {
    std::string bytes;                   ///< What stands in the file.
    std::function<void(Fields&)> effect; ///< What the reader holds more once all of them came.
};

/// A record from its first byte to its last.
template <typename Fields>
using Stages = std::vector<Stage<Fields>>;

template <typename Fields>
std::string bytesOf(const Stages<Fields>& stages) {
    std::string bytes;
    for (const Stage<Fields>& stage : stages) {
        bytes += stage.bytes;
    }
    return bytes;
}

/// What a reader holds that began with default fields and got the first `length` bytes.
template <typename Fields>
Fields fieldsAfter(const Stages<Fields>& stages, std::size_t length) {
    Fields fields;
    for (const Stage<Fields>& stage : stages) {
        if (stage.bytes.size() > length) {
            break;
        }
        length -= stage.bytes.size();
        stage.effect(fields);
    }
    return fields;
}

/// Lets read(FILE*) read the record cut off at every length from nothing to all of it, and compares
/// the fields that it returns.
template <typename Fields, typename Read>
void expectEveryPrefixRead(const Stages<Fields>& stages, Read read) {
    const std::string whole = bytesOf(stages);
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const FileHandle file = fileWith(std::string_view(whole).substr(0, length));
        EXPECT_EQ(read(file.get()), fieldsAfter(stages, length)) << "after " << length << " bytes";
    }
}

} // namespace consolidator::test
