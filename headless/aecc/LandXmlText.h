// UTF-8 (LandXML's text) to wide text (the drawing's) and back, for the LandXML exchange.
#pragma once

#include <string>
#include <string_view>

namespace headless::land {

// Invalid sequences become U+FFFD. Where wchar_t is 16 bits, characters beyond the basic plane
// become surrogate pairs.
inline std::wstring WideFromUtf8(std::string_view text) {
  std::wstring out;
  for (size_t i = 0; i < text.size();) {
    const auto byte = static_cast<unsigned char>(text[i]);
    char32_t code = 0xFFFD;
    size_t length = 1;
    if (byte < 0x80) {
      code = byte;
    } else if ((byte & 0xE0) == 0xC0) {
      length = 2;
      code = byte & 0x1F;
    } else if ((byte & 0xF0) == 0xE0) {
      length = 3;
      code = byte & 0x0F;
    } else if ((byte & 0xF8) == 0xF0) {
      length = 4;
      code = byte & 0x07;
    }
    if (length > 1) {
      bool valid = i + length <= text.size();
      for (size_t k = 1; valid && k < length; ++k) {
        const auto next = static_cast<unsigned char>(text[i + k]);
        valid = (next & 0xC0) == 0x80;
        code = (code << 6) | (next & 0x3F);
      }
      if (!valid) {
        code = 0xFFFD;
        length = 1;
      }
    }
    i += length;
    if constexpr (sizeof(wchar_t) == 2) {
      if (code > 0xFFFF) {
        code -= 0x10000;
        out.push_back(static_cast<wchar_t>(0xD800 + (code >> 10)));
        out.push_back(static_cast<wchar_t>(0xDC00 + (code & 0x3FF)));
        continue;
      }
    }
    out.push_back(static_cast<wchar_t>(code));
  }
  return out;
}

inline std::string Utf8FromWide(std::wstring_view text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    char32_t code = static_cast<char32_t>(text[i]);
    if constexpr (sizeof(wchar_t) == 2) {
      if (code >= 0xD800 && code < 0xDC00 && i + 1 < text.size()) {
        const auto low = static_cast<char32_t>(text[i + 1]);
        if (low >= 0xDC00 && low < 0xE000) {
          code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
          ++i;
        }
      }
    }
    if (code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) code = 0xFFFD;
    if (code < 0x80) {
      out.push_back(static_cast<char>(code));
    } else if (code < 0x800) {
      out.push_back(static_cast<char>(0xC0 | (code >> 6)));
      out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else if (code < 0x10000) {
      out.push_back(static_cast<char>(0xE0 | (code >> 12)));
      out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else {
      out.push_back(static_cast<char>(0xF0 | (code >> 18)));
      out.push_back(static_cast<char>(0x80 | ((code >> 12) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    }
  }
  return out;
}

}  // namespace headless::land
