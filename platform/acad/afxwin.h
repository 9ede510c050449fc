// The MFC application object the host passes to the module, reduced to what the module uses:
// CCmdTarget::GetIDispatch, which gives the application's automation object (AcadApplication).
#pragma once

#if defined(_WIN32)
#  include <afxwin.h>
#else

#include "platform/ole/unknwn.h"

class KD_PLATFORM_API CCmdTarget {
public:
  CCmdTarget();
  virtual ~CCmdTarget();
  CCmdTarget(const CCmdTarget&) = delete;
  CCmdTarget& operator=(const CCmdTarget&) = delete;

  // The target's automation object, or null when it exposes none. With bAddRef FALSE the caller
  // gets no reference of its own and must not release it.
  LPDISPATCH GetIDispatch(BOOL bAddRef);

protected:
  // Where MFC builds the object from the class's dispatch map, the stand-in is handed the object
  // by whoever makes the target; the target keeps one reference until it is destroyed.
  void EnableAutomation(IDispatch* automationObject);

private:
  IDispatch* m_pDispatch = nullptr;
};

class KD_PLATFORM_API CWinApp : public CCmdTarget {
public:
  explicit CWinApp(const wchar_t* lpszAppName = nullptr);
  ~CWinApp() override;

  const wchar_t* m_pszAppName;
};

#endif  // !_WIN32
