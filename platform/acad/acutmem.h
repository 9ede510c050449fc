// Memory of strings the ObjectARX API hands out (acutmem.h).
#pragma once

#if defined(_WIN32)
#  include <acutmem.h>
#else

#include "platform/acad/adesk.h"

// Frees a string that an API call allocated for the caller (AcDbEntity::layer, for one).
KD_PLATFORM_API void acutDelString(ACHAR*& pString);

#endif  // !_WIN32
