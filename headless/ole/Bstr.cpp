// BSTR allocation with Windows' layout: a 32-bit byte count just before the text, the text, and a
// zero OLECHAR after it. The byte count, not a terminator, gives the length, so zeros may be held.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "platform/ole/oleauto.h"

namespace {

using Prefix = std::uint32_t;
static_assert(sizeof(Prefix) == 4, "the length prefix is 32 bits, as on Windows");
static_assert(alignof(OLECHAR) <= sizeof(Prefix), "text after the prefix stays aligned");

// Allocates room for `bytes` of text plus a terminating OLECHAR, all zeroed; null when the size
// cannot be represented (the prefix holds at most 2^32 - 1 bytes).
BSTR AllocateBytes(std::size_t bytes) noexcept {
  if (bytes > std::numeric_limits<Prefix>::max() - sizeof(Prefix) - 2 * sizeof(OLECHAR)) return nullptr;
  // Round the text up to whole OLECHARs so the terminator is aligned and a wide read of the
  // last (partial) character stays inside the block.
  const std::size_t textRoom = (bytes + sizeof(OLECHAR) - 1) / sizeof(OLECHAR) * sizeof(OLECHAR);
  auto* block = static_cast<unsigned char*>(std::calloc(1, sizeof(Prefix) + textRoom + sizeof(OLECHAR)));
  if (block == nullptr) return nullptr;
  const Prefix length = static_cast<Prefix>(bytes);
  std::memcpy(block, &length, sizeof length);
  return reinterpret_cast<BSTR>(block + sizeof(Prefix));
}

unsigned char* BlockOf(BSTR bstr) noexcept {
  return reinterpret_cast<unsigned char*>(bstr) - sizeof(Prefix);
}

Prefix ByteLength(BSTR bstr) noexcept {
  if (bstr == nullptr) return 0;
  Prefix length;
  std::memcpy(&length, BlockOf(bstr), sizeof length);
  return length;
}

std::size_t Length(const OLECHAR* psz) noexcept { return psz ? std::wcslen(psz) : 0; }

// Chars to bytes, or SIZE_MAX when it overflows (AllocateBytes then refuses it).
std::size_t CharsToBytes(std::size_t chars) noexcept {
  if (chars > std::numeric_limits<std::size_t>::max() / sizeof(OLECHAR))
    return std::numeric_limits<std::size_t>::max();
  return chars * sizeof(OLECHAR);
}

BSTR AllocChars(const OLECHAR* text, std::size_t chars) noexcept {
  BSTR result = AllocateBytes(CharsToBytes(chars));
  if (result != nullptr && text != nullptr) std::memcpy(result, text, chars * sizeof(OLECHAR));
  return result;
}

}  // namespace

BSTR SysAllocString(const OLECHAR* psz) {
  if (psz == nullptr) return nullptr;
  return AllocChars(psz, Length(psz));
}

BSTR SysAllocStringLen(const OLECHAR* strIn, UINT ui) { return AllocChars(strIn, ui); }

BSTR SysAllocStringByteLen(const char* psz, UINT len) {
  BSTR result = AllocateBytes(len);
  if (result != nullptr && psz != nullptr) std::memcpy(result, psz, len);
  return result;
}

INT SysReAllocString(BSTR* pbstr, const OLECHAR* psz) {
  if (pbstr == nullptr) return FALSE;
  // Allocate before freeing: psz may point into the old string.
  BSTR fresh = psz ? AllocChars(psz, Length(psz)) : nullptr;
  if (psz != nullptr && fresh == nullptr) return FALSE;
  SysFreeString(*pbstr);
  *pbstr = fresh;
  return TRUE;
}

INT SysReAllocStringLen(BSTR* pbstr, const OLECHAR* psz, UINT len) {
  if (pbstr == nullptr) return FALSE;
  BSTR fresh = AllocChars(psz, len);
  if (fresh == nullptr) return FALSE;
  SysFreeString(*pbstr);
  *pbstr = fresh;
  return TRUE;
}

void SysFreeString(BSTR bstrString) {
  if (bstrString != nullptr) std::free(BlockOf(bstrString));
}

UINT SysStringLen(BSTR pbstr) { return ByteLength(pbstr) / sizeof(OLECHAR); }

UINT SysStringByteLen(BSTR bstr) { return ByteLength(bstr); }
