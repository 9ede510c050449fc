// Result buffers: acutBuildList, acutNewRb, acutRelRb, and what each type code carries.
#include "headless/acad/Resbuf.h"

#include <cstdarg>
#include <cstring>
#include <cwchar>

#include "platform/acad/acutads.h"

namespace headless {

namespace {

bool In(int code, int lo, int hi) { return code >= lo && code <= hi; }

ResKind KindOfRtCode(int code) {
  switch (code) {
    case RTNONE:
    case RTVOID:
    case RTLB:
    case RTLE:
    case RTDOTE:
    case RTNIL:
    case RTT: return ResKind::None;
    case RTREAL:
    case RTANG:
    case RTORINT: return ResKind::Real;
    case RTPOINT:
    case RT3DPOINT: return ResKind::Point;
    case RTSHORT: return ResKind::Int16;
    case RTSTR:
    case RTDXF0: return ResKind::Text;
    case RTENAME:
    case RTPICKS: return ResKind::Name;
    case RTLONG: return ResKind::Int32;
    case RTLONG_PTR:
    case RTINT64: return ResKind::Int64;
    default: return ResKind::Invalid;
  }
}

ACHAR* CopyText(const ACHAR* text) {
  if (text == nullptr) text = L"";
  const size_t n = std::wcslen(text);
  auto* copy = new ACHAR[n + 1];
  std::wmemcpy(copy, text, n + 1);
  return copy;
}

ads_binary CopyBinary(const ads_binary& from) {
  ads_binary to{0, nullptr};
  if (from.clen > 0 && from.buf != nullptr) {
    to.clen = from.clen;
    to.buf = new char[static_cast<size_t>(from.clen)];
    std::memcpy(to.buf, from.buf, static_cast<size_t>(from.clen));
  }
  return to;
}

}  // namespace

// The value types of DXF group codes, as the DXF reference assigns them.
ResKind KindOfCode(int code) {
  if (code >= 5000) return KindOfRtCode(code);
  if (code == -1 || code == -2) return ResKind::Name;
  if (code == -3) return ResKind::None;
  if (code == -4) return ResKind::Text;
  if (In(code, 0, 9) || In(code, 100, 102) || code == 105 || In(code, 300, 309) || In(code, 320, 329) ||
      In(code, 410, 419) || In(code, 430, 439) || In(code, 470, 479) || code == 999 || In(code, 1000, 1003) ||
      code == 1005)
    return ResKind::Text;
  if (In(code, 10, 17) || In(code, 110, 112) || code == 210 || In(code, 1010, 1013)) return ResKind::Point;
  if (In(code, 38, 59) || In(code, 140, 149) || In(code, 460, 469) || In(code, 1040, 1042)) return ResKind::Real;
  if (In(code, 60, 79) || In(code, 170, 179) || In(code, 270, 299) || In(code, 370, 389) || In(code, 400, 409) ||
      code == 1070)
    return ResKind::Int16;
  if (In(code, 90, 99) || In(code, 420, 429) || In(code, 440, 459) || code == 1071) return ResKind::Int32;
  if (In(code, 160, 169)) return ResKind::Int64;
  if (In(code, 330, 369) || In(code, 390, 399) || In(code, 480, 481)) return ResKind::Name;
  if (In(code, 310, 319) || code == 1004) return ResKind::Binary;
  return ResKind::Invalid;
}

resbuf* CopyLink(const resbuf& link) {
  resbuf* copy = acutNewRb(link.restype);
  switch (KindOfCode(link.restype)) {
    case ResKind::Text: copy->resval.rstring = CopyText(link.resval.rstring); break;
    case ResKind::Binary: copy->resval.rbinary = CopyBinary(link.resval.rbinary); break;
    default: copy->resval = link.resval; break;
  }
  return copy;
}

}  // namespace headless

using headless::KindOfCode;
using headless::ResKind;

resbuf* acutNewRb(int v) {
  auto* rb = new resbuf;
  std::memset(rb, 0, sizeof(resbuf));
  rb->restype = static_cast<short>(v);
  return rb;
}

int acutRelRb(resbuf* rb) {
  while (rb != nullptr) {
    resbuf* next = rb->rbnext;
    switch (KindOfCode(rb->restype)) {
      case ResKind::Text: delete[] rb->resval.rstring; break;
      case ResKind::Binary: delete[] rb->resval.rbinary.buf; break;
      default: break;
    }
    delete rb;
    rb = next;
  }
  return RTNORM;
}

resbuf* acutBuildList(int rtype, ...) {
  va_list args;
  va_start(args, rtype);
  resbuf* head = nullptr;
  resbuf* tail = nullptr;
  for (int code = rtype; code != 0; code = va_arg(args, int)) {
    const ResKind kind = KindOfCode(code);
    if (kind == ResKind::Invalid || code < -32768 || code > 32767) {
      acutRelRb(head);
      head = nullptr;
      break;
    }
    resbuf* link = acutNewRb(code);
    switch (kind) {
      case ResKind::Text: {
        const ACHAR* text = va_arg(args, const ACHAR*);
        const size_t n = text == nullptr ? 0 : std::wcslen(text);
        link->resval.rstring = new ACHAR[n + 1];
        if (n > 0) std::wmemcpy(link->resval.rstring, text, n);
        link->resval.rstring[n] = L'\0';
        break;
      }
      case ResKind::Point: {
        const double* p = va_arg(args, const double*);
        if (p != nullptr)
          for (int i = 0; i < 3; ++i) link->resval.rpoint[i] = p[i];
        break;
      }
      case ResKind::Real: link->resval.rreal = va_arg(args, double); break;
      case ResKind::Int16: link->resval.rint = static_cast<short>(va_arg(args, int)); break;
      case ResKind::Int32: link->resval.rlong = static_cast<Adesk::Int32>(va_arg(args, int)); break;
      case ResKind::Int64: link->resval.mnInt64 = va_arg(args, Adesk::Int64); break;
      case ResKind::Name: {
        const Adesk::LongPtr* name = va_arg(args, const Adesk::LongPtr*);
        if (name != nullptr) {
          link->resval.rlname[0] = name[0];
          link->resval.rlname[1] = name[1];
        }
        break;
      }
      case ResKind::Binary: {
        const ads_binary* binary = va_arg(args, const ads_binary*);
        if (binary != nullptr && binary->clen > 0 && binary->buf != nullptr) {
          link->resval.rbinary.clen = binary->clen;
          link->resval.rbinary.buf = new char[static_cast<size_t>(binary->clen)];
          std::memcpy(link->resval.rbinary.buf, binary->buf, static_cast<size_t>(binary->clen));
        }
        break;
      }
      default: break;
    }
    if (tail == nullptr) {
      head = link;
    } else {
      tail->rbnext = link;
    }
    tail = link;
  }
  va_end(args);
  return head;
}
