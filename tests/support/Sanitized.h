// Whether this is built with the address sanitizer, which takes memory and addresses of its own.
#pragma once

// Only the preprocessor can leave a replaced operator new out.
#if defined(__SANITIZE_ADDRESS__)
#define CONSOLIDATOR_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define CONSOLIDATOR_SANITIZED 1
#endif
#endif
#ifndef CONSOLIDATOR_SANITIZED
#define CONSOLIDATOR_SANITIZED 0
#endif

namespace consolidator::test {

constexpr bool sanitized = CONSOLIDATOR_SANITIZED == 1;

} // namespace consolidator::test
