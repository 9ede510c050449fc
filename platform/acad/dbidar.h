// AcDbObjectIdArray (dbidar.h).
#pragma once

#if defined(_WIN32)
#  include <dbidar.h>
#else

#include "platform/acad/acarray.h"
#include "platform/acad/dbid.h"

using AcDbObjectIdArray = AcArray<AcDbObjectId>;

#endif  // !_WIN32
