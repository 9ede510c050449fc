// Result-buffer utilities (acutads.h).
#pragma once

#if defined(_WIN32)
#  include <acutads.h>
#else

#include "platform/acad/adscodes.h"
#include "platform/acad/adsdef.h"
#include "platform/platform_api.h"

// Builds a chain from (type, value) pairs ended by a lone 0. The type is a DXF group code or an
// RT code; the value's C type follows from it: text as const ACHAR*, reals as double, 16-bit and
// 32-bit integers as int, 64-bit integers as Adesk::Int64, points as a double array (ads_point),
// names as ads_name, binary chunks as const ads_binary*; RTLB, RTLE, RTDOTE, RTNIL, RTT and RTNONE
// take no value. A text value is copied. DXF code 0 is given as RTDXF0. Null for an unknown type
// (nothing is left allocated). The caller releases the chain with acutRelRb.
KD_PLATFORM_API struct resbuf* acutBuildList(int rtype, ...);
// One new link of the given type with a zeroed value; text and binary values are owned by the
// link once set, and released with it.
KD_PLATFORM_API struct resbuf* acutNewRb(int v);
// Releases a whole chain (every link after rb too), with its text and binary values. RTNORM.
KD_PLATFORM_API int acutRelRb(struct resbuf* rb);

#endif  // !_WIN32
