// CGrTable and CGrCylinder: the two kinds that carry a title and rows of cell strings; the
// table sits at a location, the cylinder around an optional axis.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "module/geometry/KdLine.h"
#include "module/geometry/KdPoint.h"
#include "module/graphics/GrElement.h"

using CGrCellRows = std::vector<std::vector<std::wstring>>;

// JSON: the writer puts the rows under "CTS"; the reader reads them only when "CTS" is present,
// and then from "Points". The mismatch is kept on purpose: a table written and read back has no
// cells unless the document also carries "Points".
class CGrTable : public CGrElement {
public:
  CGrTable() = default;
  CGrTable(const CGrTable&) = default;
  ~CGrTable() override = default;

  const CKdPoint& Location() const { return m_location; }
  const std::wstring& Title() const { return m_title; }
  const CGrCellRows& Rows() const { return m_rows; }
  void SetLocation(const CKdPoint& location);
  void SetTitle(const std::wstring& title);
  void SetRows(const CGrCellRows& rows);

  // CGrElement
  CGrElement* Clone() const override;
  // No primitive in the geometry kit: null.
  CKdElement* MakeGeometry() const override;
  void Move(const CKdVector& offset) override;
  void Rotate(const CKdPoint& base, double angle_rad) override;
  void ScaleAxes(double factorX, double factorY, double factorZ) override;
  void Scale(double factor) override;
  int Type() const override { return grkind::kTable; }
  bool AttributesEqual(const CGrElement& other) const override;
  void WriteJson(GrJson::Value& object) const override;
  void ReadJson(const GrJson::Value& object) override;

protected:
  // The location only: cell sizes are the drawing side's.
  void ExtendRect(CGrRect& rect) const override;

private:
  CKdPoint m_location;
  std::wstring m_title;
  CGrCellRows m_rows;
};

// The geometry kit has no cylinder: the axis is held as a CKdLine from its start to its end.
// The cells are read as the table's are (the "CTS"/"Points" mismatch is kept here too).
class CGrCylinder : public CGrElement {
public:
  CGrCylinder() = default;
  CGrCylinder(const CGrCylinder&) = default;
  ~CGrCylinder() override = default;

  // Null when the cylinder has no axis geometry.
  const CKdLine* Axis() const { return m_axis ? &*m_axis : nullptr; }
  const std::wstring& Title() const { return m_title; }
  const CGrCellRows& Rows() const { return m_rows; }
  void SetAxis(const CKdPoint& start, const CKdPoint& end);
  void ClearAxis();
  void SetTitle(const std::wstring& title);
  void SetRows(const CGrCellRows& rows);

  // CGrElement
  CGrElement* Clone() const override;
  // No primitive in the geometry kit: null.
  CKdElement* MakeGeometry() const override;
  void Move(const CKdVector& offset) override;
  void Rotate(const CKdPoint& base, double angle_rad) override;
  void ScaleAxes(double factorX, double factorY, double factorZ) override;
  void Scale(double factor) override;
  int Type() const override { return grkind::kCylinder; }
  bool AttributesEqual(const CGrElement& other) const override;
  void WriteJson(GrJson::Value& object) const override;
  // Only when "GM" is true is a new axis built from "SP" and "EP"; it replaces the old one.
  // Otherwise the axis stays as it was.
  void ReadJson(const GrJson::Value& object) override;

protected:
  // The axis end points; empty without an axis.
  void ExtendRect(CGrRect& rect) const override;

private:
  std::optional<CKdLine> m_axis;
  std::wstring m_title;
  CGrCellRows m_rows;
};
