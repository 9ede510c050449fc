// CGrShallowElement: an element of attributes only (colour, layer, line type, tag, ids), with
// no geometry; what type code 99 names.
#pragma once

#include "module/graphics/GrElement.h"

// Moves, rotations and scales have no geometry to act on and only mark it modified; its
// rectangle is empty and its JSON form holds the common keys alone. The factory does not make
// it.
class CGrShallowElement : public CGrElement {
public:
  CGrShallowElement() = default;
  CGrShallowElement(const CGrShallowElement&) = default;
  ~CGrShallowElement() override = default;

  CGrElement* Clone() const override { return new CGrShallowElement(*this); }
  CKdElement* MakeGeometry() const override { return nullptr; }
  void Move(const CKdVector&) override { MarkChanged(); }
  void Rotate(const CKdPoint&, double) override { MarkChanged(); }
  void ScaleAxes(double, double, double) override { MarkChanged(); }
  void Scale(double) override { MarkChanged(); }
  int Type() const override { return grkind::kShallow; }
  bool AttributesEqual(const CGrElement& other) const override {
    return SameKind(*this, other) != nullptr && CGrElement::AttributesEqual(other);
  }

protected:
  void ExtendRect(CGrRect&) const override {}
};
