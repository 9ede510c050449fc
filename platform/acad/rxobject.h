// AcRxObject and AcRxClass (rxobject.h, rxboiler.h): the run-time class of every ObjectARX
// object, which is how code asks "is this entity a line?" (isKindOf, cast) without RTTI.
#pragma once

#if defined(_WIN32)
#  include <rxobject.h>
#  include <rxboiler.h>
#else

#include "platform/acad/adesk.h"

class KD_PLATFORM_API AcRxClass {
public:
  // A class is described once, by the library that implements it, with its parent's description.
  AcRxClass(const ACHAR* className, const ACHAR* dxfName, AcRxClass* parent);
  AcRxClass(const AcRxClass&) = delete;
  AcRxClass& operator=(const AcRxClass&) = delete;

  // "AcDbLine", "AcDbPolyline", ...
  const ACHAR* name() const { return m_name; }
  // The entity or object type of the class in DXF ("LINE", "LWPOLYLINE", ...); "" for classes
  // that have none of their own.
  const ACHAR* dxfName() const { return m_dxfName; }
  AcRxClass* myParent() const { return m_parent; }
  // True for this class and every class derived from it.
  bool isDerivedFrom(const AcRxClass* other) const;

private:
  const ACHAR* m_name;
  const ACHAR* m_dxfName;
  AcRxClass* m_parent;
};

class KD_PLATFORM_API AcRxObject {
public:
  virtual ~AcRxObject();

  static AcRxClass* desc();
  static AcRxObject* cast(const AcRxObject* inPtr) { return const_cast<AcRxObject*>(inPtr); }
  virtual AcRxClass* isA() const;
  bool isKindOf(const AcRxClass* aClass) const;
  // A new copy that the caller owns, or null for classes that cannot be copied.
  virtual AcRxObject* clone() const;

protected:
  AcRxObject() = default;
  AcRxObject(const AcRxObject&) = default;
  AcRxObject& operator=(const AcRxObject&) = default;
};

// Run-time class members of a class derived from AcRxObject: desc(), isA() and a checked cast
// that answers null for an object of another class.
#define ACRX_DECLARE_MEMBERS(CLASS_NAME)                                                   \
  static AcRxClass* desc();                                                                \
  AcRxClass* isA() const override;                                                         \
  static CLASS_NAME* cast(const AcRxObject* inPtr) {                                       \
    return (inPtr == nullptr || !inPtr->isKindOf(CLASS_NAME::desc()))                      \
               ? nullptr                                                                   \
               : static_cast<CLASS_NAME*>(const_cast<AcRxObject*>(inPtr));                 \
  }

#endif  // !_WIN32
