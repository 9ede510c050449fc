// The session's view of the active drawing: its land document, land database and roadway
// document. Each needs the matching application; callers check IsInitialized first.
#include "module/civil/Civil3dObject.h"

CComPtr<IAeccDocument> CCivil3dObject::GetLandDocument() {
  CComPtr<IAeccDocument> document;
  if (m_landApp == nullptr) return document;
  CComPtr<IAcadDocument> active;
  m_landApp->get_ActiveDocument(&active);
  if (active != nullptr) active->QueryInterface(__uuidof(IAeccDocument), reinterpret_cast<void**>(&document));
  return document;
}

CComPtr<IAeccDatabase> CCivil3dObject::GetLandDatabase() {
  CComPtr<IAeccDatabase> database;
  if (m_landApp == nullptr) return database;
  CComPtr<IAcadDocument> active;
  m_landApp->get_ActiveDocument(&active);
  if (active == nullptr) return database;
  CComPtr<IAcadDatabase> acadDatabase;
  if (active->get_Database(&acadDatabase) < 0 || acadDatabase == nullptr) return database;
  acadDatabase->QueryInterface(__uuidof(IAeccDatabase), reinterpret_cast<void**>(&database));
  return database;
}

CComPtr<IAeccRoadwayDocument> CCivil3dObject::GetRoadwayDocument() {
  CComPtr<IAeccRoadwayDocument> document;
  if (m_roadwayApp == nullptr) return document;
  CComPtr<IAcadDocument> active;
  m_roadwayApp->get_ActiveDocument(&active);
  if (active != nullptr)
    active->QueryInterface(__uuidof(IAeccRoadwayDocument), reinterpret_cast<void**>(&document));
  return document;
}
