// AcGeVoidPointerArray (gevptar.h): an AcArray of untyped pointers (hatch loop edges).
#pragma once

#if defined(_WIN32)
#  include <gevptar.h>
#else

#include "platform/acad/acarray.h"

using AcGeVoidPointerArray = AcArray<void*>;

#endif  // !_WIN32
