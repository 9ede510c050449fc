#include "platform/acad/afxwin.h"

CCmdTarget::CCmdTarget() = default;

CCmdTarget::~CCmdTarget() {
  if (m_pDispatch != nullptr) m_pDispatch->Release();
}

LPDISPATCH CCmdTarget::GetIDispatch(BOOL bAddRef) {
  if (m_pDispatch != nullptr && bAddRef) m_pDispatch->AddRef();
  return m_pDispatch;
}

void CCmdTarget::EnableAutomation(IDispatch* automationObject) {
  if (automationObject != nullptr) automationObject->AddRef();
  if (m_pDispatch != nullptr) m_pDispatch->Release();
  m_pDispatch = automationObject;
}

CWinApp::CWinApp(const wchar_t* lpszAppName) : m_pszAppName(lpszAppName) {}

CWinApp::~CWinApp() = default;
