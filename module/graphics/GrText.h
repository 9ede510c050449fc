// CGrText: a single-line text at a position.
#pragma once

#include <cstdint>
#include <string>

#include "module/geometry/KdPoint.h"
#include "module/graphics/GrElement.h"

class CGrText : public CGrElement {
public:
  static constexpr const wchar_t* kDefaultStyleName = L"KDText";

  CGrText() = default;
  CGrText(const CKdPoint& position, double height, const std::wstring& message)
      : m_position(position), m_height(height), m_message(message) {}
  CGrText(const CGrText&) = default;
  ~CGrText() override = default;

  const CKdPoint& Position() const { return m_position; }
  double Height() const { return m_height; }
  double Rotation() const { return m_rotation; }
  const std::wstring& Message() const { return m_message; }
  const std::wstring& StyleName() const { return m_styleName; }
  std::uint32_t Justification() const { return m_justification; }
  void SetPosition(const CKdPoint& position);
  void SetHeight(double height);
  void SetRotation(double angle_rad);
  void SetMessage(const std::wstring& message);
  void SetStyleName(const std::wstring& styleName);
  // The drawing side's justification code, kept as given.
  void SetJustification(std::uint32_t justification);

  // CGrElement
  CGrElement* Clone() const override;
  // No primitive in the geometry kit: null.
  CKdElement* MakeGeometry() const override;
  void Move(const CKdVector& offset) override;
  // The position turns about the base and the rotation grows by the angle.
  void Rotate(const CKdPoint& base, double angle_rad) override;
  // The position scales per axis, the height by |x factor|.
  void ScaleAxes(double factorX, double factorY, double factorZ) override;
  // A negative factor turns the text by pi: the height stays non-negative.
  void Scale(double factor) override;
  int Type() const override { return grkind::kText; }
  bool AttributesEqual(const CGrElement& other) const override;
  void WriteJson(GrJson::Value& object) const override;
  void ReadJson(const GrJson::Value& object) override;

protected:
  // The insertion point only: glyph extents are the drawing side's (its GetExtents).
  void ExtendRect(CGrRect& rect) const override;

private:
  CKdPoint m_position;
  double m_height = 1.0;
  double m_rotation = 0.0;
  std::wstring m_message;
  std::wstring m_styleName = kDefaultStyleName;
  std::uint32_t m_justification = 0;
};
