#include "host/HostText.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace host {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

// One code point from UTF-8 at `i`, which moves past it.
char32_t DecodeUtf8(std::string_view text, std::size_t& i) {
  const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
  const unsigned char lead = byte(i++);
  if (lead < 0x80) return lead;
  int extra = 0;
  char32_t cp = 0;
  if ((lead & 0xE0) == 0xC0) {
    extra = 1;
    cp = lead & 0x1F;
  } else if ((lead & 0xF0) == 0xE0) {
    extra = 2;
    cp = lead & 0x0F;
  } else if ((lead & 0xF8) == 0xF0) {
    extra = 3;
    cp = lead & 0x07;
  } else {
    return kReplacement;
  }
  for (int k = 0; k < extra; ++k) {
    if (i >= text.size() || (byte(i) & 0xC0) != 0x80) return kReplacement;
    cp = (cp << 6) | (byte(i++) & 0x3F);
  }
  static constexpr char32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
  if (cp < kSmallest[extra] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return kReplacement;
  return cp;
}

void AppendUtf8(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (cp >> 18));
    out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

}  // namespace

std::wstring Widen(std::string_view utf8) {
  std::wstring out;
  for (std::size_t i = 0; i < utf8.size();) {
    const char32_t cp = DecodeUtf8(utf8, i);
    if constexpr (sizeof(wchar_t) == 2) {
      if (cp >= 0x10000) {
        out += static_cast<wchar_t>(0xD800 + ((cp - 0x10000) >> 10));
        out += static_cast<wchar_t>(0xDC00 + ((cp - 0x10000) & 0x3FF));
        continue;
      }
    }
    out += static_cast<wchar_t>(cp);
  }
  return out;
}

std::string Narrow(std::wstring_view wide) {
  std::string out;
  for (std::size_t i = 0; i < wide.size(); ++i) {
    char32_t cp = static_cast<char32_t>(wide[i]);
    if constexpr (sizeof(wchar_t) == 2) {
      cp &= 0xFFFF;
      if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < wide.size()) {
        const char32_t low = static_cast<char32_t>(wide[i + 1]) & 0xFFFF;
        if (low >= 0xDC00 && low <= 0xDFFF) {
          cp = 0x10000 + ((cp - 0xD800) << 10) + (low - 0xDC00);
          ++i;
        }
      }
    }
    if ((cp >= 0xD800 && cp <= 0xDFFF) || cp > 0x10FFFF) cp = kReplacement;
    AppendUtf8(out, cp);
  }
  return out;
}

std::string Fixed(double value, int decimals) {
  if (!std::isfinite(value)) return std::isnan(value) ? "nan" : (value > 0 ? "inf" : "-inf");
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
  std::string text = buffer;
  if (text.front() == '-' && text.find_first_not_of("-0.") == std::string::npos) text.erase(0, 1);
  return text;
}

std::string Short(double value) {
  if (!std::isfinite(value)) return Fixed(value, 0);
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, result.ptr);
}

std::string Brief(double value) {
  if (!std::isfinite(value)) return Fixed(value, 0);
  if (value == 0.0) return "0";
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%.3g", value);
  return buffer;
}

std::string StationText(double station, bool imperial, int decimals) {
  const double unit = imperial ? 100.0 : 1000.0;
  const bool negative = station < 0.0;
  // Round first so that 999.9996 shows as 1+000.000, not 0+1000.000.
  const double scale = std::pow(10.0, decimals);
  const double rounded = std::round(std::fabs(station) * scale) / scale;
  const double whole = std::floor(rounded / unit + 1e-12);
  double rest = rounded - whole * unit;
  if (rest < 0.0) rest = 0.0;
  std::string restText = Fixed(rest, decimals);
  const std::size_t integerDigits = imperial ? 2 : 3;
  const std::size_t point = restText.find('.');
  const std::size_t digits = point == std::string::npos ? restText.size() : point;
  if (digits < integerDigits) restText.insert(0, integerDigits - digits, '0');
  // Appended piece by piece: GCC 12 at -O3 misreads a prepend to a temporary as an overlap.
  std::string text = negative && rounded > 0.0 ? "-" : "";
  text += Fixed(whole, 0);
  text += '+';
  text += restText;
  return text;
}

std::string Count(std::size_t n, std::string_view one, std::string_view many) {
  return std::to_string(n) + " " + std::string(n == 1 ? one : many);
}

std::string FileSafe(std::string_view name) {
  std::string out;
  for (std::size_t i = 0; i < name.size();) {
    const unsigned char c = static_cast<unsigned char>(name[i]);
    if (c >= 0x80) {
      DecodeUtf8(name, i);
      out += '_';
      continue;
    }
    ++i;
    const bool keep = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
                      c == '_' || (c == '.' && !out.empty());
    out += keep ? static_cast<char>(c) : '_';
  }
  return out.empty() ? "unnamed" : out;
}

}  // namespace host
