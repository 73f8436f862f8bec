// How the product is built, as far as tests have to know it: the build says so, as what tests are
// compiled with does not tell.
#pragma once

// Only the preprocessor can leave a replaced operator new out.
#ifndef CONSOLIDATOR_SANITIZED
#define CONSOLIDATOR_SANITIZED 0
#endif

// The program, a path, that runs the built ones where they are for another machine.
#ifndef CONSOLIDATOR_EMULATOR
#define CONSOLIDATOR_EMULATOR ""
#endif

namespace consolidator::test {

/// With the address sanitizer, which takes memory and addresses of its own.
constexpr bool sanitized = CONSOLIDATOR_SANITIZED == 1;

/// For another machine; the emulator takes memory and time of its own.
constexpr bool emulated = *CONSOLIDATOR_EMULATOR != '\0';

} // namespace consolidator::test
