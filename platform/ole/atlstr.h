// ATL's CString for wide text (CStringW; CString is CStringW in the Unicode builds the module
// uses), with ATL's member names. Header-only; on Windows this is the system's atlstr.h.
//
// Format follows the Microsoft C runtime's wide printf: %s and %c take wide arguments, %S / %hs and
// %C / %hc narrow ones, %ld and %lu are 32 bits (long is 32 bits there), %I64d is 64 bits. A CString
// itself cannot be passed through "..." here (g++ refuses non-trivial objects): pass
// GetString() or (LPCWSTR)s. Case-insensitive comparison and case mapping change ASCII letters
// only, as the C runtime's default "C" locale does.
#pragma once

#if defined(_WIN32)
#  include <atlstr.h>
#else

#include <cstdarg>
#include <cstdio>
#include <cwchar>
#include <string>
#include <utility>
#include <vector>

#include "platform/ole/oleauto.h"

namespace ATL {

namespace detail {

inline wchar_t AsciiLower(wchar_t c) noexcept { return (c >= L'A' && c <= L'Z') ? static_cast<wchar_t>(c - L'A' + L'a') : c; }
inline wchar_t AsciiUpper(wchar_t c) noexcept { return (c >= L'a' && c <= L'z') ? static_cast<wchar_t>(c - L'a' + L'A') : c; }
inline bool IsSpace(wchar_t c) noexcept { return c == L' ' || (c >= L'\t' && c <= L'\r'); }

// Rewrites a Microsoft-style wide format for the C library's vswprintf.
inline std::wstring TranslateFormat(const wchar_t* format) {
  std::wstring out;
  const wchar_t* p = format;
  auto isDigit = [](wchar_t c) { return c >= L'0' && c <= L'9'; };
  while (*p != L'\0') {
    if (*p != L'%') {
      out += *p++;
      continue;
    }
    out += *p++;
    if (*p == L'%') {
      out += *p++;
      continue;
    }
    while (*p != L'\0' && std::wcschr(L"-+ #0", *p) != nullptr) out += *p++;
    if (*p == L'*') out += *p++;
    while (isDigit(*p)) out += *p++;
    if (*p == L'.') {
      out += *p++;
      if (*p == L'*') out += *p++;
      while (isDigit(*p)) out += *p++;
    }
    std::wstring size;
    if (p[0] == L'I' && p[1] == L'6' && p[2] == L'4') {
      size = L"ll", p += 3;
    } else if (p[0] == L'I' && p[1] == L'3' && p[2] == L'2') {
      p += 3;
    } else if (p[0] == L'I') {
      size = L"z", p += 1;
    } else if ((p[0] == L'l' && p[1] == L'l') || (p[0] == L'h' && p[1] == L'h')) {
      size.assign(p, 2), p += 2;
    } else if (*p != L'\0' && std::wcschr(L"hlLwjzt", *p) != nullptr) {
      size.assign(p, 1), p += 1;
    }
    const wchar_t conversion = *p;
    if (conversion == L'\0') break;
    ++p;
    switch (conversion) {
      case L's':
      case L'c':  // wide unless 'h'
        out += size == L"h" ? L"" : L"l";
        out += conversion;
        break;
      case L'S':
      case L'C':  // narrow unless 'l' or 'w'
        out += (size == L"l" || size == L"w") ? L"l" : L"";
        out += conversion == L'S' ? L's' : L'c';
        break;
      case L'd': case L'i': case L'o': case L'u': case L'x': case L'X':
        if (size == L"l" || size == L"w") size.clear();  // long is 32 bits in the Microsoft runtime
        out += size;
        out += conversion;
        break;
      default:  // reals, pointers: 'L' (long double) is double in the Microsoft runtime
        if (size == L"L" || size == L"w") size.clear();
        out += size;
        out += conversion;
        break;
    }
  }
  return out;
}

inline std::wstring FormatV(const wchar_t* format, va_list args) {
  if (format == nullptr) return std::wstring();
  const std::wstring translated = TranslateFormat(format);
  std::vector<wchar_t> buffer(256);
  for (;;) {
    va_list copy;
    va_copy(copy, args);
    const int n = std::vswprintf(buffer.data(), buffer.size(), translated.c_str(), copy);
    va_end(copy);
    if (n >= 0) return std::wstring(buffer.data(), static_cast<std::size_t>(n));
    if (buffer.size() >= (1u << 24)) return std::wstring();  // an encoding error, not a short buffer
    buffer.resize(buffer.size() * 2);
  }
}

// UTF-8 to wide text (the narrow encoding of this platform); bad bytes become U+FFFD.
inline std::wstring Widen(const char* text) {
  std::wstring out;
  if (text == nullptr) return out;
  const auto* s = reinterpret_cast<const unsigned char*>(text);
  while (*s != 0) {
    unsigned int c = *s++;
    int extra = c < 0x80 ? 0 : (c >> 5) == 0x6 ? 1 : (c >> 4) == 0xE ? 2 : (c >> 3) == 0x1E ? 3 : -1;
    if (extra < 0) {
      out += static_cast<wchar_t>(0xFFFD);
      continue;
    }
    if (extra > 0) c &= 0x3Fu >> extra;
    bool ok = true;
    for (int i = 0; i < extra; ++i) {
      if ((*s & 0xC0) != 0x80) {
        ok = false;
        break;
      }
      c = (c << 6) | (*s++ & 0x3F);
    }
    out += ok ? static_cast<wchar_t>(c) : static_cast<wchar_t>(0xFFFD);
  }
  return out;
}

}  // namespace detail

class CStringW {
 public:
  using XCHAR = wchar_t;
  using PXSTR = wchar_t*;
  using PCXSTR = const wchar_t*;

