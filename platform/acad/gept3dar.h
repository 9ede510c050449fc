// AcGePoint3dArray (gept3dar.h): an AcArray of points.
#pragma once

#if defined(_WIN32)
#  include <gept3dar.h>
#else

#include "platform/acad/acarray.h"
#include "platform/acad/gepnt3d.h"

using AcGePoint3dArray = AcArray<AcGePoint3d>;

#endif  // !_WIN32
