// The text that the consolidator prints to explain itself.
#pragma once

#include <string>
#include <string_view>

namespace consolidator::test {

/// The whole usage text of a program that was started by this name.
std::string usageText(std::string_view programName);

} // namespace consolidator::test
