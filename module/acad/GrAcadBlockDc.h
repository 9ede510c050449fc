// The drawing classes of the kinds that hold other elements: the element block (a block
// definition and a reference to it) and the group (AutoCAD's group of entities).
#pragma once

#include "module/acad/GrAcadDc.h"

class CGrElementBlock;

// AcDbBlockReference of a block table record that holds the element's children (in block
// coordinates, the record's origin at 0,0,0), with the element's position, rotation and scale
// factors. The record is named by the element's label (an existing record of that name is
// redefined, as AutoCAD's blocks are) or anonymous ("*U<n>") when the label is empty; an
// anonymous record reads back with an empty label. A group among the children adds its members.
// Redrawing a modified block replaces the record's entities. Reading walks the record's entities
// into children; a table, which is a block reference without a record of its own here, reads
// back as the pieces it explodes into.
class CGrAcadElementBlockDc : public CGrAcadDc {
public:
  using CGrAcadDc::CGrAcadDc;
  AcDbEntity* MakeEntity(CGrElement* element) override;
  CGrElement* MakeElement(AcDbObject* object) override;
  // Writes the definition alone.
  int DrawBlock(CGrElement* element) override;
  // The union of the placed children's extents; nothing is written.
  int GetExtents(CGrElement* element, CGrRect& extents) override;

private:
  // Makes or refills the record; `record` is the one to refill (null: by label, or a new one).
  int Define(const CGrElementBlock& block, AcDbObjectId& record);
};

// AcDbGroup in the drawing's group dictionary under the element's name (anonymous when empty; an
// existing group of that name is replaced, as the dictionary does), holding the entities of the
// children, which are drawn first into model space. The group has no entity of its own: its
// session id and handle are the group object's, its tag is kept on it, and its own colour, layer
// and line type are not kept. Erasing the group leaves its members.
class CGrAcadGroupDc : public CGrAcadDc {
public:
  using CGrAcadDc::CGrAcadDc;
  int Draw(CGrElement* element) override;
  // No entity: null.
  AcDbEntity* MakeEntity(CGrElement* element) override;
  CGrElement* MakeElement(AcDbObject* object) override;
  // The union of the children's extents.
  int GetExtents(CGrElement* element, CGrRect& extents) override;
};
