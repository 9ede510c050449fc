#include "landxml/internal/TextInput.h"

#include <algorithm>
#include <cstdint>

namespace landxml::internal {
namespace {

constexpr std::string_view kUtf8Bom = "\xEF\xBB\xBF";

char Lower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

bool SameName(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return Lower(x) == Lower(y); });
}

bool IsXmlSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// The encoding="..." of a leading XML declaration; "" when there is no declaration or it names
// no encoding.
std::string DeclaredEncoding(std::string_view text) {
  if (text.substr(0, 5) != "<?xml" || text.size() < 6 || !IsXmlSpace(text[5])) return {};
  const std::size_t close = text.find("?>");
  if (close == std::string_view::npos) return {};
  const std::string_view decl = text.substr(0, close);
  std::size_t at = decl.find("encoding");
  while (at != std::string_view::npos) {
    // Only the pseudo-attribute itself, not a word inside another value.
    if (at > 0 && IsXmlSpace(decl[at - 1])) break;
    at = decl.find("encoding", at + 1);
  }
  if (at == std::string_view::npos) return {};
  std::size_t i = at + 8;
  while (i < decl.size() && IsXmlSpace(decl[i])) ++i;
  if (i >= decl.size() || decl[i] != '=') return {};
  ++i;
  while (i < decl.size() && IsXmlSpace(decl[i])) ++i;
  if (i >= decl.size() || (decl[i] != '"' && decl[i] != '\'')) return {};
  const char quote = decl[i++];
  const std::size_t end = decl.find(quote, i);
  if (end == std::string_view::npos) return {};
  return std::string(decl.substr(i, end - i));
}

bool IsUtf8Name(std::string_view name) { return SameName(name, "utf-8") || SameName(name, "utf8"); }
bool IsAsciiName(std::string_view name) { return SameName(name, "us-ascii") || SameName(name, "ascii"); }
bool IsLatin1Name(std::string_view name) {
  for (std::string_view n :
       {"iso-8859-1", "iso_8859-1", "iso8859-1", "latin1", "latin-1", "l1", "iso-ir-100", "cp819", "ibm819"})
    if (SameName(name, n)) return true;
  return false;
}

}  // namespace

bool DecodeDocument(std::string_view bytes, CDecodedText& decoded, std::string& error) {
  decoded = {};
  const bool bom = bytes.substr(0, 3) == kUtf8Bom;
  const std::string_view body = bom ? bytes.substr(3) : bytes;
  if (bytes.size() >= 2 && ((bytes[0] == '\xFF' && bytes[1] == '\xFE') || (bytes[0] == '\xFE' && bytes[1] == '\xFF'))) {
    error = "the document is UTF-16 (its byte-order mark says so); UTF-8 and ISO-8859-1 are read";
    return false;
  }
  if (bytes.size() >= 2 && ((bytes[0] == '\0' && bytes[1] == '<') || (bytes[0] == '<' && bytes[1] == '\0'))) {
    error = "the document is UTF-16 or UTF-32 without a byte-order mark; UTF-8 and ISO-8859-1 are read";
    return false;
  }
  const std::string declared = DeclaredEncoding(body);
  if (declared.empty() || IsUtf8Name(declared) || IsAsciiName(declared)) {
    decoded.text = bytes;
    decoded.encoding = declared.empty() ? "UTF-8" : declared;
    return true;
  }
  if (!IsLatin1Name(declared)) {
    error = "encoding \"" + declared + "\" is not read (UTF-8, US-ASCII and ISO-8859-1 are)";
    return false;
  }
  if (bom) {
    error = "the byte-order mark says UTF-8 but the declaration says \"" + declared + "\"";
    return false;
  }
  decoded.encoding = declared;
  const auto high =
      std::find_if(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
  if (high == bytes.end()) {
    decoded.text = bytes;  // pure ASCII reads the same in both
    return true;
  }
  // Each Latin-1 byte is the code point of the same value: two bytes in UTF-8 from 0x80 up.
  // Line breaks keep their count, so line numbers still match the file's.
  std::string& out = decoded.owned;
  out.reserve(bytes.size() + bytes.size() / 8);
  out.append(bytes.begin(), high);
  for (auto it = high; it != bytes.end(); ++it) {
    const auto c = static_cast<unsigned char>(*it);
    if (c < 0x80) {
      out.push_back(static_cast<char>(c));
    } else {
      out.push_back(static_cast<char>(0xC0 | (c >> 6)));
      out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    }
  }
  decoded.text = out;
  return true;
}

std::size_t LineAt(std::string_view text, std::size_t offset) {
  offset = std::min(offset, text.size());
  std::size_t line = 1;
  for (std::size_t i = 0; i < offset; ++i) {
    if (text[i] == '\n') {
      ++line;
    } else if (text[i] == '\r' && (i + 1 >= text.size() || text[i + 1] != '\n')) {
      ++line;
    }
  }
  return line;
}

std::string ElementNameAt(std::string_view text, std::size_t offset) {
  if (text.empty()) return {};
  auto nameStart = [](char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == ':' ||
           static_cast<unsigned char>(c) >= 0x80;
  };
  auto nameChar = [&](char c) { return nameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.'; };
  std::size_t i = std::min(offset, text.size() - 1);
  for (;;) {
    if (text[i] == '<' && i + 1 < text.size()) {
      std::size_t start = i + 1;
      if (start < text.size() && text[start] == '/') ++start;
      if (start < text.size() && nameStart(text[start])) {
        std::size_t end = start;
        while (end < text.size() && nameChar(text[end])) ++end;
        const std::string_view name = text.substr(start, end - start);
        if (IsValidUtf8(name)) return std::string(name);
      }
    }
    if (i == 0) return {};
    --i;
  }
}

bool IsValidUtf8(std::string_view s) {
  const auto* p = reinterpret_cast<const unsigned char*>(s.data());
  const auto* end = p + s.size();
  while (p < end) {
    const unsigned char c = *p;
    if (c < 0x80) {
      ++p;
      continue;
    }
    int extra = 0;
    std::uint32_t cp = 0;
    if (c >= 0xC2 && c <= 0xDF) {
      extra = 1;
      cp = c & 0x1F;
    } else if (c >= 0xE0 && c <= 0xEF) {
      extra = 2;
      cp = c & 0x0F;
    } else if (c >= 0xF0 && c <= 0xF4) {
      extra = 3;
      cp = c & 0x07;
    } else {
      return false;
    }
    if (end - p <= extra) return false;
    for (int k = 1; k <= extra; ++k) {
      if ((p[k] & 0xC0) != 0x80) return false;
      cp = (cp << 6) | (p[k] & 0x3F);
    }
    // Overlong forms, surrogates and code points past U+10FFFF.
    if ((extra == 2 && cp < 0x800) || (extra == 3 && (cp < 0x10000 || cp > 0x10FFFF)) || (cp >= 0xD800 && cp <= 0xDFFF))
      return false;
    p += extra + 1;
  }
  return true;
}

}  // namespace landxml::internal
