// CGrElement: the drawing-neutral base of every graphics element. An element carries its display
// attributes, can be moved, rotated and scaled, knows its bounding rectangle, builds the matching
// geometry primitive, and writes itself to and reads itself from its JSON form.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <typeinfo>

#include "module/geometry/KdPoint.h"
#include "module/geometry/KdVector.h"
#include "module/graphics/GrColor.h"
#include "module/graphics/GrJsonFwd.h"
#include "module/graphics/GrKinds.h"
#include "module/graphics/GrRect.h"

class CKdElement;
class CKdXform;
class CGrElementVector;

namespace grgeo {

// Tolerance of every tolerant comparison of the element model, in drawing units (and radians).
inline constexpr double kTolerance = 1e-6;

}  // namespace grgeo

// Modified flag: set at construction and by every setter, move, rotate and scale (the element
// block keeps it for moves and scales, see there); the drawing side reads it to know that the
// entity it drew must be updated, and clears it. Bounding rectangle: cached, recomputed on
// request when stale. Lengths (radii, text heights) stay non-negative under negative scale
// factors; where an unequal scale cannot be represented, lengths take the x factor.
class CGrElement {
public:
  // The virtual operations keep this declaration order: it is their slot order (the destructor
  // takes one slot under the Microsoft ABI, two under Itanium). None is overloaded, so the order
  // is the same under both.

  virtual ~CGrElement();
  // A new element equal to this one (copy construction: the id-tag-changed flag comes set).
  virtual CGrElement* Clone() const = 0;
  // A new geometry primitive for the element, owned by the caller; null for the kinds the
  // geometry kit has no primitive for.
  virtual CKdElement* MakeGeometry() const = 0;
  // Adds the vector to every point.
  virtual void Move(const CKdVector& offset) = 0;
  // Turns every point p into base + R(angle)(p - base) in the xy plane; z is kept.
  virtual void Rotate(const CKdPoint& base, double angle_rad) = 0;
  // Multiplies each coordinate by its axis's factor, about the origin.
  virtual void ScaleAxes(double factorX, double factorY, double factorZ) = 0;
  // Multiplies every coordinate and every length by the factor, about the origin.
  virtual void Scale(double factor) = 0;
  // Forgets the drawn entity: sets the modified and id-tag-changed flags, clears both handles.
  virtual void ResetDrawn();
  virtual int Type() const = 0;
  // Colours equal, line types equal, line-type scales within the tolerance; the kinds add their
  // geometry (and are never equal to an element of another class). Layer, tag and id tag do not
  // count.
  virtual bool AttributesEqual(const CGrElement& other) const;
  virtual bool AttributesDiffer(const CGrElement& other) const;
  virtual void SetColor(const CGrColor& color);
  // Recomputed when stale (the polyline and the block also when degenerate, see there).
  virtual const CGrRect& BoundingRect() const;
  // Appends the element's pieces to `pieces`; the base appends a clone of itself.
  virtual void BreakIntoCurves(CGrElementVector& pieces, std::optional<double> startAngle_rad = std::nullopt) const;
  // Writes the common keys into `object` (a kind adds its own after them).
  virtual void WriteJson(GrJson::Value& object) const;
  // Reads the common keys from `object`; never fails: what is missing or unreadable stays.
  virtual void ReadJson(const GrJson::Value& object);
  virtual void SetLayerName(const std::wstring& layer);
  virtual void SetLineType(std::int32_t lineType);
  virtual void SetLineTypeScale(double scale);
  // Whether the element is shown (the drawing side maps it to the entity's visibility).
  virtual bool GetDisplay() const;
  // Marks the element modified only when the value changes.
  virtual void SetDisplay(bool display);
  // Marks the element modified and its id tag changed.
  virtual void SetIdTag(std::uint32_t idTag);
  // This element when its tag equals `tag` exactly, otherwise null. Kinds with children look
  // through them too, depth first, after themselves.
  virtual CGrElement* FindByTag(const std::wstring& tag);
  // A clone of what FindByTag finds, owned by the caller; null when it finds nothing.
  virtual CGrElement* CloneByTag(const std::wstring& tag) const;

