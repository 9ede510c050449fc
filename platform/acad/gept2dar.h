// AcGePoint2dArray (gept2dar.h): an AcArray of planar points.
#pragma once

#if defined(_WIN32)
#  include <gept2dar.h>
#else

#include "platform/acad/acarray.h"
#include "platform/acad/gepnt2d.h"

using AcGePoint2dArray = AcArray<AcGePoint2d>;

#endif  // !_WIN32
