// Elements of kernel descriptions: how to expect them, and how they show in failed tests.
#pragma once

#include "shared/schemas/Binding.h"
#include "shared/schemas/KernelDescription.h"
#include "shared/schemas/XmlWriter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>

namespace Mekto { // NOLINT(readability-identifier-naming)

template <typename Element>
concept Describable = std::is_function_v<decltype(Element::kind)>;

/// Shows an element as XML, without its own name.
template <Describable Element>
void PrintTo(const Element& element, std::ostream* out) {
    lmx60::writeDocument(*out, "element", Element::kind(), &element);
}

} // namespace Mekto

namespace lmx60 {

template <typename Value>
void PrintTo(const Attribute<Value>& attribute, std::ostream* out) {
    *out << (attribute.present ? "" : "absent ") << testing::PrintToString(attribute.value);
}

} // namespace lmx60

namespace consolidator::test {

/// An attribute that the document has.
inline Mekto::Text given(std::string_view value) {
    return {std::string(value), true};
}
inline Mekto::Number given(std::uint32_t value) {
    return {value, true};
}

/// The document in memory as a tree.
inline Mekto::Project projectOf(std::string_view document) {
    Mekto::Project project;
    project.readMemory(document);
    return project;
}

/// The tree of a project with one platform, one device and one core, which holds `content`.
inline Mekto::Core coreOf(std::string_view content) {
    const std::string document = "<project><platform><device><core>" + std::string(content) +
                                 "</core></device></platform></project>";
    return projectOf(document).platform.at(0).device.at(0).core.at(0);
}

/// The same with one kernel, which holds `content`.
inline Mekto::Kernel kernelElementOf(std::string_view content) {
    return coreOf("<kernel>" + std::string(content) + "</kernel>").kernel.at(0);
}

/// The document of a tree.
inline std::string documentOf(const Mekto::Project& project) {
    std::ostringstream out;
    project.write(out);
    return out.str();
}

} // namespace consolidator::test
