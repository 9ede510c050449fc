// Tables, table styles and 3D solids.
#include <algorithm>
#include <cmath>
#include <cwchar>

#include "headless/acad/ImpDatabase.h"
#include "headless/acad/Pieces.h"
#include "headless/acad/RxDefine.h"
#include "platform/acad/dbsol3d.h"
#include "platform/acad/dbtable.h"
#include "platform/acad/dbtablestyle.h"

namespace {

AcGeVector3d Column(const AcGeMatrix3d& m, int c) { return {m.entry[0][c], m.entry[1][c], m.entry[2][c]}; }

ACHAR* CopyText(const std::wstring& text) {
  auto* copy = new ACHAR[text.size() + 1];
  std::wmemcpy(copy, text.c_str(), text.size() + 1);
  return copy;
}

}  // namespace

// --- Table style --------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbTableStyle, AcDbObject, L"TABLESTYLE")

AcDbTableStyle::AcDbTableStyle() = default;
AcDbTableStyle::~AcDbTableStyle() = default;

Acad::ErrorStatus AcDbTableStyle::getName(ACHAR*& pszName) const {
  pszName = CopyText(m_name);
  return Acad::eOk;
}
Acad::ErrorStatus AcDbTableStyle::setName(const ACHAR* pszName) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (pszName == nullptr) return Acad::eInvalidInput;
  m_name = pszName;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbTableStyle::setDescription(const ACHAR* pszDescription) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_description = pszDescription == nullptr ? L"" : pszDescription;
  return Acad::eOk;
}

// --- Table --------------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbTable, AcDbBlockReference, L"ACAD_TABLE")

AcDbTable::AcDbTable() = default;
AcDbTable::~AcDbTable() = default;

AcDbTable::Cell* AcDbTable::cellAt(int row, int col) {
  if (row < 0 || row >= numRows() || col < 0 || col >= numColumns()) return nullptr;
  return &m_cells[static_cast<size_t>(row * numColumns() + col)];
}

const AcDbTable::Cell* AcDbTable::cellAt(int row, int col) const { return const_cast<AcDbTable*>(this)->cellAt(row, col); }

Acad::ErrorStatus AcDbTable::setTableStyle(AcDbObjectId id) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (AcDbTableStyle::cast(AcDbImpDatabase::peek(id)) == nullptr) return Acad::eWrongObjectType;
  m_tableStyle = id;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbTable::setSize(int nRows, int nCols) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (nRows <= 0 || nCols <= 0) return Acad::eInvalidInput;
  std::vector<Cell> cells(static_cast<size_t>(nRows * nCols), Cell{L"", AcDb::kCellStateNone});
  for (int r = 0; r < std::min(nRows, numRows()); ++r)
    for (int c = 0; c < std::min(nCols, numColumns()); ++c) cells[static_cast<size_t>(r * nCols + c)] = *cellAt(r, c);
  m_rowHeights.resize(static_cast<size_t>(nRows), kDefaultRowHeight);
  m_columnWidths.resize(static_cast<size_t>(nCols), kDefaultColumnWidth);
  m_cells = std::move(cells);
  return Acad::eOk;
}

Acad::ErrorStatus AcDbTable::setNumRows(int nRows) { return setSize(nRows, std::max(numColumns(), 1)); }
Acad::ErrorStatus AcDbTable::setNumColumns(int nCols) { return setSize(std::max(numRows(), 1), nCols); }

double AcDbTable::rowHeight(int row) const {
  return row >= 0 && row < numRows() ? m_rowHeights[static_cast<size_t>(row)] : 0.0;
}
Acad::ErrorStatus AcDbTable::setRowHeight(int row, double height) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (row < 0 || row >= numRows()) return Acad::eInvalidIndex;
  if (!(height > 0.0)) return Acad::eInvalidInput;
  m_rowHeights[static_cast<size_t>(row)] = height;
  return Acad::eOk;
}
double AcDbTable::columnWidth(int col) const {
  return col >= 0 && col < numColumns() ? m_columnWidths[static_cast<size_t>(col)] : 0.0;
}
Acad::ErrorStatus AcDbTable::setColumnWidth(int col, double width) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (col < 0 || col >= numColumns()) return Acad::eInvalidIndex;
  if (!(width > 0.0)) return Acad::eInvalidInput;
  m_columnWidths[static_cast<size_t>(col)] = width;
  return Acad::eOk;
}
double AcDbTable::height() const {
  double sum = 0.0;
  for (double h : m_rowHeights) sum += h;
  return sum;
}
double AcDbTable::width() const {
  double sum = 0.0;
  for (double w : m_columnWidths) sum += w;
  return sum;
}

Acad::ErrorStatus AcDbTable::setDirection(const AcGeVector3d& horzVec) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (horzVec.isZeroLength() || std::fabs(horzVec.normal().dotProduct(normal())) > 1e-9) return Acad::eInvalidInput;
  m_direction = horzVec.normal();
  return Acad::eOk;
}

