// CGrElementVector: the owning, ordered list of elements of blocks, groups and hatches.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "module/graphics/GrElement.h"
#include "module/graphics/GrJsonFwd.h"
#include "module/graphics/GrRect.h"

class CGrElementVector {
public:
  using Items = std::vector<std::unique_ptr<CGrElement>>;

  CGrElementVector() = default;
  // Deep: every element is cloned.
  CGrElementVector(const CGrElementVector& other);
  CGrElementVector& operator=(const CGrElementVector& other);
  CGrElementVector(CGrElementVector&&) noexcept = default;
  CGrElementVector& operator=(CGrElementVector&&) noexcept = default;
  ~CGrElementVector();

  // Appends the element and takes ownership; null is ignored.
  void Add(CGrElement* element);
  void Add(std::unique_ptr<CGrElement> element);
  void Clear();
  std::size_t Size() const { return m_items.size(); }
  bool IsEmpty() const { return m_items.empty(); }
  // Null past the end.
  CGrElement* At(std::size_t index);
  const CGrElement* At(std::size_t index) const;
  Items::const_iterator begin() const { return m_items.begin(); }
  Items::const_iterator end() const { return m_items.end(); }

  // The first element, in order and depth first, whose FindByTag answers.
  CGrElement* FindByTag(const std::wstring& tag);
  CGrElement* CloneByTag(const std::wstring& tag) const;
  // The union of the elements' bounding rectangles, in order.
  void ExtendRect(CGrRect& rect) const;
  // Same size and every element's AttributesEqual its counterpart, in order.
  bool AttributesEqual(const CGrElementVector& other) const;

  // Each operation goes to every element in order.
  void MoveAll(const CKdVector& offset) const;
  void RotateAll(const CKdPoint& base, double angle_rad) const;
  void ScaleAllAxes(double factorX, double factorY, double factorZ) const;
  void ScaleAll(double factor) const;
  void BreakAll(CGrElementVector& pieces, std::optional<double> startAngle_rad) const;

  // Appends one object per element to `array`: "type", then the element's own keys.
  void WriteJson(GrJson::Value& array) const;
  // Appends the elements an element list describes (see GrJson.h); never fails.
  void ReadJson(const GrJson::Value& array);

private:
  Items m_items;
};
