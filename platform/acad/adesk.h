// ObjectARX's fixed-width types (adesk.h) and the wide character type of its strings.
#pragma once

#if defined(_WIN32)
#  include <adesk.h>
#else

#include <cstdint>

#include "platform/platform_api.h"

struct Adesk {
  using Int8 = std::int8_t;
  using Int16 = std::int16_t;
  using Int32 = std::int32_t;
  using Int64 = std::int64_t;
  using UInt8 = std::uint8_t;
  using UInt16 = std::uint16_t;
  using UInt32 = std::uint32_t;
  using UInt64 = std::uint64_t;
  using IntPtr = std::intptr_t;
  using UIntPtr = std::uintptr_t;
  using LongPtr = std::intptr_t;    // pointer-sized, as ads_name's halves
  using ULongPtr = std::uintptr_t;
  using IntDbId = std::int64_t;  // 64-bit on x64, as an object id's old form
  using Boolean = bool;
  static constexpr Boolean kFalse = false;
  static constexpr Boolean kTrue = true;
};

using ACHAR = wchar_t;

#endif  // !_WIN32
