// AcGeDoubleArray (gedblar.h): an AcArray of doubles (bulges, parameters).
#pragma once

#if defined(_WIN32)
#  include <gedblar.h>
#else

#include "platform/acad/acarray.h"

using AcGeDoubleArray = AcArray<double>;

#endif  // !_WIN32
