// AcGeContext (gegbl.h): the global tolerance that AcGe comparisons take by default.
#pragma once

#if defined(_WIN32)
#  include <gegbl.h>
#else

#include "platform/acad/getol.h"

struct AcGeContext {
  // Default tolerance of isEqualTo, normal, isZeroLength and the like (1e-10 for points and
  // vectors). Changing it changes every comparison that does not pass its own tolerance.
  KD_PLATFORM_API static AcGeTol gTol;
};

#endif  // !_WIN32
