// AutoCAD ActiveX automation interfaces (type library of AutoCAD 2015/2016), the members the
// module and the Civil 3D objects call. Raw vtable form: properties are get_X / put_X, a method's
// return value is its last out-parameter. Only the listed members are declared, so the headless
// objects and the module agree on these declarations; on Windows the SDK's acadi.h stands here.
//
// Ownership: an interface handed out through an out-parameter carries one reference that the
// caller releases; a BSTR handed out is the caller's to free; a VARIANT out-parameter is
// overwritten without being cleared first (pass an empty one). Calls that change the drawing
// lock its document as automation calls do in AutoCAD (AcAp::kAutoWrite) and fail with E_FAIL
// when another execution context holds a conflicting lock.
//
// Interface ids: IAcadApplication and IAcadEntity are those of the AutoCAD 2015/2016 type
// library; the others could not be confirmed from public material and are this platform's own.
#pragma once

#if defined(_WIN32)
#  include <acadi.h>
#else

#include "platform/ole/unknwn.h"

struct IAcadDocument;
struct IAcadDatabase;

struct IAcadApplication : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_ActiveDocument(/*out*/ IAcadDocument** pActiveDoc) = 0;
  // A SAFEARRAY of BSTR: the names of the loaded ObjectARX applications (the caller owns the
  // variant's contents and clears them).
  virtual HRESULT STDMETHODCALLTYPE ListArx(/*out*/ VARIANT* pVarListArray) = 0;
  // An automation object made from its ProgID; the caller releases it.
  virtual HRESULT STDMETHODCALLTYPE GetInterfaceObject(/*in*/ BSTR ProgID, /*out*/ IDispatch** pObj) = 0;
};
OLE_DEFINE_UUIDOF(IAcadApplication, 0x1C9CCE52, 0xF48B, 0x42CC, 0x87, 0x7B, 0xF7, 0x49, 0x05, 0xEC, 0x7D,
                  0xBC);

// The objects of a drawing.
struct IAcadDatabase : IDispatch {
  // The automation object of the object with that id (its session id): an IAcadEntity for an
  // entity (IAcadLWPolyline for a light-weight polyline), an IAcadObject otherwise, or the face a
  // Civil 3D object registered. E_INVALIDARG for an id that names no object of this drawing or an
  // erased one.
  virtual HRESULT STDMETHODCALLTYPE ObjectIdToObject(/*in*/ LONG_PTR ObjectID, /*out*/ IDispatch** pObj) = 0;
};
OLE_DEFINE_UUIDOF(IAcadDatabase, 0x1DD45915, 0x135B, 0x4625, 0x99, 0x58, 0xA8, 0x2D, 0x4D, 0x97, 0xC4, 0x15);

// A drawing open in the application. As in AutoCAD's type library it derives IAcadDatabase: the
// document answers for its drawing's objects itself.
struct IAcadDocument : IAcadDatabase {
  virtual HRESULT STDMETHODCALLTYPE get_Database(/*out*/ IAcadDatabase** pDatabase) = 0;
  // The file name without folder ("Drawing1.dwg").
  virtual HRESULT STDMETHODCALLTYPE get_Name(/*out*/ BSTR* pName) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Application(/*out*/ IAcadApplication** pAppObj) = 0;
  // As ObjectIdToObject, from the object's handle as hexadecimal text.
  virtual HRESULT STDMETHODCALLTYPE HandleToObject(/*in*/ BSTR Handle, /*out*/ IDispatch** pObj) = 0;
};
OLE_DEFINE_UUIDOF(IAcadDocument, 0x4755895B, 0xBDBA, 0x45E2, 0x9F, 0x8C, 0x9A, 0xAD, 0xC6, 0x2D, 0xE3, 0x21);

// Any object of a drawing. Calls that read or change the object fail with E_FAIL once it is
// erased or its drawing is gone; ObjectID answers always, Handle, ObjectName and OwnerID while the
// drawing exists.
struct IAcadObject : IDispatch {
  // Hexadecimal text, upper case ("2A").
  virtual HRESULT STDMETHODCALLTYPE get_Handle(/*out*/ BSTR* Handle) = 0;
  // The ObjectARX class name ("AcDbLine").
  virtual HRESULT STDMETHODCALLTYPE get_ObjectName(/*out*/ BSTR* ObjectName) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ObjectID(/*out*/ LONG_PTR* ObjectID) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_OwnerID(/*out*/ LONG_PTR* OwnerID) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Database(/*out*/ IAcadDatabase** pDatabase) = 0;
  // Erases the object.
  virtual HRESULT STDMETHODCALLTYPE Delete() = 0;
};
OLE_DEFINE_UUIDOF(IAcadObject, 0x95BED26F, 0xABAF, 0x4DF5, 0x8E, 0x0C, 0xB9, 0x10, 0x9E, 0x11, 0xE1, 0x2A);

struct IAcadEntity : IAcadObject {
  virtual HRESULT STDMETHODCALLTYPE get_Layer(/*out*/ BSTR* Layer) = 0;
  // E_INVALIDARG for a layer the drawing does not have.
  virtual HRESULT STDMETHODCALLTYPE put_Layer(/*in*/ BSTR Layer) = 0;
  // Redraws the entity (marks its graphics modified).
  virtual HRESULT STDMETHODCALLTYPE Update() = 0;
};
OLE_DEFINE_UUIDOF(IAcadEntity, 0xB58808B5, 0x37AC, 0x431F, 0xBA, 0x80, 0xA8, 0xD3, 0x81, 0xBB, 0x4C, 0x5C);

struct IAcadLWPolyline : IAcadEntity {
  // VT_ARRAY | VT_R8: x and y of every vertex in the polyline's plane.
  virtual HRESULT STDMETHODCALLTYPE get_Coordinates(/*out*/ VARIANT* Coordinates) = 0;
  // An array of doubles (VT_ARRAY | VT_R8, or VT_ARRAY | VT_VARIANT of numbers), two per vertex,
  // at least two vertices: E_INVALIDARG otherwise. Bulges and widths stay with their vertex
  // indices; new vertices are straight and without width.
  virtual HRESULT STDMETHODCALLTYPE put_Coordinates(/*in*/ VARIANT Coordinates) = 0;
};
OLE_DEFINE_UUIDOF(IAcadLWPolyline, 0x4A919F50, 0x0472, 0x45B1, 0x9B, 0x3E, 0x12, 0xC5, 0x13, 0xCA, 0x17, 0xDD);

#endif  // !_WIN32
