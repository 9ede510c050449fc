// Numbers as XML Schema writes them (xs:double, xs:integer), read without locale and without
// allocating: the bulk of a LandXML file is point lists.
#pragma once

#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <system_error>

namespace landxml::internal {

inline bool IsXmlSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// Reads one double from [p, end) and moves p past it. XML Schema spellings: an optional sign,
// digits with an optional point ("0." is fine) and exponent, "INF", "-INF". NaN is refused:
// nothing in a LandXML geometry means "not a number".
inline bool ReadDouble(const char*& p, const char* end, double& value) {
  const char* s = p;
  if (s < end && *s == '+') ++s;  // from_chars takes no plus sign
  const auto [next, ec] = std::from_chars(s, end, value, std::chars_format::general);
  if (ec != std::errc() || std::isnan(value)) return false;
  p = next;
  return true;
}

inline void SkipSpace(const char*& p, const char* end) {
  while (p < end && IsXmlSpace(*p)) ++p;
}

// A whole value (blanks around it allowed) as one double.
inline bool ParseDouble(std::string_view text, double& value) {
  const char* p = text.data();
  const char* end = p + text.size();
  SkipSpace(p, end);
  if (!ReadDouble(p, end, value)) return false;
  SkipSpace(p, end);
  return p == end;
}

// A whole value (blanks around it allowed) as an unsigned integer.
inline bool ParseUnsigned(std::string_view text, std::uint64_t& value) {
  const char* p = text.data();
  const char* end = p + text.size();
  SkipSpace(p, end);
  if (p < end && *p == '+') ++p;
  const auto [next, ec] = std::from_chars(p, end, value);
  if (ec != std::errc()) return false;
  p = next;
  SkipSpace(p, end);
  return p == end;
}

// Walks a blank-separated list of numbers.
class CNumberList {
public:
  explicit CNumberList(std::string_view text) : p_(text.data()), end_(text.data() + text.size()) {}

  // Next number into `value`; false at the end of the list or at something that is not a number
  // (tell them apart with Failed()).
  bool Next(double& value) {
    SkipSpace(p_, end_);
    if (p_ == end_) return false;
    if (!ReadDouble(p_, end_, value) || (p_ < end_ && !IsXmlSpace(*p_))) {
      failed_ = true;
      return false;
    }
    return true;
  }
  bool NextUnsigned(std::uint64_t& value) {
    SkipSpace(p_, end_);
    if (p_ == end_) return false;
    const auto [next, ec] = std::from_chars(p_, end_, value);
    if (ec != std::errc() || (next < end_ && !IsXmlSpace(*next))) {
      failed_ = true;
      return false;
    }
    p_ = next;
    return true;
  }
  bool Failed() const { return failed_; }

private:
  const char* p_;
  const char* end_;
  bool failed_ = false;
};

}  // namespace landxml::internal
