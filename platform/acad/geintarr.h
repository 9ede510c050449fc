// AcGeIntArray (geintarr.h): an AcArray of ints (hatch edge types).
#pragma once

#if defined(_WIN32)
#  include <geintarr.h>
#else

#include "platform/acad/acarray.h"

using AcGeIntArray = AcArray<int>;

#endif  // !_WIN32