ACHAR* AcDbTable::textString(int row, int col) const {
  const Cell* cell = cellAt(row, col);
  return cell == nullptr ? nullptr : CopyText(cell->text);
}
Acad::ErrorStatus AcDbTable::setTextString(int row, int col, const ACHAR* pszText) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  Cell* cell = cellAt(row, col);
  if (cell == nullptr) return Acad::eInvalidIndex;
  cell->text = pszText == nullptr ? L"" : pszText;
  return Acad::eOk;
}
AcDb::CellState AcDbTable::cellState(int row, int col) const {
  const Cell* cell = cellAt(row, col);
  return cell == nullptr ? AcDb::kCellStateNone : cell->state;
}
Acad::ErrorStatus AcDbTable::setCellState(int row, int col, AcDb::CellState nLock) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  Cell* cell = cellAt(row, col);
  if (cell == nullptr) return Acad::eInvalidIndex;
  cell->state = nLock;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbTable::generateLayout() { return Acad::eOk; }

Acad::ErrorStatus AcDbTable::getGeomExtents(AcDbExtents& extents) const {
  return headless::geom::ExtentsOf(*this, extents);
}

Acad::ErrorStatus AcDbTable::transformBy(const AcGeMatrix3d& xform) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (!xform.isUniScaledOrtho()) return Acad::eCannotScaleNonUniformly;
  const AcGeVector3d x = xform * m_direction;
  const AcGeVector3d y = xform * normal().crossProduct(m_direction);
  const double scale = xform.scale();
  const AcGePoint3d position = xform * this->position();
  setPosition(position);
  setNormal(x.crossProduct(y));
  m_direction = x.normal();
  for (double& h : m_rowHeights) h *= scale;
  for (double& w : m_columnWidths) w *= scale;
  return Acad::eOk;
}

// The grid lines, and each cell's text centred in its cell at half the row's height.
Acad::ErrorStatus AcDbTable::explode(AcDbVoidPtrArray& entitySet) const {
  if (numRows() == 0 || numColumns() == 0) return Acad::eNotApplicable;
  const AcGeVector3d x = m_direction;
  const AcGeVector3d down = -normal().crossProduct(x);
  const AcGePoint3d p = position();
  double top = 0.0;
  for (int row = 0; row <= numRows(); ++row) {
    entitySet.append(static_cast<AcRxObject*>(new AcDbLine(p + down * top, p + down * top + x * width())));
    if (row == numRows()) break;
    double left = 0.0;
    for (int col = 0; col < numColumns(); ++col) {
      const Cell* cell = cellAt(row, col);
      if (!cell->text.empty()) {
        const AcGePoint3d middle = p + x * (left + columnWidth(col) / 2.0) + down * (top + rowHeight(row) / 2.0);
        auto* text = new AcDbText(middle, cell->text.c_str(), AcDbObjectId::kNull, rowHeight(row) / 2.0);
        text->setNormal(normal());
        text->setRotation(std::atan2(x.dotProduct(Column(AcGeMatrix3d::planeToWorld(normal()), 1)),
                                     x.dotProduct(Column(AcGeMatrix3d::planeToWorld(normal()), 0))));
        text->setHorizontalMode(AcDb::kTextMid);
        text->setAlignmentPoint(middle);
        entitySet.append(static_cast<AcRxObject*>(text));
      }
      left += columnWidth(col);
    }
    top += rowHeight(row);
  }
  double left = 0.0;
  for (int col = 0; col <= numColumns(); ++col) {
    entitySet.append(static_cast<AcRxObject*>(new AcDbLine(p + x * left, p + x * left + down * height())));
    if (col < numColumns()) left += columnWidth(col);
  }
  return Acad::eOk;
}

AcRxObject* AcDbTable::clone() const { return new AcDbTable(*this); }

// --- 3D solid -----------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDb3dSolid, AcDbEntity, L"3DSOLID")

AcDb3dSolid::AcDb3dSolid() = default;
AcDb3dSolid::~AcDb3dSolid() = default;

Acad::ErrorStatus AcDb3dSolid::createFrustum(double height, double xRadius, double yRadius, double topXRadius) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (!(height > 0.0) || !(xRadius > 0.0) || !(yRadius > 0.0) || !(topXRadius >= 0.0)) return Acad::eInvalidInput;
  m_hasBody = true;
  m_height = height;
  m_xRadius = xRadius;
  m_yRadius = yRadius;
  m_topXRadius = topXRadius;
  m_placement.setToIdentity();
  return Acad::eOk;
}

Acad::ErrorStatus AcDb3dSolid::getGeomExtents(AcDbExtents& extents) const {
  if (!m_hasBody) return Acad::eInvalidExtents;
  return headless::geom::ExtentsOf(*this, extents);
}

Acad::ErrorStatus AcDb3dSolid::transformBy(const AcGeMatrix3d& xform) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (!xform.isUniScaledOrtho()) return Acad::eCannotScaleNonUniformly;
  m_placement = xform * m_placement;
  return Acad::eOk;
}

AcRxObject* AcDb3dSolid::clone() const { return new AcDb3dSolid(*this); }
