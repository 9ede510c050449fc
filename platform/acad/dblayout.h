// AcDbLayout (dblayout.h): a layout tab ("Model", "Layout1"), kept in the layout dictionary and
// tied to its block table record (model or paper space).
#pragma once

#if defined(_WIN32)
#  include <dblayout.h>
#else

#include <string>

#include "platform/acad/dbmain.h"

class KD_PLATFORM_API AcDbLayout : public AcDbObject {
public:
  ACRX_DECLARE_MEMBERS(AcDbLayout);
  AcDbLayout();
  ~AcDbLayout() override;

  Acad::ErrorStatus getLayoutName(const ACHAR*& layoutName) const;
  Acad::ErrorStatus setLayoutName(const ACHAR* layoutName);
  int getTabOrder() const { return m_tabOrder; }
  void setTabOrder(int newOrder);
  AcDbObjectId getBlockTableRecordId() const { return m_blockTableRecord; }
  Acad::ErrorStatus setBlockTableRecordId(AcDbObjectId id);

private:
  std::wstring m_name;
  int m_tabOrder = 0;
  AcDbObjectId m_blockTableRecord;
};

#endif  // !_WIN32
