// Whether the product is built with the address sanitizer, which takes memory and addresses of its
// own.
#pragma once

// The build says so: what tests are compiled with does not tell. Only the preprocessor can leave a
// replaced operator new out.
#ifndef CONSOLIDATOR_SANITIZED
#define CONSOLIDATOR_SANITIZED 0
#endif

namespace consolidator::test {

constexpr bool sanitized = CONSOLIDATOR_SANITIZED == 1;

} // namespace consolidator::test
