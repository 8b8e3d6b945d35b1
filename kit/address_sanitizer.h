#pragma once
// ZYL_ADDRESS_SANITIZER is 1 in a build with AddressSanitizer (GCC or Clang): the kit then gives
// memory of its own pools and mappings back to plain allocations, which the sanitizer watches.

#if defined(__SANITIZE_ADDRESS__)
#define ZYL_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZYL_ADDRESS_SANITIZER 1
#endif
#endif
