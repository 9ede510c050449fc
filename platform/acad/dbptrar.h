// AcDbVoidPtrArray (dbptrar.h): untyped pointers, as explode hands out new entities.
#pragma once

#if defined(_WIN32)
#  include <dbptrar.h>
#else

#include "platform/acad/acarray.h"

using AcDbVoidPtrArray = AcArray<void*>;

#endif  // !_WIN32