  CStringW() = default;
  CStringW(const wchar_t* psz) : text_(psz != nullptr ? psz : L"") {}
  CStringW(const wchar_t* pch, int nLength) : text_(pch != nullptr && nLength > 0 ? std::wstring(pch, nLength) : std::wstring()) {}
  CStringW(wchar_t ch, int nRepeat = 1) : text_(nRepeat > 0 ? static_cast<std::size_t>(nRepeat) : 0, ch) {}
  CStringW(const char* psz) : text_(detail::Widen(psz)) {}
  CStringW(const std::wstring& text) : text_(text) {}

  CStringW& operator=(const wchar_t* psz) {
    text_ = psz != nullptr ? psz : L"";
    return *this;
  }
  CStringW& operator=(const char* psz) {
    text_ = detail::Widen(psz);
    return *this;
  }
  CStringW& operator=(wchar_t ch) {
    text_.assign(1, ch);
    return *this;
  }

  int GetLength() const noexcept { return static_cast<int>(text_.size()); }
  const wchar_t* GetString() const noexcept { return text_.c_str(); }
  operator const wchar_t*() const noexcept { return text_.c_str(); }
  bool IsEmpty() const noexcept { return text_.empty(); }
  void Empty() noexcept { text_.clear(); }
  wchar_t GetAt(int iChar) const { return text_.at(static_cast<std::size_t>(iChar)); }
  void SetAt(int iChar, wchar_t ch) { text_.at(static_cast<std::size_t>(iChar)) = ch; }
  wchar_t operator[](int iChar) const { return GetAt(iChar); }

  // Ordinal comparison (<0, 0, >0), as wcscmp.
  int Compare(const wchar_t* psz) const noexcept { return std::wcscmp(text_.c_str(), psz != nullptr ? psz : L""); }
  int CompareNoCase(const wchar_t* psz) const noexcept {
    const wchar_t* a = text_.c_str();
    const wchar_t* b = psz != nullptr ? psz : L"";
    for (;; ++a, ++b) {
      const wchar_t ca = detail::AsciiLower(*a), cb = detail::AsciiLower(*b);
      if (ca != cb) return ca < cb ? -1 : 1;
      if (ca == L'\0') return 0;
    }
  }

  CStringW& MakeLower() {
    for (wchar_t& c : text_) c = detail::AsciiLower(c);
    return *this;
  }
  CStringW& MakeUpper() {
    for (wchar_t& c : text_) c = detail::AsciiUpper(c);
    return *this;
  }
  CStringW& MakeReverse() {
    text_.assign(text_.rbegin(), text_.rend());
    return *this;
  }
  CStringW& TrimLeft() {
    std::size_t i = 0;
    while (i < text_.size() && detail::IsSpace(text_[i])) ++i;
    text_.erase(0, i);
    return *this;
  }
  CStringW& TrimRight() {
    std::size_t n = text_.size();
    while (n > 0 && detail::IsSpace(text_[n - 1])) --n;
    text_.resize(n);
    return *this;
  }
  CStringW& Trim() { return TrimRight().TrimLeft(); }

