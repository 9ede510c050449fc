// Civil 3D land type library: sites, alignments, their entities and styles.
#pragma once

#include "platform/aecc/aecclandbase.h"

#if !defined(_WIN32)

struct IAeccProfiles;

enum AeccAlignmentEntityType : LONG {
  aeccTangent = 1,
  aeccArc = 2,
  aeccSpiral = 3,
  aeccSpiralCurveSpiralGroup = 4,
  aeccSpiralTangentSpiralGroup = 5,
  aeccSpiralTangentGroup = 6,
  aeccTangentSpiralGroup = 7,
  aeccSpiralCurveGroup = 8,
  aeccCurveSpiralGroup = 9,
  aeccSpiralSpiralCurveGroup = 10,
  aeccCurveSpiralSpiralGroup = 11,
  aeccSpiralCurveSpiralCurveSpiralGroup = 12,
  aeccSpiralCurveSpiralSpiralCurveSpiralGroup = 13,
  aeccSpiralSpiralGroup = 14,
};

enum AeccAlignmentSpiralDirectionType : LONG {
  aeccAlignmentSpiralDirectionLeft = 1,
  aeccAlignmentSpiralDirectionRight = 2,
};

enum AeccAlignmentSpiralType : LONG {
  aeccClothoid = 1,
};

struct IAeccAlignmentStyle : IAeccStyle {};
OLE_DEFINE_UUIDOF(IAeccAlignmentStyle, 0x59007CC6, 0xC088, 0x4179, 0xA6, 0x27, 0xD0, 0xC4, 0x00, 0x8D, 0xC9, 0x7C);
KD_AECC_NAMED_COLLECTION(IAeccAlignmentStyles, IAeccAlignmentStyle);
OLE_DEFINE_UUIDOF(IAeccAlignmentStyles, 0x4B1D1B15, 0x4414, 0x4568, 0xA3, 0x67, 0xEA, 0x5C, 0x26, 0xD6, 0x1A, 0x06);

struct IAeccAlignmentLabelStyleSet : IAeccStyle {};
OLE_DEFINE_UUIDOF(IAeccAlignmentLabelStyleSet, 0x660D41DA, 0x4B6C, 0x4F65, 0xA1, 0xA0, 0x73, 0x89, 0x90, 0x62, 0x5C,
                  0x7C);
KD_AECC_NAMED_COLLECTION(IAeccAlignmentLabelStyleSets, IAeccAlignmentLabelStyleSet);
OLE_DEFINE_UUIDOF(IAeccAlignmentLabelStyleSets, 0xBED92115, 0x7F99, 0x4DE7, 0x83, 0xB2, 0x82, 0x29, 0x68, 0xB5, 0xE8,
                  0xED);

