#include "headless/acad/DxfFormat.h"

namespace headless::dxf {

namespace {

constexpr char kHex[] = "0123456789ABCDEF";

void AppendEscape(std::string& out, unsigned unit) {
  out += "\\U+";
  for (int shift = 12; shift >= 0; shift -= 4) out.push_back(kHex[(unit >> shift) & 0xFu]);
}

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace

std::string Out::Encode(const std::wstring& value) {
  std::string out;
  out.reserve(value.size());
  for (wchar_t wc : value) {
    const auto c = static_cast<std::uint32_t>(wc);
    if (c == '^') {
      out += "^ ";
    } else if (c < 32) {
      out.push_back('^');
      out.push_back(static_cast<char>(c + 64));
    } else if (c < 127) {
      out.push_back(static_cast<char>(c));
    } else if (c > 0xFFFF) {
      const std::uint32_t v = c - 0x10000;
      AppendEscape(out, 0xD800 + (v >> 10));
      AppendEscape(out, 0xDC00 + (v & 0x3FF));
    } else {
      AppendEscape(out, c);
    }
  }
  return out;
}

std::wstring Decode(std::string_view value) {
  std::wstring out;
  out.reserve(value.size());
  for (std::size_t i = 0; i < value.size();) {
    const auto c = static_cast<unsigned char>(value[i]);
    if (c == '^' && i + 1 < value.size()) {
      out.push_back(value[i + 1] == ' ' ? L'^' : static_cast<wchar_t>(static_cast<unsigned char>(value[i + 1]) - 64));
      i += 2;
    } else if (c == '\\' && i + 6 < value.size() + 0 && (value[i + 1] == 'U' || value[i + 1] == 'u') &&
               value[i + 2] == '+') {
      unsigned unit = 0;
      bool ok = true;
      for (std::size_t k = 3; k < 7; ++k) {
        const int h = HexValue(value[i + k]);
        ok = ok && h >= 0;
        unit = unit * 16 + static_cast<unsigned>(h < 0 ? 0 : h);
      }
      if (!ok) {
        out.push_back(L'\\');
        ++i;
        continue;
      }
      if (unit >= 0xDC00 && unit < 0xE000 && !out.empty() && static_cast<unsigned>(out.back()) >= 0xD800 &&
          static_cast<unsigned>(out.back()) < 0xDC00) {
        const unsigned high = static_cast<unsigned>(out.back()) - 0xD800;
        out.back() = static_cast<wchar_t>(0x10000 + (high << 10) + (unit - 0xDC00));
      } else {
        out.push_back(static_cast<wchar_t>(unit));
      }
      i += 7;
    } else if (c >= 0x80) {
      // UTF-8 of later releases.
      int extra = c >= 0xF0 ? 3 : c >= 0xE0 ? 2 : c >= 0xC0 ? 1 : 0;
      std::uint32_t code = extra == 3 ? (c & 0x07u) : extra == 2 ? (c & 0x0Fu) : extra == 1 ? (c & 0x1Fu) : c;
      std::size_t k = 1;
      for (; k <= static_cast<std::size_t>(extra) && i + k < value.size(); ++k) {
        code = (code << 6) | (static_cast<unsigned char>(value[i + k]) & 0x3Fu);
      }
      out.push_back(static_cast<wchar_t>(code));
      i += k;
    } else {
      out.push_back(static_cast<wchar_t>(c));
      ++i;
    }
  }
  return out;
}

std::string Crypt(std::string_view line) {
  std::string out(line);
  for (char& c : out) {
    if (c != ' ') c = static_cast<char>(159 - static_cast<unsigned char>(c));
  }
  return out;
}

std::string EscapeCarets(std::string_view coded) {
  std::string out;
  out.reserve(coded.size() + 8);
  for (char c : coded) {
    out.push_back(c);
    if (c == '^') out.push_back(' ');
  }
  return out;
}

std::string UnescapeCarets(std::string_view value) {
  std::string out;
  out.reserve(value.size());
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] == '^' && i + 1 < value.size()) {
      out.push_back(value[i + 1] == ' ' ? '^' : static_cast<char>(value[i + 1] - 64));
      ++i;
    } else {
      out.push_back(value[i]);
    }
  }
  return out;
}

}  // namespace headless::dxf
