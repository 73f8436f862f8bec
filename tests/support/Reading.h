// What readers leave behind that never print anything.
//
//     const Reading reading = readText<HLSFile>("RTL 1 state (x)\n");
//     const Reading other = readFile<RAMFile>(directory.write("ram.rpt", text), projectKernels);
#pragma once

#include "consolidated/Diagnostic.h"
#include "model/Kernel.h"
#include "model/Variable.h"
#include "tests/support/FailingSource.h"
#include "tests/support/ReaderFindings.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <span>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace consolidator::test {

/// All that a read left behind.
struct Reading {
    bool succeeded = false;
    std::vector<Kernel> kernels;
    Diagnostic diagnostic;

    /// Where and why the read stopped.
    Finding stop() const { return diagnostic.stopped().value_or(stopAt(0, "not stopped")); }
};

/// Lets a reader parse a source, a path or a stream buffer, that must be open. `context` is what
/// the reader is made with beside it. That nothing is printed is part of every test.
template <typename Reader, typename Source, typename... Context>
Reading readingOf(Source source, const Context&... context) {
    std::ostringstream errors;
    Reader reader(std::move(source), context..., errors);
    EXPECT_TRUE(reader.isOpen());
    Reading result;
    result.succeeded = reader.parse();
    result.kernels = reader.kernels();
    result.diagnostic = reader.diagnostic();
    EXPECT_EQ(errors.str(), "");
    return result;
}

template <typename Reader, typename... Context>
Reading readFile(const std::string& path, const Context&... context) {
    return readingOf<Reader>(path, context...);
}

template <typename Reader, typename... Context>
Reading readText(const std::string& text, const Context&... context) {
    return readingOf<Reader>(std::make_unique<std::stringbuf>(text), context...);
}

/// Lets a reader parse a text behind which reading fails.
template <typename Reader, typename... Context>
Reading readBroken(const std::string& text, const Context&... context) {
    return readingOf<Reader>(std::make_unique<FailingSource>(text), context...);
}

/// Source name, hardware name and type.
using VariableTexts = std::array<std::string, 3>;

inline std::vector<VariableTexts> textsOf(std::span<const Variable> variables) {
    std::vector<VariableTexts> result;
    result.reserve(variables.size());
    for (const Variable& variable : variables) {
        result.push_back({variable.sourceName, variable.hardwareName, variable.typeText});
    }
    return result;
}

} // namespace consolidator::test
