// The pieces of the DXF text form that the writer and the reader share: group lines, numbers
// with 17 significant digits, text in the ANSI form of AC1018 files, handles, and the encoding of
// the ACIS data of 3D solids.
#pragma once

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

namespace headless::dxf {

inline constexpr const char* kVersion = "AC1018";
inline constexpr double kRadToDeg = 57.295779513082320876798154814105;
inline constexpr double kDegToRad = 0.017453292519943295769236907684886;

// Group lines as they are written: the code right-aligned in three places, then the value, each
// on a line of its own.
class Out {
public:
  explicit Out(std::string& text) : m_text(text) {}

  void Code(int code) {
    char buf[16];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, code);
    (void)ec;
    for (std::ptrdiff_t pad = 3 - (end - buf); pad > 0; --pad) m_text.push_back(' ');
    Append(buf, end, sizeof buf);
    m_text.push_back('\n');
  }
  void Str(int code, std::string_view value) {
    Code(code);
    m_text.append(value);
    m_text.push_back('\n');
  }
  void Wide(int code, const std::wstring& value) { Str(code, Encode(value)); }
  void Int(int code, long long value) {
    Code(code);
    char buf[24];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, value);
    (void)ec;
    Append(buf, end, sizeof buf);
    m_text.push_back('\n');
  }
  // 17 significant digits: what a save and a reopen need to lose nothing.
  void Real(int code, double value) {
    Code(code);
    char buf[32];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, value == 0.0 ? 0.0 : value, std::chars_format::general, 17);
    (void)ec;
    Append(buf, end, sizeof buf);
    m_text.push_back('\n');
  }
  void Point(int code, double x, double y, double z) {
    Real(code, x);
    Real(code + 10, y);
    Real(code + 20, z);
  }
  void Point2(int code, double x, double y) {
    Real(code, x);
    Real(code + 10, y);
  }
  void Handle(int code, std::uint64_t handle) {
    Code(code);
    char buf[24];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, handle, 16);
    (void)ec;
    for (char* c = buf; c != end; ++c)
      if (*c >= 'a' && *c <= 'f') *c = static_cast<char>(*c - 'a' + 'A');
    Append(buf, end, sizeof buf);
    m_text.push_back('\n');
  }

  // Text of an AC1018 file: ASCII, other characters as \U+XXXX, control characters in caret
  // form (^J for a line feed, "^ " for the caret itself), as AutoCAD writes them.
  static std::string Encode(const std::wstring& value);

private:
  // The length is bounded by the buffer's size, which also keeps GCC 12's -Wrestrict quiet.
  void Append(const char* begin, const char* end, std::size_t capacity) {
    std::size_t length = static_cast<std::size_t>(end - begin);
    if (length > capacity) length = capacity;
    m_text.append(begin, length);
  }

  std::string& m_text;
};

// The reverse of Out::Encode (UTF-8 text of later releases is taken as it is).
std::wstring Decode(std::string_view value);

// The ACIS text of a 3D solid is written with every character but the space c turned into
// 159 - c; the same operation undoes it.
std::string Crypt(std::string_view line);
// The caret of the coded text is written "^ ", as in every DXF string; and read back.
std::string EscapeCarets(std::string_view coded);
std::string UnescapeCarets(std::string_view value);

}  // namespace headless::dxf
