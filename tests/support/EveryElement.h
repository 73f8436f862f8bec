// A kernel description document that leaves nothing out.
#pragma once

#include <string>

namespace consolidator::test {

/// A document with every element and every attribute, laid out as the writer does it. All values
/// differ and say where they stand, but for those that are numbers. What may repeat is there twice.
std::string everyElementDocument();

/// The same elements without any attribute.
std::string everyBareElementDocument();

} // namespace consolidator::test