  const CGrColor& Color() const { return m_color; }
  bool IsModified() const { return m_modified; }
  void SetModified(bool modified) { m_modified = modified; }
  const std::wstring& LayerName() const { return m_layer; }
  std::int32_t LineType() const { return m_lineType; }
  double LineTypeScale() const { return m_lineTypeScale; }
  // Null when the element has no tag.
  const std::wstring* Tag() const { return m_tag.get(); }
  void SetTag(const std::wstring& tag);
  void ClearTag();
  std::uint32_t IdTag() const { return m_idTag; }
  bool IsIdTagChanged() const { return m_idTagChanged; }
  void SetIdTagChanged(bool changed) { m_idTagChanged = changed; }
  // The drawn entity's object id (valid while the drawing is open) and persistent handle; 0
  // when not drawn. Bookkeeping of the drawing side: setting them does not mark the element.
  std::int64_t SessionId() const { return m_sessionId; }
  std::int64_t Handle() const { return m_handle; }
  void SetSessionId(std::int64_t sessionId) { m_sessionId = sessionId; }
  void SetHandle(std::int64_t handle) { m_handle = handle; }
  // The placement transform; null means the identity.
  const CKdXform* Placement() const { return m_placement.get(); }
  void SetPlacement(const CKdXform& placement);
  void ClearPlacement();

  // Process-wide count of element constructions (plain and copy); never decremented.
  static std::uint64_t Count();
  static void SetCount(std::uint64_t count);

  CGrElement& operator=(const CGrElement&) = delete;

protected:
  CGrElement();
  // Copies every attribute, the tag and the placement deeply; the copy is modified and its id
  // tag changed.
  CGrElement(const CGrElement& other);

  // Extends `rect` by the element's own extents (the rectangle's recomputation).
  virtual void ExtendRect(CGrRect& rect) const = 0;

  // After a change of geometry: modified, and the rectangle stale.
  void MarkChanged() {
    m_modified = true;
    m_rectStale = true;
  }
  void MarkRectStale() const { m_rectStale = true; }
  bool IsRectStale() const { return m_rectStale; }
  // The cached rectangle, for kinds with their own caching rule.
  CGrRect& CachedRect() const { return m_rect; }
  void SetRectFresh() const { m_rectStale = false; }
  // Copies colour, layer, line type and line-type scale onto a piece made from this element.
  void CopyDisplayAttributesTo(CGrElement& piece) const;

  // `other` as a T when it is exactly of T's class, else null.
  template <class T>
  static const T* SameKind(const T& self, const CGrElement& other) {
    return typeid(self) == typeid(other) ? static_cast<const T*>(&other) : nullptr;
  }

private:
  CGrColor m_color;
  bool m_modified = true;
  mutable CGrRect m_rect;
  mutable bool m_rectStale = true;
  std::wstring m_layer;
  std::int32_t m_lineType = 0;
  double m_lineTypeScale = 1.0;
  bool m_display = true;
  std::unique_ptr<std::wstring> m_tag;
  std::uint32_t m_idTag = 0;
  bool m_idTagChanged = true;
  std::int64_t m_sessionId = 0;
  std::int64_t m_handle = 0;
  std::unique_ptr<CKdXform> m_placement;
};

namespace grgeo {

// Point operations shared by the kinds.
inline CKdPoint ScaledAxes(const CKdPoint& p, double fx, double fy, double fz) {
  return {p.x * fx, p.y * fy, p.z * fz};
}
inline CKdPoint Scaled(const CKdPoint& p, double f) { return {p.x * f, p.y * f, p.z * f}; }
// The vector turned about the z axis (z kept).
CKdVector RotatedXY(const CKdVector& v, double angle_rad);
bool IsEqual(double a, double b);
bool IsEqual(const CKdPoint& a, const CKdPoint& b);
bool IsEqual(const CKdVector& a, const CKdVector& b);
// Whether angle_rad lies on the arc of the circle from start_rad through sweep_rad (either sign;
// a sweep of a full turn or more covers every angle).
bool AngleInSweep(double angle_rad, double start_rad, double sweep_rad);

}  // namespace grgeo
