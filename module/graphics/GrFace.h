// CGrRectangleFace and CGrTriangleFace: flat faces of four and three corner points.
#pragma once

#include <array>
#include <cstddef>

#include "module/geometry/KdPoint.h"
#include "module/graphics/GrElement.h"

// The corners of a face; the kinds differ in their count and type code. Moves, rotations and
// scales act on every corner.
template <std::size_t N>
class CGrFace : public CGrElement {
public:
  static constexpr std::size_t kCorners = N;

  const CKdPoint& Corner(std::size_t index) const { return m_corners[index < N ? index : N - 1]; }
  // Ignored past the last corner.
  void SetCorner(std::size_t index, const CKdPoint& corner) {
    if (index >= N) return;
    m_corners[index] = corner;
    MarkChanged();
  }

  // No primitive in the geometry kit: null.
  CKdElement* MakeGeometry() const override { return nullptr; }
  void Move(const CKdVector& offset) override {
    for (auto& corner : m_corners) corner += offset;
    MarkChanged();
  }
  void Rotate(const CKdPoint& base, double angle_rad) override {
    for (auto& corner : m_corners) corner = corner.RotatedXY(base, angle_rad);
    MarkChanged();
  }
  void ScaleAxes(double fx, double fy, double fz) override {
    for (auto& corner : m_corners) corner = grgeo::ScaledAxes(corner, fx, fy, fz);
    MarkChanged();
  }
  void Scale(double factor) override {
    for (auto& corner : m_corners) corner = grgeo::Scaled(corner, factor);
    MarkChanged();
  }
  bool AttributesEqual(const CGrElement& other) const override {
    const CGrFace* face = SameKind(*this, other);
    if (face == nullptr || !CGrElement::AttributesEqual(other)) return false;
    for (std::size_t i = 0; i < N; ++i) {
      if (!grgeo::IsEqual(m_corners[i], face->m_corners[i])) return false;
    }
    return true;
  }
  // "v1", "v2", ... one point per corner.
  void WriteJson(GrJson::Value& object) const override;
  void ReadJson(const GrJson::Value& object) override;

protected:
  CGrFace() = default;
  explicit CGrFace(const std::array<CKdPoint, N>& corners) : m_corners(corners) {}
  CGrFace(const CGrFace&) = default;

  void ExtendRect(CGrRect& rect) const override {
    for (const auto& corner : m_corners) rect.Extend(corner);
  }

private:
  std::array<CKdPoint, N> m_corners{};
};

extern template class CGrFace<4>;
extern template class CGrFace<3>;

class CGrRectangleFace : public CGrFace<4> {
public:
  CGrRectangleFace() = default;
  CGrRectangleFace(const CKdPoint& v1, const CKdPoint& v2, const CKdPoint& v3, const CKdPoint& v4)
      : CGrFace<4>({v1, v2, v3, v4}) {}
  CGrRectangleFace(const CGrRectangleFace&) = default;
  ~CGrRectangleFace() override = default;

  CGrElement* Clone() const override { return new CGrRectangleFace(*this); }
  int Type() const override { return grkind::kRectangleFace; }
};

class CGrTriangleFace : public CGrFace<3> {
public:
  CGrTriangleFace() = default;
  CGrTriangleFace(const CKdPoint& v1, const CKdPoint& v2, const CKdPoint& v3) : CGrFace<3>({v1, v2, v3}) {}
  CGrTriangleFace(const CGrTriangleFace&) = default;
  ~CGrTriangleFace() override = default;

  CGrElement* Clone() const override { return new CGrTriangleFace(*this); }
  int Type() const override { return grkind::kTriangleFace; }
};
