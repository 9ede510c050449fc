// Civil 3D land type library: profiles of an alignment, their PVIs and vertical curves.
#pragma once

#include "platform/aecc/aecclandalignment.h"

#if !defined(_WIN32)

enum AeccProfileType : LONG {
  aeccExistingGround = 1,
  aeccFinishedGround = 2,
  aeccSuperimposed = 3,
};

enum AeccProfilePVICurveType : LONG {
  aeccNoCurve = 1,
  aeccCircular = 2,
  aeccParabola = 3,
  aeccAsymmetricParabola = 4,
};

enum AeccProfileVerticalCurveType : LONG {
  aeccSag = 1,
  aeccCrest = 2,
};

struct IAeccProfileStyle : IAeccStyle {};
OLE_DEFINE_UUIDOF(IAeccProfileStyle, 0x4AAA8486, 0xAC7F, 0x4838, 0x8E, 0x40, 0x5A, 0xF3, 0x82, 0xA1, 0x55, 0x08);
KD_AECC_NAMED_COLLECTION(IAeccProfileStyles, IAeccProfileStyle);
OLE_DEFINE_UUIDOF(IAeccProfileStyles, 0x87318995, 0x35F8, 0x45EE, 0x93, 0x69, 0x2F, 0xEA, 0x42, 0x1A, 0x46, 0xF9);

