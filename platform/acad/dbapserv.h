// The host application's services (dbapserv.h): which database is the working one.
#pragma once

#if defined(_WIN32)
#  include <dbapserv.h>
#else

#include "platform/acad/dbmain.h"

class KD_PLATFORM_API AcDbHostApplicationServices : public AcRxObject {
public:
  ACRX_DECLARE_MEMBERS(AcDbHostApplicationServices);
  AcDbHostApplicationServices();
  ~AcDbHostApplicationServices() override;

  // The database ObjectARX calls work on when they are not given one: the current document's,
  // unless setWorkingDatabase chose another that still exists. Null when no headless application
  // is current.
  AcDbDatabase* workingDatabase() const;
  void setWorkingDatabase(AcDbDatabase* pDatabase);
};

// The services of the current headless application (never null).
KD_PLATFORM_API AcDbHostApplicationServices* acdbHostApplicationServices();

#endif  // !_WIN32
