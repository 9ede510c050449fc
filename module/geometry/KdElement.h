// CKdElement: polymorphic base of every element of the geometry kit, and the kind codes.
#pragma once

#include <iosfwd>
#include <string>
#include <typeinfo>

class CKdPoint;
class CKdVector;
class CKdXform;

namespace kdgeo {

// Kind codes returned by GetType. 6 and 10 to 15 belong to no class; the numbering stays as it
// is because stored data carries these numbers.
enum ElementType : int {
  kTypeText = 1,
  kTypeCircle = 2,
  kTypeLine = 3,
  kTypePolyline = 4,
  kTypeElementBlock = 5,
  kTypeHatch = 7,
  kTypeRectangleFace = 8,
  kTypeTriangleFace = 9,
  kTypeArc = 16,
};

inline constexpr int kDefaultClassConstant = 10;
inline constexpr int kLineClassConstant = 100;

}  // namespace kdgeo

// The virtual operations keep this declaration order: it is their slot order (the destructor
// takes one slot under the Microsoft ABI, two under Itanium).
class CKdElement {
public:
  virtual int GetClassConstant() const { return kdgeo::kDefaultClassConstant; }
  // Every coordinate finite and the element not collapsed to a point.
  virtual bool IsValid() const = 0;
  virtual ~CKdElement() = default;
  // A new heap copy; the caller owns it.
  virtual CKdElement* CloneElement() const = 0;
  virtual void Translate(const CKdVector& offset) = 0;
  // Turns the element about `about` in the xy plane by angle_rad; z is kept.
  virtual void Rotate(const CKdPoint& about, double angle_rad) = 0;
  // Applies a general transform when the element's kind survives it (an arc stays an arc only
  // under a similarity of the xy plane); otherwise returns false and changes nothing.
  virtual bool Transform(const CKdXform& xform) = 0;
  // Scales about the origin.
  virtual void Scale(double factor) = 0;
  // A one-line text form, every number written to round-trip.
  virtual void Write(std::wostream& out) const = 0;
  virtual int GetType() const = 0;
  // False unless `other` is of the same class; then the class's own tolerant comparison.
  virtual bool IsEqual(const CKdElement& other) const = 0;
  virtual bool IsNotEqual(const CKdElement& other) const { return !IsEqual(other); }

protected:
  CKdElement() = default;
  CKdElement(const CKdElement&) = default;
  CKdElement& operator=(const CKdElement&) = default;

  // `other` as a T when it is exactly of the class of `self`, else null.
  template <class T>
  static const T* SameClass(const T& self, const CKdElement& other) {
    return typeid(self) == typeid(other) ? static_cast<const T*>(&other) : nullptr;
  }
};

namespace kdgeo {

// The element's Write output as a string.
std::wstring ToText(const CKdElement& element);

namespace details {

// Shortest text that reads back as the same double.
void WriteNumber(std::wostream& out, double value);
// "(x, y, z)" with WriteNumber's digits.
void WritePoint(std::wostream& out, const CKdPoint& p);

}  // namespace details

}  // namespace kdgeo