// A point of vertical intersection. Grades are rises per unit of station (0.02 for 2 %).
struct IAeccProfilePVI : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_Station(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Station(/*in*/ double pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Elevation(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Elevation(/*in*/ double pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_GradeIn(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_GradeOut(/*out*/ double* pVal) = 0;
};
OLE_DEFINE_UUIDOF(IAeccProfilePVI, 0x28970178, 0x008E, 0x4A31, 0xA5, 0x35, 0xFA, 0xE1, 0x2B, 0xC6, 0xC5, 0xA6);

// Every PVI object is also its curve: the PVI pointer may be cast to the curve interface of its
// EntityType without a QueryInterface, as Civil 3D's objects allow.
struct IAeccProfilePVICurve : IAeccProfilePVI {
  virtual HRESULT STDMETHODCALLTYPE get_EntityType(/*out*/ AeccProfilePVICurveType* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_CurveLength(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_CurveLength(/*in*/ double CurveLength) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_VerticalCurveType(/*out*/ AeccProfileVerticalCurveType* pVal) = 0;
};
OLE_DEFINE_UUIDOF(IAeccProfilePVICurve, 0x29083E7F, 0x9B7A, 0x4AD6, 0xAC, 0x80, 0x69, 0x2F, 0xC0, 0xFB, 0x03, 0x61);

struct IAeccProfilePVICurveParabolic : IAeccProfilePVICurve {
  virtual HRESULT STDMETHODCALLTYPE get_Radius(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Radius(/*in*/ double Radius) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_K(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_K(/*in*/ double K) = 0;
};
OLE_DEFINE_UUIDOF(IAeccProfilePVICurveParabolic, 0x1CF291EB, 0xDE0A, 0x4E72, 0x88, 0xB6, 0xE9, 0x66, 0x2F, 0x27, 0x7A,
                  0x55);

struct IAeccProfilePVICurveCircular : IAeccProfilePVICurve {
  virtual HRESULT STDMETHODCALLTYPE get_Radius(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Radius(/*in*/ double Radius) = 0;
};
OLE_DEFINE_UUIDOF(IAeccProfilePVICurveCircular, 0x06F7AC23, 0xE84A, 0x45BD, 0x9F, 0xE7, 0x96, 0xA4, 0xD2, 0x3A, 0xB3,
                  0x50);

struct IAeccProfilePVICurveAsymmetric : IAeccProfilePVICurve {
  virtual HRESULT STDMETHODCALLTYPE get_VerticalLength1(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_VerticalLength1(/*in*/ double pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_VerticalLength2(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_VerticalLength2(/*in*/ double pVal) = 0;
};
OLE_DEFINE_UUIDOF(IAeccProfilePVICurveAsymmetric, 0x0AF0E47D, 0x02AD, 0x415E, 0xB5, 0x40, 0x5B, 0x37, 0xC4, 0xFF, 0x80,
                  0xF7);

struct IAeccProfilePVIs : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_Count(/*out*/ LONG* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE Item(/*in*/ LONG PVIindex, /*out*/ IAeccProfilePVI** pVal) = 0;
  // Param1: radius (circular), length (parabola) or length before the PVI (asymmetric); Param2:
  // length after the PVI (asymmetric). Both VT_R8.
  virtual HRESULT STDMETHODCALLTYPE Add(/*in*/ double Station, /*in*/ double Elevation,
                                       /*in*/ AeccProfilePVICurveType CurveType, /*in*/ VARIANT Param1,
                                       /*in*/ VARIANT Param2, /*out*/ IAeccProfilePVI** pVal) = 0;
  // By VT_I4 position or by the PVI object.
  virtual HRESULT STDMETHODCALLTYPE Remove(/*in*/ VARIANT pvi) = 0;
  virtual HRESULT STDMETHODCALLTYPE ItemAt(/*in*/ double Station, /*in*/ double Elevation,
                                          /*out*/ IAeccProfilePVI** pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE RemoveAt(/*in*/ double Station, /*in*/ double Elevation) = 0;
};
OLE_DEFINE_UUIDOF(IAeccProfilePVIs, 0x32529855, 0x367A, 0x4258, 0xBE, 0x91, 0x61, 0x33, 0x56, 0xF9, 0xF7, 0x43);

struct IAeccProfileEntity : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_StartStation(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_EndStation(/*out*/ double* pVal) = 0;
};
OLE_DEFINE_UUIDOF(IAeccProfileEntity, 0x4F40131B, 0xFC61, 0x45B0, 0x8D, 0x89, 0x28, 0x97, 0x40, 0xBC, 0xA3, 0xC4);

// The tangents and curves that the PVIs make. Removing them all empties the profile.
struct IAeccProfileEntities : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_Count(/*out*/ LONG* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE Item(/*in*/ LONG nIndex, /*out*/ IAeccProfileEntity** pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE RemoveAll() = 0;
};
OLE_DEFINE_UUIDOF(IAeccProfileEntities, 0x3F180D47, 0x5EB9, 0x434A, 0xA1, 0xE8, 0x56, 0xB9, 0xA0, 0x26, 0x2C, 0xC8);

struct IAeccProfile : IAeccEntity {
  virtual HRESULT STDMETHODCALLTYPE get_Alignment(/*out*/ IAeccAlignment** pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_PVIs(/*out*/ IAeccProfilePVIs** pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Entities(/*out*/ IAeccProfileEntities** pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_StartingStation(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_EndingStation(/*out*/ double* pVal) = 0;
  // Fails (E_INVALIDARG) outside the profile's stations.
  virtual HRESULT STDMETHODCALLTYPE ElevationAt(/*in*/ double Station, /*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Type(/*out*/ AeccProfileType* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Type(/*in*/ AeccProfileType pVal) = 0;
};
OLE_DEFINE_UUIDOF(IAeccProfile, 0x2DDA8395, 0xDE59, 0x4B03, 0xAC, 0x09, 0x80, 0xB1, 0x82, 0x1E, 0xA2, 0xEE);

struct IAeccProfiles : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_Count(/*out*/ LONG* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE Item(/*in*/ VARIANT Index, /*out*/ IAeccProfile** pVal) = 0;
  // Style by name (VT_BSTR) or by object.
  virtual HRESULT STDMETHODCALLTYPE Add(/*in*/ BSTR Name, /*in*/ AeccProfileType ProfileType,
                                       /*in*/ VARIANT ProfileStyle, /*out*/ IAeccProfile** pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE Remove(/*in*/ VARIANT Name) = 0;
};
OLE_DEFINE_UUIDOF(IAeccProfiles, 0x39965486, 0xA872, 0x4157, 0xA2, 0xEC, 0xF3, 0x21, 0x6A, 0xD6, 0x60, 0x10);

#endif  // !_WIN32
