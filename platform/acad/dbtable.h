// AcDbTable (dbtable.h): a table of text cells. As in AutoCAD it is a kind of block reference (so
// code that asks "is it a block reference?" says yes); its position is the top left corner, rows
// run down and columns along the table's direction in the plane of its normal. A table has no
// block of its own here (blockTableRecord() is null).
#pragma once

#if defined(_WIN32)
#  include <dbtable.h>
#else

#include <string>
#include <vector>

#include "platform/acad/dbents.h"

class KD_PLATFORM_API AcDbTable : public AcDbBlockReference {
public:
  ACRX_DECLARE_MEMBERS(AcDbTable);
  AcDbTable();
  ~AcDbTable() override;

  // Sizes new rows and columns get (drawing units).
  static constexpr double kDefaultRowHeight = 0.36;
  static constexpr double kDefaultColumnWidth = 2.5;

  AcDbObjectId tableStyle() const { return m_tableStyle; }
  // eWrongObjectType when the id names no table style.
  Acad::ErrorStatus setTableStyle(AcDbObjectId id);
  // Resizes, keeping the cells that remain; eInvalidInput unless both are positive.
  Acad::ErrorStatus setSize(int nRows, int nCols);
  int numRows() const { return static_cast<int>(m_rowHeights.size()); }
  int numColumns() const { return static_cast<int>(m_columnWidths.size()); }
  Acad::ErrorStatus setNumRows(int nRows);
  Acad::ErrorStatus setNumColumns(int nCols);
  double rowHeight(int row) const;
  // eInvalidIndex for a bad row, eInvalidInput unless positive.
  Acad::ErrorStatus setRowHeight(int row, double height);
  double columnWidth(int col) const;
  Acad::ErrorStatus setColumnWidth(int col, double width);
  double height() const;
  double width() const;
  AcGeVector3d direction() const { return m_direction; }
  // The table's x direction; must lie in its plane (eInvalidInput otherwise).
  Acad::ErrorStatus setDirection(const AcGeVector3d& horzVec);

  // A copy the caller frees with acutDelString; null for a bad cell.
  ACHAR* textString(int row, int col) const;
  Acad::ErrorStatus setTextString(int row, int col, const ACHAR* pszText);
  AcDb::CellState cellState(int row, int col) const;
  Acad::ErrorStatus setCellState(int row, int col, AcDb::CellState nLock);
  // The layout follows from the sizes at once here; eOk.
  Acad::ErrorStatus generateLayout();

  // The box of the table's outline. eInvalidExtents for a table without cells.
  Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
  Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
  Acad::ErrorStatus explode(AcDbVoidPtrArray& entitySet) const override;
  AcRxObject* clone() const override;

private:
  struct Cell {
    std::wstring text;
    AcDb::CellState state;
  };
  Cell* cellAt(int row, int col);
  const Cell* cellAt(int row, int col) const;

  AcDbObjectId m_tableStyle;
  AcGeVector3d m_direction{1.0, 0.0, 0.0};
  std::vector<double> m_rowHeights;
  std::vector<double> m_columnWidths;
  std::vector<Cell> m_cells;  // row-major
};

#endif  // !_WIN32
