// Defines the run-time class members that ACRX_DECLARE_MEMBERS declares: one AcRxClass per class,
// made on first use, with its parent's. Headless parts that add drawing object classes (the land
// model's) use it too:
//
//   KD_ACRX_DEFINE_MEMBERS(AeccDbAlignment, AcDbEntity, L"AECC_ALIGNMENT")
#pragma once

#include "platform/acad/rxobject.h"

#define KD_ACRX_WIDEN_(text) L##text
#define KD_ACRX_WIDEN(text) KD_ACRX_WIDEN_(text)

#define KD_ACRX_DEFINE_MEMBERS(CLASS_NAME, PARENT_CLASS, DXF_NAME)                         \
  AcRxClass* CLASS_NAME::desc() {                                                          \
    static AcRxClass description(KD_ACRX_WIDEN(#CLASS_NAME), DXF_NAME, PARENT_CLASS::desc()); \
    return &description;                                                                   \
  }                                                                                        \
  AcRxClass* CLASS_NAME::isA() const { return CLASS_NAME::desc(); }