  // Position of the first match at or after iStart, or -1.
  int Find(wchar_t ch, int iStart = 0) const noexcept {
    if (iStart < 0 || iStart > GetLength()) return -1;
    const std::size_t at = text_.find(ch, static_cast<std::size_t>(iStart));
    return at == std::wstring::npos ? -1 : static_cast<int>(at);
  }
  int Find(const wchar_t* pszSub, int iStart = 0) const noexcept {
    if (pszSub == nullptr || iStart < 0 || iStart > GetLength()) return -1;
    const std::size_t at = text_.find(pszSub, static_cast<std::size_t>(iStart));
    return at == std::wstring::npos ? -1 : static_cast<int>(at);
  }
  int ReverseFind(wchar_t ch) const noexcept {
    const std::size_t at = text_.rfind(ch);
    return at == std::wstring::npos ? -1 : static_cast<int>(at);
  }

  // Substrings clamp their arguments to the text, as ATL does.
  CStringW Left(int nCount) const { return Mid(0, nCount); }
  CStringW Right(int nCount) const {
    if (nCount < 0) nCount = 0;
    if (nCount > GetLength()) nCount = GetLength();
    return CStringW(text_.substr(text_.size() - static_cast<std::size_t>(nCount)));
  }
  CStringW Mid(int iFirst) const { return Mid(iFirst, GetLength() - (iFirst < 0 ? 0 : iFirst)); }
  CStringW Mid(int iFirst, int nCount) const {
    if (iFirst < 0) iFirst = 0;
    if (nCount < 0) nCount = 0;
    if (iFirst > GetLength()) iFirst = GetLength();
    if (nCount > GetLength() - iFirst) nCount = GetLength() - iFirst;
    return CStringW(text_.substr(static_cast<std::size_t>(iFirst), static_cast<std::size_t>(nCount)));
  }

  int Replace(wchar_t chOld, wchar_t chNew) {
    int count = 0;
    for (wchar_t& c : text_)
      if (c == chOld) c = chNew, ++count;
    return count;
  }
  int Replace(const wchar_t* pszOld, const wchar_t* pszNew) {
    if (pszOld == nullptr || *pszOld == L'\0') return 0;
    const std::wstring from(pszOld), to(pszNew != nullptr ? pszNew : L"");
    int count = 0;
    for (std::size_t at = text_.find(from); at != std::wstring::npos; at = text_.find(from, at + to.size())) {
      text_.replace(at, from.size(), to);
      ++count;
    }
    return count;
  }
  int Remove(wchar_t chRemove) {
    const std::size_t before = text_.size();
    std::erase(text_, chRemove);
    return static_cast<int>(before - text_.size());
  }
  int Insert(int iIndex, wchar_t ch) { return Insert(iIndex, std::wstring(1, ch).c_str()); }
  int Insert(int iIndex, const wchar_t* psz) {
    if (iIndex < 0) iIndex = 0;
    if (iIndex > GetLength()) iIndex = GetLength();
    text_.insert(static_cast<std::size_t>(iIndex), psz != nullptr ? psz : L"");
    return GetLength();
  }
  int Delete(int iIndex, int nCount = 1) {
    if (iIndex < 0) iIndex = 0;
    if (nCount > 0 && iIndex < GetLength()) text_.erase(static_cast<std::size_t>(iIndex), static_cast<std::size_t>(nCount));
    return GetLength();
  }
  // The next token after iStart separated by any of pszTokens; iStart becomes -1 at the end.
  CStringW Tokenize(const wchar_t* pszTokens, int& iStart) const {
    if (iStart < 0 || pszTokens == nullptr) {
      iStart = -1;
      return CStringW();
    }
    const std::size_t first = text_.find_first_not_of(pszTokens, static_cast<std::size_t>(iStart));
    if (first == std::wstring::npos || *pszTokens == L'\0') {
      if (*pszTokens == L'\0' && static_cast<std::size_t>(iStart) < text_.size()) {
        CStringW rest(text_.substr(static_cast<std::size_t>(iStart)));
        iStart = GetLength();
        return rest;
      }
      iStart = -1;
      return CStringW();
    }
    std::size_t end = text_.find_first_of(pszTokens, first);
    if (end == std::wstring::npos) end = text_.size();
    iStart = static_cast<int>(end < text_.size() ? end + 1 : end);
    return CStringW(text_.substr(first, end - first));
  }

