// AcDbFullSubentPath (dbsubeid.h): the path to a sub-entity. The platform highlights whole
// entities only, so the path is kept as the null path.
#pragma once

#if defined(_WIN32)
#  include <dbsubeid.h>
#else

#include "platform/platform_api.h"

class AcDbFullSubentPath {
public:
  AcDbFullSubentPath() = default;
};

KD_PLATFORM_API extern const AcDbFullSubentPath kNullSubent;

#endif  // !_WIN32
