#include "module/acad/GrAcadTextDc.h"

#include <algorithm>

#include "module/acad/GrAcadCurveDc.h"
#include "module/acad/GrAcadTextStyle.h"
#include "module/geometry/KdXform.h"
#include "module/graphics/GrTable.h"
#include "module/graphics/GrText.h"
#include "platform/acad/acutmem.h"
#include "platform/acad/dbdict.h"
#include "platform/acad/dbents.h"
#include "platform/acad/dbtable.h"

namespace {

AcGeMatrix3d MatrixOf(const CKdXform& xform) {
  AcGeMatrix3d m;
  for (int row = 0; row < 4; ++row)
    for (int column = 0; column < 4; ++column) m.entry[row][column] = xform.At(row, column);
  return m;
}

AcDbDatabase* DatabaseOf(const AcDbObject& object) {
  return object.database() != nullptr ? object.database() : CGrAcadDb::Working();
}

Acad::ErrorStatus SetText(const CGrText& text, AcDbText& entity) {
  const int horizontal = static_cast<int>(text.Justification() & 0xFu);
  const int vertical = static_cast<int>((text.Justification() >> 4) & 0xFu);
  if (horizontal > AcDb::kTextFit || vertical > AcDb::kTextTop) return Acad::eInvalidInput;
  const AcDbObjectId style = CGrAcadTextStyle(text.StyleName()).Ensure(DatabaseOf(entity));
  if (style.isNull()) return Acad::eKeyNotFound;
  const AcGePoint3d position = gracad::ToAcad(text.Position());
  Acad::ErrorStatus es = entity.setTextString(text.Message().c_str());
  if (es == Acad::eOk) es = entity.setHeight(text.Height());
  if (es == Acad::eOk) es = entity.setPosition(position);
  if (es == Acad::eOk) es = entity.setAlignmentPoint(position);
  if (es == Acad::eOk) es = entity.setHorizontalMode(static_cast<AcDb::TextHorzMode>(horizontal));
  if (es == Acad::eOk) es = entity.setVerticalMode(static_cast<AcDb::TextVertMode>(vertical));
  if (es == Acad::eOk) es = entity.setRotation(text.Rotation());
  if (es == Acad::eOk) es = entity.setTextStyle(style);
  if (es == Acad::eOk && text.Placement() != nullptr) es = entity.transformBy(MatrixOf(*text.Placement()));
  return es;
}

AcDbObjectId TableStyleOf(AcDbDatabase* db) {
  AcDbObjectId id;
  if (db == nullptr) return id;
  CGrAcadOpened<AcDbDictionary> styles(db->tableStyleDictionaryId(), AcDb::kForRead);
  if (!styles || styles->getAt(L"Standard", id) != Acad::eOk) id = db->tablestyle();
  return id;
}

Acad::ErrorStatus SetTable(const CGrTable& table, AcDbTable& entity) {
  std::size_t columns = 1;
  for (const auto& row : table.Rows()) columns = std::max(columns, row.size());
  const int nRows = static_cast<int>(table.Rows().size()) + 1;
  const int nColumns = static_cast<int>(columns);
  Acad::ErrorStatus es = entity.setTableStyle(TableStyleOf(DatabaseOf(entity)));
  if (es == Acad::eOk) es = entity.setSize(nRows, nColumns);
  if (es == Acad::eOk) es = entity.setPosition(gracad::ToAcad(table.Location()));
  for (int row = 0; row < nRows && es == Acad::eOk; ++row) {
    for (int col = 0; col < nColumns && es == Acad::eOk; ++col) {
      const std::wstring* text = nullptr;
      if (row == 0 && col == 0) {
        text = &table.Title();
      } else if (row > 0 && static_cast<std::size_t>(col) < table.Rows()[static_cast<std::size_t>(row - 1)].size()) {
        text = &table.Rows()[static_cast<std::size_t>(row - 1)][static_cast<std::size_t>(col)];
      }
      es = entity.setTextString(row, col, text != nullptr ? text->c_str() : L"");
      if (es == Acad::eOk) es = entity.setCellState(row, col, AcDb::kCellStateContentLocked);
    }
  }
  return es == Acad::eOk ? entity.generateLayout() : es;
}

std::wstring CellText(const AcDbTable& table, int row, int col) {
  ACHAR* text = table.textString(row, col);
  std::wstring copy = text != nullptr ? text : L"";
  acutDelString(text);
  return copy;
}

}  // namespace

AcDbEntity* CGrAcadTextDc::MakeEntity(CGrElement* element) {
  return MakeKindEntity<CGrText, AcDbText>(element, SetText);
}

CGrElement* CGrAcadTextDc::MakeElement(AcDbObject* object) {
  const AcDbText* entity = AcDbText::cast(object);
  if (entity == nullptr) return nullptr;
  const AcGePoint3d at = entity->isDefaultAlignment() ? entity->position() : entity->alignmentPoint();
  auto* text = new CGrText(gracad::FromAcad(at), entity->height(), entity->textStringConst());
  text->SetRotation(entity->rotation());
  text->SetStyleName(CGrAcadTextStyle::NameOf(entity->textStyle()));
  text->SetJustification(gracad::JustificationCode(entity->horizontalMode(), entity->verticalMode()));
  ReadCommonProperties(entity, text);
  return text;
}

AcDbEntity* CGrAcadTableDc::MakeEntity(CGrElement* element) {
  return MakeKindEntity<CGrTable, AcDbTable>(element, SetTable);
}

CGrElement* CGrAcadTableDc::MakeElement(AcDbObject* object) {
  const AcDbTable* entity = AcDbTable::cast(object);
  if (entity == nullptr || entity->numRows() == 0 || entity->numColumns() == 0) return nullptr;
  auto* table = new CGrTable;
  table->SetLocation(gracad::FromAcad(entity->position()));
  table->SetTitle(CellText(*entity, 0, 0));
  CGrCellRows rows;
  for (int row = 1; row < entity->numRows(); ++row) {
    std::vector<std::wstring> cells;
    for (int col = 0; col < entity->numColumns(); ++col) cells.push_back(CellText(*entity, row, col));
    rows.push_back(std::move(cells));
  }
  table->SetRows(rows);
  ReadCommonProperties(entity, table);
  return table;
}
