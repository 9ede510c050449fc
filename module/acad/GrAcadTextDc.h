// The drawing classes of texts and tables.
#pragma once

#include <cstdint>

#include "module/acad/GrAcadDc.h"

namespace gracad {

// CGrText::Justification: AutoCAD's horizontal mode (0 left, 1 centre, 2 right, 3 aligned,
// 4 middle, 5 fit) in bits 0-3 and vertical mode (0 baseline, 1 bottom, 2 middle, 3 top) in bits
// 4-7. For every justification but left/baseline the element's position is the alignment point.
inline constexpr std::uint32_t JustificationCode(int horizontal, int vertical) {
  return static_cast<std::uint32_t>(horizontal) | (static_cast<std::uint32_t>(vertical) << 4);
}

}  // namespace gracad

// AcDbText: string, height, position and alignment point, justification, rotation, the text style
// the element names (made, with the "txt" font, when the drawing lacks it), then the element's
// placement transform.
class CGrAcadTextDc : public CGrAcadDc {
public:
  using CGrAcadDc::CGrAcadDc;
  AcDbEntity* MakeEntity(CGrElement* element) override;
  CGrElement* MakeElement(AcDbObject* object) override;
};

// AcDbTable in the table style "Standard" of the drawing's table style dictionary (the current
// table style when there is none): a title row across the columns (the title in its first cell),
// then one row per element row; as many columns as the longest row, shorter rows padded with
// empty cells. Every cell's content is locked. The table sits with its top left corner at the
// location. A table reads back as an element block (it is a block reference): this class's
// MakeElement is for callers that know they hold a table.
class CGrAcadTableDc : public CGrAcadDc {
public:
  using CGrAcadDc::CGrAcadDc;
  AcDbEntity* MakeEntity(CGrElement* element) override;
  CGrElement* MakeElement(AcDbObject* object) override;
};
