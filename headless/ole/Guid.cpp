// GUIDs: random version-4 generation and the registry text form "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}".
#include <sys/random.h>

#include <cerrno>
#include <cstring>
#include <random>

#include "platform/ole/combaseapi.h"

namespace {

constexpr int kGuidChars = 38;  // without the terminator

// Fills buffer from the kernel's random source (getrandom), falling back to std::random_device.
void RandomBytes(unsigned char* buffer, std::size_t size) noexcept {
  std::size_t filled = 0;
  while (filled < size) {
    const ssize_t got = getrandom(buffer + filled, size - filled, 0);
    if (got > 0) {
      filled += static_cast<std::size_t>(got);
    } else if (got < 0 && errno == EINTR) {
      continue;
    } else {
      break;
    }
  }
  if (filled == size) return;
  try {
    std::random_device device;
    while (filled < size) {
      const unsigned int word = device();
      for (unsigned int i = 0; i < sizeof word && filled < size; ++i)
        buffer[filled++] = static_cast<unsigned char>(word >> (8 * i));
    }
  } catch (...) {
    // No random source at all: the remaining bytes stay as they are.
  }
}

int HexValue(wchar_t c) noexcept {
  if (c >= L'0' && c <= L'9') return c - L'0';
  if (c >= L'a' && c <= L'f') return c - L'a' + 10;
  if (c >= L'A' && c <= L'F') return c - L'A' + 10;
  return -1;
}

// Reads `digits` hexadecimal digits at text[pos]; false on any other character.
bool ReadHex(const wchar_t* text, int pos, int digits, unsigned long* value) noexcept {
  unsigned long result = 0;
  for (int i = 0; i < digits; ++i) {
    const int v = HexValue(text[pos + i]);
    if (v < 0) return false;
    result = (result << 4) | static_cast<unsigned long>(v);
  }
  *value = result;
  return true;
}

// Parses exactly the braced registry form (digits in either case), nothing before or after.
bool ParseBraced(const wchar_t* text, GUID* out) noexcept {
  for (int i = 0; i <= kGuidChars; ++i)
    if (text[i] == L'\0' && i < kGuidChars) return false;  // too short; stops before reading past the end
  if (text[0] != L'{' || text[9] != L'-' || text[14] != L'-' || text[19] != L'-' || text[24] != L'-' ||
      text[37] != L'}' || text[kGuidChars] != L'\0')
    return false;
  GUID guid{};
  unsigned long v = 0;
  if (!ReadHex(text, 1, 8, &v)) return false;
  guid.Data1 = static_cast<ULONG>(v);
  if (!ReadHex(text, 10, 4, &v)) return false;
  guid.Data2 = static_cast<USHORT>(v);
  if (!ReadHex(text, 15, 4, &v)) return false;
  guid.Data3 = static_cast<USHORT>(v);
  static constexpr int kBytePositions[8] = {20, 22, 25, 27, 29, 31, 33, 35};
  for (int i = 0; i < 8; ++i) {
    if (!ReadHex(text, kBytePositions[i], 2, &v)) return false;
    guid.Data4[i] = static_cast<BYTE>(v);
  }
  *out = guid;
  return true;
}

}  // namespace

HRESULT CoCreateGuid(GUID* pguid) {
  if (pguid == nullptr) return E_INVALIDARG;
  unsigned char bytes[16];
  RandomBytes(bytes, sizeof bytes);
  GUID guid;
  std::memcpy(&guid.Data1, bytes, 4);
  std::memcpy(&guid.Data2, bytes + 4, 2);
  std::memcpy(&guid.Data3, bytes + 6, 2);
  std::memcpy(guid.Data4, bytes + 8, 8);
  guid.Data3 = static_cast<USHORT>((guid.Data3 & 0x0FFF) | 0x4000);  // version 4: random
  guid.Data4[0] = static_cast<BYTE>((guid.Data4[0] & 0x3F) | 0x80);  // variant 10xx (RFC 4122)
  *pguid = guid;
  return S_OK;
}

int StringFromGUID2(REFGUID rguid, LPOLESTR lpsz, int cchMax) {
  if (lpsz == nullptr || cchMax < kGuidChars + 1) return 0;
  static constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
  int pos = 0;
  auto put = [&](unsigned long value, int digits) {
    for (int i = digits - 1; i >= 0; --i) lpsz[pos++] = kDigits[(value >> (4 * i)) & 0xF];
  };
  lpsz[pos++] = L'{';
  put(rguid.Data1, 8);
  lpsz[pos++] = L'-';
  put(rguid.Data2, 4);
  lpsz[pos++] = L'-';
  put(rguid.Data3, 4);
  lpsz[pos++] = L'-';
  put(rguid.Data4[0], 2);
  put(rguid.Data4[1], 2);
  lpsz[pos++] = L'-';
  for (int i = 2; i < 8; ++i) put(rguid.Data4[i], 2);
  lpsz[pos++] = L'}';
  lpsz[pos++] = L'\0';
  return pos;
}

HRESULT CLSIDFromString(LPCOLESTR lpsz, LPCLSID pclsid) {
  if (pclsid == nullptr) return E_INVALIDARG;
  *pclsid = GUID_NULL;
  if (lpsz == nullptr) return S_OK;  // documented: null text gives CLSID_NULL
  if (lpsz[0] == L'{') return ParseBraced(lpsz, pclsid) ? S_OK : CO_E_CLASSSTRING;
  // Any other text is taken as a ProgID.
  return SUCCEEDED(CLSIDFromProgID(lpsz, pclsid)) ? S_OK : CO_E_CLASSSTRING;
}

HRESULT IIDFromString(LPCOLESTR lpsz, LPCLSID lpiid) {
  if (lpiid == nullptr) return E_INVALIDARG;
  *lpiid = GUID_NULL;
  if (lpsz == nullptr) return S_OK;  // documented: null text gives GUID_NULL
  // IIDs have no ProgIDs; badly formed text is E_INVALIDARG, as documented.
  return ParseBraced(lpsz, lpiid) ? S_OK : E_INVALIDARG;
}
