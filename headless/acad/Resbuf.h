// The kinds of value a result buffer carries, by its type code (a DXF group code or an RT code).
#pragma once

#include "platform/acad/adsdef.h"

namespace headless {

enum class ResKind {
  None,     // no value (RTLB, RTNIL, ...)
  Text,     // resval.rstring
  Point,    // resval.rpoint
  Real,     // resval.rreal
  Int16,    // resval.rint
  Int32,    // resval.rlong
  Int64,    // resval.mnInt64
  Name,     // resval.rlname: an entity (object id) or selection set name
  Binary,   // resval.rbinary
  Invalid,  // no such code
};

ResKind KindOfCode(int code);

// A copy of one link's value into a new link (text and binary values duplicated).
resbuf* CopyLink(const resbuf& link);

}  // namespace headless
