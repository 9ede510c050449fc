// IGrGraphicsContext: how elements are put into a drawing, read back from it and taken out of it.
// CGrAcadGraphicsContext is the AutoCAD implementation.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "module/geometry/KdPoint.h"
#include "module/graphics/GrRect.h"

class CGrAcadLayerTable;
class CGrAcadTextStyle;
class CGrElement;
class CGrElementVector;
class IGrPlatformColor;

// Status results: 0 success, 1 refused (null element, no drawing class for the kind, element
// without id), any other value an AutoCAD error status passed through.
// The virtual operations keep this declaration order: it is their slot order. No name is
// overloaded, so the order is the same under the Microsoft and the Itanium ABI.
class IGrGraphicsContext {
public:
  virtual ~IGrGraphicsContext() = default;
  // Creates the element's entity or updates it (when the element is modified); fills both ids.
  virtual int Draw(CGrElement* element) = 0;
  // A new element (owned by the caller) for the object with that handle or session id; null for
  // an unknown, erased or unclassifiable object.
  virtual CGrElement* MakeElementFromHandle(std::int64_t handle) = 0;
  virtual CGrElement* MakeElementFromSessionId(std::int64_t sessionId) = 0;
  virtual int EraseByHandle(const std::int64_t* handle) = 0;
  // Erases the element's entity and clears both ids; an entity erased already counts as done.
  virtual int Erase(CGrElement* element) = 0;
  // Nothing is buffered: 0.
  virtual int Flush() = 0;
  // Writes the block definition of an element block (its children) without inserting it.
  virtual int DrawBlock(CGrElement* element) = 0;
  virtual int Highlight(CGrElement* element, bool on) = 0;
  // Appends to `pieces` the elements the element's entity breaks up into (AutoCAD's explode).
  virtual int Explode(CGrElement* element, CGrElementVector& pieces) = 0;
  // Installs the colour translator the element model resolves colours with (null leaves the
  // installed one); `reserved` is kept as an opaque value. 0.
  virtual int UseColorTranslator(IGrPlatformColor* translator, int reserved) = 0;
  // UseColorTranslator(translator, 0).
  virtual int UseColorTranslatorDefault(IGrPlatformColor* translator) = 0;
  // Packed RGB (red low) of an AutoCAD colour index, and the nearest index of a packed RGB.
  virtual std::uint32_t IndexToRgb(std::uint32_t index) = 0;
  virtual std::uint32_t RgbToIndex(std::uint32_t rgb) = 0;
  // A new wrapper of the working drawing's layer table, owned by the caller.
  virtual CGrAcadLayerTable* CreateLayerTable() = 0;
  // The text style of that name made (or updated) in the working drawing with these settings; a
  // new wrapper owned by the caller, or null when the style cannot be had.
  virtual CGrAcadTextStyle* CreateTextStyle(const std::wstring& name, const std::wstring& fontFile, double height,
                                            double widthFactor) = 0;
  // Handles of the entities inside or crossing the rectangle of the two corners (x and y).
  virtual int SelectCrossing(const CKdPoint& corner1, const CKdPoint& corner2, std::vector<std::int64_t>& handles) = 0;
  // The extents of the entity the element would make, without drawing it.
  virtual int GetExtents(CGrElement* element, CGrRect& extents) = 0;

protected:
  IGrGraphicsContext() = default;
  IGrGraphicsContext(const IGrGraphicsContext&) = default;
  IGrGraphicsContext& operator=(const IGrGraphicsContext&) = default;
};
