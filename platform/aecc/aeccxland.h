// Civil 3D land type library (AeccXLand, release 10.5): the land database and what it holds.
#pragma once

#include "platform/aecc/aecclandalignment.h"
#include "platform/aecc/aecclandprofile.h"

#if !defined(_WIN32)

struct IAeccSurfaces;
struct IAeccSurfaceStyles;
struct IAeccPoints;
struct IAeccPointGroups;
struct IAeccPointStyles;
struct IAeccLabelStyles;

// The collections a land document and its database both answer.
#define KD_AECC_LAND_COLLECTIONS                                                                          \
  virtual HRESULT STDMETHODCALLTYPE get_Sites(/*out*/ IAeccSites** pVal) = 0;                             \
  virtual HRESULT STDMETHODCALLTYPE get_AlignmentsSiteless(/*out*/ IAeccAlignmentsSiteless** pVal) = 0;   \
  virtual HRESULT STDMETHODCALLTYPE get_AlignmentStyles(/*out*/ IAeccAlignmentStyles** pVal) = 0;         \
  virtual HRESULT STDMETHODCALLTYPE get_AlignmentLabelStyleSets(                                          \
      /*out*/ IAeccAlignmentLabelStyleSets** pVal) = 0;                                                   \
  virtual HRESULT STDMETHODCALLTYPE get_LandProfileStyles(/*out*/ IAeccProfileStyles** pVal) = 0;         \
  virtual HRESULT STDMETHODCALLTYPE get_Surfaces(/*out*/ IAeccSurfaces** pVal) = 0;                       \
  virtual HRESULT STDMETHODCALLTYPE get_Points(/*out*/ IAeccPoints** pVal) = 0;                           \
  virtual HRESULT STDMETHODCALLTYPE get_PointGroups(/*out*/ IAeccPointGroups** pVal) = 0;                 \
  virtual HRESULT STDMETHODCALLTYPE get_PointStyles(/*out*/ IAeccPointStyles** pVal) = 0;                 \
  virtual HRESULT STDMETHODCALLTYPE get_PointLabelStyles(/*out*/ IAeccLabelStyles** pVal) = 0

// ObjectIdToObject (inherited) answers the Civil 3D objects of the drawing too.
struct IAeccDatabase : IAcadDatabase {
  KD_AECC_LAND_COLLECTIONS;
};
OLE_DEFINE_UUIDOF(IAeccDatabase, 0xE932003A, 0x0069, 0x4186, 0x8D, 0xF9, 0x3D, 0x53, 0x72, 0xB7, 0xDC, 0x57);

#endif  // !_WIN32
