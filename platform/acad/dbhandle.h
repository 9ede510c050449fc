// AcDbHandle (dbhandle.h): an object's persistent 64-bit handle, unique in its database and kept
// when the drawing is saved and opened again. Its text form is upper-case hexadecimal without
// leading zeros ("1F").
#pragma once

#if defined(_WIN32)
#  include <dbhandle.h>
#else

#include <cstddef>

#include "platform/acad/adesk.h"

class KD_PLATFORM_API AcDbHandle {
public:
  AcDbHandle() = default;
  AcDbHandle(int lo, int hi)
      : m_value((Adesk::UInt64(Adesk::UInt32(hi)) << 32) | Adesk::UInt32(lo)) {}
  // From hexadecimal text (case ignored, at most 16 digits); anything else gives the null handle.
  explicit AcDbHandle(const ACHAR* hexString);

  bool isNull() const { return m_value == 0; }
  void setNull() { m_value = 0; }
  Adesk::UInt32 low() const { return Adesk::UInt32(m_value); }
  Adesk::UInt32 high() const { return Adesk::UInt32(m_value >> 32); }
  operator Adesk::UInt64() const { return m_value; }
  AcDbHandle& operator=(Adesk::UInt64 value) {
    m_value = value;
    return *this;
  }
  AcDbHandle& operator++() {
    ++m_value;
    return *this;
  }
  AcDbHandle operator++(int) {
    AcDbHandle before = *this;
    ++m_value;
    return before;
  }

  // Writes the text form with its terminator; nBufLen counts characters and must leave room for
  // 16 digits and the terminator (17), else the buffer gets an empty string (when it has room
  // for that).
  void getIntoAsciiBuffer(ACHAR* pBuf, size_t nBufLen) const;
  // The older form: pBuf must hold 17 characters.
  void getIntoAsciiBuffer(ACHAR* pBuf) const { getIntoAsciiBuffer(pBuf, 17); }

  bool operator==(const AcDbHandle& h) const { return m_value == h.m_value; }
  bool operator!=(const AcDbHandle& h) const { return m_value != h.m_value; }
  bool operator<(const AcDbHandle& h) const { return m_value < h.m_value; }
  bool operator>(const AcDbHandle& h) const { return m_value > h.m_value; }

private:
  Adesk::UInt64 m_value = 0;
};

#endif  // !_WIN32