// One element of an alignment's geometry. Groups are entities too, with their parts as
// sub-entities.
struct IAeccAlignmentEntity : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_Type(/*out*/ AeccAlignmentEntityType* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Id(/*out*/ LONG* pVal) = 0;
  // Ids of the neighbours in the listing, 0 at either end.
  virtual HRESULT STDMETHODCALLTYPE get_EntityBefore(/*out*/ LONG* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_EntityAfter(/*out*/ LONG* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_SubEntityCount(/*out*/ LONG* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE SubEntity(/*in*/ LONG lIndex, /*out*/ IAeccAlignmentEntity** pVal) = 0;
};
OLE_DEFINE_UUIDOF(IAeccAlignmentEntity, 0x6E1B852A, 0x00C2, 0x4CAE, 0xBE, 0x99, 0x7F, 0xB7, 0xE9, 0xCC, 0x56, 0x81);

// Tangents, arcs and spirals. Easting is x, northing is y.
struct IAeccAlignmentCurve : IAeccAlignmentEntity {
  virtual HRESULT STDMETHODCALLTYPE get_Length(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_StartEasting(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_StartNorthing(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_EndEasting(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_EndNorthing(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_StartingStation(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_EndingStation(/*out*/ double* pVal) = 0;
};
OLE_DEFINE_UUIDOF(IAeccAlignmentCurve, 0xEE5F235B, 0xC5C7, 0x4D99, 0x9F, 0xCC, 0x05, 0x84, 0x55, 0x0B, 0xCB, 0x82);

struct IAeccAlignmentTangent : IAeccAlignmentCurve {
  // Radians counter-clockwise from +x.
  virtual HRESULT STDMETHODCALLTYPE get_Direction(/*out*/ double* pVal) = 0;
};
OLE_DEFINE_UUIDOF(IAeccAlignmentTangent, 0x4785A9C6, 0xC185, 0x4D22, 0xA8, 0xA5, 0x7E, 0x81, 0x1F, 0x19, 0x58, 0x83);

struct IAeccAlignmentArc : IAeccAlignmentCurve {
  virtual HRESULT STDMETHODCALLTYPE get_CenterEasting(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_CenterNorthing(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Radius(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Clockwise(/*out*/ VARIANT_BOOL* pVal) = 0;
  // Central angle, radians, positive.
  virtual HRESULT STDMETHODCALLTYPE get_Delta(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_StartDirection(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_EndDirection(/*out*/ double* pVal) = 0;
};
OLE_DEFINE_UUIDOF(IAeccAlignmentArc, 0x8463E233, 0x29E1, 0x4984, 0x8D, 0x1E, 0x91, 0xC9, 0x61, 0x5A, 0x8D, 0x15);

struct IAeccAlignmentSpiral : IAeccAlignmentCurve {
  // 0 stands for an infinite radius (the tangent end of a spiral).
  virtual HRESULT STDMETHODCALLTYPE get_RadiusIn(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_RadiusOut(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_A(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Direction(/*out*/ AeccAlignmentSpiralDirectionType* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_SpiralType(/*out*/ AeccAlignmentSpiralType* pVal) = 0;
};
OLE_DEFINE_UUIDOF(IAeccAlignmentSpiral, 0x1571C9D8, 0x1A69, 0x4F21, 0x97, 0x09, 0x75, 0x56, 0x91, 0x6D, 0x24, 0xC1);

// Spiral groups: each part answers through its own get-only property, in the group's order.
#define KD_AECC_PART(Name, Interface) \
  virtual HRESULT STDMETHODCALLTYPE get_##Name(/*out*/ Interface** pVal) = 0

struct IAeccAlignmentSCSGroup : IAeccAlignmentEntity {
  KD_AECC_PART(SpiralIn, IAeccAlignmentSpiral);
  KD_AECC_PART(Arc, IAeccAlignmentArc);
  KD_AECC_PART(SpiralOut, IAeccAlignmentSpiral);
};
OLE_DEFINE_UUIDOF(IAeccAlignmentSCSGroup, 0xABB8E459, 0x0857, 0x40C1, 0x9B, 0x89, 0x20, 0x5B, 0xD0, 0x38, 0xAE, 0x60);

struct IAeccAlignmentSTSGroup : IAeccAlignmentEntity {
  KD_AECC_PART(SpiralIn, IAeccAlignmentSpiral);
  KD_AECC_PART(Tangent, IAeccAlignmentTangent);
  KD_AECC_PART(SpiralOut, IAeccAlignmentSpiral);
};
OLE_DEFINE_UUIDOF(IAeccAlignmentSTSGroup, 0xCE6C3A3E, 0xA477, 0x4099, 0x93, 0xAE, 0x84, 0xF8, 0x55, 0x9D, 0x1B, 0x53);

struct IAeccAlignmentSTGroup : IAeccAlignmentEntity {
  KD_AECC_PART(SpiralIn, IAeccAlignmentSpiral);
  KD_AECC_PART(TangentOut, IAeccAlignmentTangent);
};
OLE_DEFINE_UUIDOF(IAeccAlignmentSTGroup, 0x9F6EED85, 0x73B3, 0x4E93, 0xA4, 0xBF, 0x05, 0x96, 0x21, 0xDE, 0x8E, 0xE0);

struct IAeccAlignmentTSGroup : IAeccAlignmentEntity {
  KD_AECC_PART(TangentIn, IAeccAlignmentTangent);
  KD_AECC_PART(SpiralOut, IAeccAlignmentSpiral);
};
OLE_DEFINE_UUIDOF(IAeccAlignmentTSGroup, 0x7037026B, 0xA880, 0x4DC7, 0xB8, 0x62, 0xAA, 0xA6, 0x82, 0x24, 0x5D, 0xE7);

struct IAeccAlignmentSCGroup : IAeccAlignmentEntity {
  KD_AECC_PART(SpiralIn, IAeccAlignmentSpiral);
  KD_AECC_PART(ArcOut, IAeccAlignmentArc);
};
OLE_DEFINE_UUIDOF(IAeccAlignmentSCGroup, 0xEDDC3A57, 0x910A, 0x4F6A, 0x92, 0x17, 0x98, 0x62, 0xE9, 0x12, 0x0B, 0x77);

struct IAeccAlignmentCSGroup : IAeccAlignmentEntity {
  KD_AECC_PART(ArcIn, IAeccAlignmentArc);
  KD_AECC_PART(SpiralOut, IAeccAlignmentSpiral);
};
OLE_DEFINE_UUIDOF(IAeccAlignmentCSGroup, 0x78DF4312, 0xE7F4, 0x4FC8, 0x8E, 0xED, 0x63, 0x51, 0x95, 0xCA, 0x42, 0xBA);

struct IAeccAlignmentSSCGroup : IAeccAlignmentEntity {
  KD_AECC_PART(Spiral1, IAeccAlignmentSpiral);
  KD_AECC_PART(Spiral2, IAeccAlignmentSpiral);
  KD_AECC_PART(Arc, IAeccAlignmentArc);
};
OLE_DEFINE_UUIDOF(IAeccAlignmentSSCGroup, 0xA08F092B, 0x0EF2, 0x47A0, 0x95, 0x83, 0x4D, 0x30, 0xAD, 0x94, 0x77, 0xB8);

struct IAeccAlignmentCSSGroup : IAeccAlignmentEntity {
  KD_AECC_PART(Arc, IAeccAlignmentArc);
  KD_AECC_PART(Spiral1, IAeccAlignmentSpiral);
  KD_AECC_PART(Spiral2, IAeccAlignmentSpiral);
};
OLE_DEFINE_UUIDOF(IAeccAlignmentCSSGroup, 0x4BF40763, 0xA748, 0x4421, 0xA5, 0x1D, 0x2D, 0x75, 0x91, 0x98, 0xC1, 0x56);

struct IAeccAlignmentSCSCSGroup : IAeccAlignmentEntity {
  KD_AECC_PART(Spiral1, IAeccAlignmentSpiral);
  KD_AECC_PART(Arc1, IAeccAlignmentArc);
  KD_AECC_PART(Spiral2, IAeccAlignmentSpiral);
  KD_AECC_PART(Arc2, IAeccAlignmentArc);
  KD_AECC_PART(Spiral3, IAeccAlignmentSpiral);
};
OLE_DEFINE_UUIDOF(IAeccAlignmentSCSCSGroup, 0x36714C42, 0xE9C8, 0x482A, 0xB3, 0xCE, 0xC1, 0x8C, 0x37, 0xB4, 0x04, 0x97);

struct IAeccAlignmentSCSSCSGroup : IAeccAlignmentEntity {
  KD_AECC_PART(Spiral1, IAeccAlignmentSpiral);
  KD_AECC_PART(Arc1, IAeccAlignmentArc);
  KD_AECC_PART(Spiral2, IAeccAlignmentSpiral);
  KD_AECC_PART(Spiral3, IAeccAlignmentSpiral);
  KD_AECC_PART(Arc2, IAeccAlignmentArc);
  KD_AECC_PART(Spiral4, IAeccAlignmentSpiral);
};
OLE_DEFINE_UUIDOF(IAeccAlignmentSCSSCSGroup, 0x66045B5F, 0x38D5, 0x44C1, 0x87, 0xEE, 0x9F, 0x01, 0xAD, 0x14, 0x70, 0x55);

struct IAeccAlignmentSSGroup : IAeccAlignmentEntity {
  KD_AECC_PART(Spiral1, IAeccAlignmentSpiral);
  KD_AECC_PART(Spiral2, IAeccAlignmentSpiral);
};
OLE_DEFINE_UUIDOF(IAeccAlignmentSSGroup, 0x3E773D4E, 0x23EA, 0x4913, 0xB8, 0xCD, 0x0B, 0xD3, 0x99, 0x42, 0xD3, 0x73);

#undef KD_AECC_PART

struct IAeccAlignmentEntities : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_Count(/*out*/ LONG* pVal) = 0;
  // By position in the listing, 0-based.
  virtual HRESULT STDMETHODCALLTYPE Item(/*in*/ LONG Index, /*out*/ IAeccAlignmentEntity** pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE RemoveAll() = 0;
  // Points are VARIANTs holding a SAFEARRAY of three doubles (x, y, z); E_INVALIDARG otherwise.
  virtual HRESULT STDMETHODCALLTYPE AddFixedLine1(/*in*/ VARIANT StartPoint, /*in*/ VARIANT EndPoint,
                                                  /*out*/ IAeccAlignmentTangent** pVal) = 0;
  // A fixed arc through three points, placed after the entity PreviousElementId (0: none).
  virtual HRESULT STDMETHODCALLTYPE AddFixedCurve1(/*in*/ LONG PreviousElementId, /*in*/ VARIANT StartPoint,
                                                   /*in*/ VARIANT MiddlePoint, /*in*/ VARIANT EndPoint,
                                                   /*out*/ IAeccAlignmentArc** pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_FirstEntity(/*out*/ LONG* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_LastEntity(/*out*/ LONG* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE EntityAtId(/*in*/ LONG EntityId, /*out*/ IAeccAlignmentEntity** pVal) = 0;
};
OLE_DEFINE_UUIDOF(IAeccAlignmentEntities, 0x1C62040E, 0xB04C, 0x4D40, 0x96, 0xE1, 0x16, 0x22, 0x1A, 0x54, 0x63, 0x38);

struct IAeccAlignment : IAeccEntity {
  virtual HRESULT STDMETHODCALLTYPE get_Entities(/*out*/ IAeccAlignmentEntities** pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_StartingStation(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_EndingStation(/*out*/ double* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Length(/*out*/ double* pVal) = 0;
  // A SAFEARRAY of two doubles (x, y).
  virtual HRESULT STDMETHODCALLTYPE get_ReferencePoint(/*out*/ VARIANT* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_ReferencePoint(/*in*/ VARIANT RefPoint) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ReferencePointStation(/*out*/ double* pVal) = 0;
  // Shifts the whole stationing so that the reference point lands on StationValue.
  virtual HRESULT STDMETHODCALLTYPE put_ReferencePointStation(/*in*/ double StationValue) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Profiles(/*out*/ IAeccProfiles** pVal) = 0;
  // A light-weight polyline of the alignment's geometry (arcs as bulges), added to the drawing.
  virtual HRESULT STDMETHODCALLTYPE GetLWPolyline(/*out*/ IAcadLWPolyline** pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE PointLocation(/*in*/ double Station, /*in*/ double Offset,
                                                  /*out*/ double* Easting, /*out*/ double* Northing) = 0;
  virtual HRESULT STDMETHODCALLTYPE StationOffset(/*in*/ double Easting, /*in*/ double Northing,
                                                  /*out*/ double* Station, /*out*/ double* Offset) = 0;
};
OLE_DEFINE_UUIDOF(IAeccAlignment, 0x945E6BA0, 0x15EC, 0x49E2, 0x90, 0x2B, 0xC5, 0x0F, 0x58, 0x70, 0x8D, 0xF4);

#define KD_AECC_ALIGNMENT_COLLECTION                                                                      \
  virtual HRESULT STDMETHODCALLTYPE get_Count(/*out*/ LONG* pVal) = 0;                                    \
  virtual HRESULT STDMETHODCALLTYPE Item(/*in*/ VARIANT Index, /*out*/ IAeccAlignment** pVal) = 0;        \
  /* style and label style set by name (VT_BSTR) or by object (VT_DISPATCH) */                            \
  virtual HRESULT STDMETHODCALLTYPE Add(/*in*/ BSTR Name, /*in*/ BSTR Layer, /*in*/ VARIANT AlignmentStyle, \
                                        /*in*/ VARIANT AlignmentLabelStyleSet,                            \
                                        /*out*/ IAeccAlignment** pVal) = 0;                               \
  virtual HRESULT STDMETHODCALLTYPE Remove(/*in*/ VARIANT Name) = 0

struct IAeccAlignments : IDispatch {
  KD_AECC_ALIGNMENT_COLLECTION;
};
OLE_DEFINE_UUIDOF(IAeccAlignments, 0x28360AB5, 0xB331, 0x4D31, 0xA2, 0x63, 0xEE, 0xF4, 0x94, 0xEF, 0x22, 0x3A);

struct IAeccAlignmentsSiteless : IDispatch {
  KD_AECC_ALIGNMENT_COLLECTION;
};
OLE_DEFINE_UUIDOF(IAeccAlignmentsSiteless, 0xE2F38D05, 0x5F59, 0x4023, 0x82, 0xD1, 0x6A, 0x22, 0x53, 0x85, 0xFD, 0x9E);

#undef KD_AECC_ALIGNMENT_COLLECTION

struct IAeccSite : IAcadObject {
  virtual HRESULT STDMETHODCALLTYPE get_Name(/*out*/ BSTR* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Name(/*in*/ BSTR pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Alignments(/*out*/ IAeccAlignments** pVal) = 0;
};
OLE_DEFINE_UUIDOF(IAeccSite, 0xE2DA702C, 0x01AD, 0x4C4C, 0xA0, 0xFA, 0x48, 0x24, 0xE9, 0xAA, 0x3F, 0x5E);

KD_AECC_NAMED_COLLECTION(IAeccSites, IAeccSite);
OLE_DEFINE_UUIDOF(IAeccSites, 0x9223906E, 0xB7ED, 0x4120, 0x9B, 0x7D, 0x36, 0x01, 0xC1, 0xC2, 0xB1, 0xB2);

#endif  // !_WIN32
