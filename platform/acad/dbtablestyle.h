// AcDbTableStyle (dbtablestyle.h): a named table style, kept in the database's table style
// dictionary ("Standard" in a new drawing).
#pragma once

#if defined(_WIN32)
#  include <dbtablestyle.h>
#else

#include <string>

#include "platform/acad/dbmain.h"

class KD_PLATFORM_API AcDbTableStyle : public AcDbObject {
public:
  ACRX_DECLARE_MEMBERS(AcDbTableStyle);
  AcDbTableStyle();
  ~AcDbTableStyle() override;

  // A copy the caller frees with acutDelString.
  Acad::ErrorStatus getName(ACHAR*& pszName) const;
  Acad::ErrorStatus setName(const ACHAR* pszName);
  const ACHAR* description() const { return m_description.c_str(); }
  Acad::ErrorStatus setDescription(const ACHAR* pszDescription);

private:
  std::wstring m_name;
  std::wstring m_description;
};

#endif  // !_WIN32