  void Format(const wchar_t* pszFormat, ...) {
    va_list args;
    va_start(args, pszFormat);
    text_ = detail::FormatV(pszFormat, args);
    va_end(args);
  }
  void AppendFormat(const wchar_t* pszFormat, ...) {
    va_list args;
    va_start(args, pszFormat);
    text_ += detail::FormatV(pszFormat, args);
    va_end(args);
  }
  void FormatV(const wchar_t* pszFormat, va_list args) { text_ = detail::FormatV(pszFormat, args); }

  void Append(const wchar_t* psz) { text_ += psz != nullptr ? psz : L""; }
  void AppendChar(wchar_t ch) { text_ += ch; }
  CStringW& operator+=(const CStringW& str) {
    text_ += str.text_;
    return *this;
  }
  CStringW& operator+=(const wchar_t* psz) {
    Append(psz);
    return *this;
  }
  CStringW& operator+=(wchar_t ch) {
    text_ += ch;
    return *this;
  }

  // Room for at least nMinBufLength characters (and a terminator) to write into; call
  // ReleaseBuffer afterwards, with the new length or -1 to measure up to the first zero.
  wchar_t* GetBuffer(int nMinBufLength = 0) {
    if (nMinBufLength > GetLength()) text_.resize(static_cast<std::size_t>(nMinBufLength));
    return text_.data();
  }
  wchar_t* GetBufferSetLength(int nLength) {
    text_.resize(nLength > 0 ? static_cast<std::size_t>(nLength) : 0);
    return text_.data();
  }
  void ReleaseBuffer(int nNewLength = -1) {
    if (nNewLength < 0) nNewLength = static_cast<int>(std::wcslen(text_.c_str()));
    if (nNewLength < GetLength()) text_.resize(static_cast<std::size_t>(nNewLength));
  }

  // A new BSTR with this text (the caller frees it); null when out of memory.
  BSTR AllocSysString() const { return ::SysAllocStringLen(text_.data(), static_cast<UINT>(text_.size())); }
  BSTR SetSysString(BSTR* pbstr) const {
    if (pbstr == nullptr) return nullptr;
    ::SysReAllocStringLen(pbstr, text_.data(), static_cast<UINT>(text_.size()));
    return *pbstr;
  }

  friend CStringW operator+(const CStringW& a, const CStringW& b) { return CStringW(a.text_ + b.text_); }
  friend CStringW operator+(const CStringW& a, const wchar_t* b) { return CStringW(a.text_ + (b != nullptr ? b : L"")); }
  friend CStringW operator+(const wchar_t* a, const CStringW& b) { return CStringW((a != nullptr ? a : L"") + b.text_); }
  friend CStringW operator+(const CStringW& a, wchar_t b) { return CStringW(a.text_ + b); }
  friend CStringW operator+(wchar_t a, const CStringW& b) { return CStringW(a + b.text_); }

  friend bool operator==(const CStringW& a, const CStringW& b) noexcept { return a.Compare(b) == 0; }
  friend bool operator==(const CStringW& a, const wchar_t* b) noexcept { return a.Compare(b) == 0; }
  friend bool operator<(const CStringW& a, const CStringW& b) noexcept { return a.Compare(b) < 0; }
  friend bool operator<(const CStringW& a, const wchar_t* b) noexcept { return a.Compare(b) < 0; }
  friend bool operator>(const CStringW& a, const CStringW& b) noexcept { return a.Compare(b) > 0; }
  friend bool operator<=(const CStringW& a, const CStringW& b) noexcept { return a.Compare(b) <= 0; }
  friend bool operator>=(const CStringW& a, const CStringW& b) noexcept { return a.Compare(b) >= 0; }

 private:
  std::wstring text_;
};

using CString = CStringW;

}  // namespace ATL

#ifndef _ATL_NO_AUTOMATIC_NAMESPACE
using namespace ATL;
#endif

#endif  // !_WIN32
