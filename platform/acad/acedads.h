// Selection sets of the editor (acedads.h).
//
// A selection set is named by an ads_name and lives until acedSSFree; at most 128 sets may be
// open at once, as in AutoCAD. Sets are kept per headless application; the calls act on the
// application whose ObjectARX globals are current (see acdocman.h).
#pragma once

#if defined(_WIN32)
#  include <acedads.h>
#else

#include "platform/acad/adscodes.h"
#include "platform/acad/adsdef.h"

// Selects entities of the current space of the current document. str "C" (crossing): every
// entity that lies inside or crosses the rectangle of the corners pt1 and pt2 (ads_point, x and y
// in the world plane; z is ignored); "W" (window): entities wholly inside it; "X": every entity
// of the current space. Erased and invisible entities and, except for "X", entities on layers
// that are off or frozen are left out. RTNORM with ss set; RTERROR when nothing was selected, when
// 128 sets are open, for a mode that needs the user (str null) or that is not supported, and for
// any filter (filters are not supported).
KD_PLATFORM_API int acedSSGet(const ACHAR* str, const void* pt1, const void* pt2, const struct resbuf* filter,
                              ads_name ss);
// Number of entities in the set. RTNORM, or RTERROR for a name that is no open set.
KD_PLATFORM_API int acedSSLength(const ads_name sname, Adesk::Int32* len);
// The entity name at index i (0-based). RTNORM, or RTERROR for a bad set or index.
KD_PLATFORM_API int acedSSName(const ads_name ss, Adesk::Int32 i, ads_name entres);
// Frees the set. RTNORM, or RTERROR for a name that is no open set.
KD_PLATFORM_API int acedSSFree(const ads_name sname);

#endif  // !_WIN32
