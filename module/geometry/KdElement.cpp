#include "module/geometry/KdElement.h"

#include <charconv>
#include <ostream>
#include <sstream>

#include "module/geometry/KdPoint.h"

namespace kdgeo {

std::wstring ToText(const CKdElement& element) {
  std::wostringstream out;
  element.Write(out);
  return out.str();
}

namespace details {

void WriteNumber(std::wostream& out, double value) {
  char buffer[64];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  for (const char* c = buffer; c != result.ptr; ++c) out.put(out.widen(*c));
}

void WritePoint(std::wostream& out, const CKdPoint& p) {
  out << L'(';
  WriteNumber(out, p.x);
  out << L", ";
  WriteNumber(out, p.y);
  out << L", ";
  WriteNumber(out, p.z);
  out << L')';
}

}  // namespace details
}  // namespace kdgeo
