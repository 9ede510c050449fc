// CGrAcadDc: the base of the drawing classes, one per element kind, which turn an element into an
// AutoCAD entity and back. The base holds the steps every kind shares: adding a new entity to
// model space or marking an existing one changed, erasing, the common entity properties, and the
// element's tag kept in the entity's extension dictionary.
#pragma once

#include <cstdint>

#include "module/acad/GrAcadDb.h"
#include "module/graphics/GrElement.h"
#include "module/graphics/GrElementVector.h"
#include "platform/acad/dbmain.h"

class CGrAcadGraphicsContext;

namespace gracad {

// Statuses of the drawing layer.
inline constexpr int kOk = 0;
inline constexpr int kRefused = 1;
// What Draw answers when the model space record cannot be had.
inline constexpr int kNoModelSpace = 13;

// Keys of the element's records in the entity's extension dictionary: the tag (one text item,
// group code 1) and, when not 0, the id tag (one 32-bit integer, group code 90).
inline constexpr const wchar_t* kTagKey = L"Tag";
inline constexpr const wchar_t* kIdTagKey = L"IdTag";

}  // namespace gracad

// Statuses are int: 0 success, 1 refused, otherwise an AutoCAD error status.
// The virtual operations keep this declaration order: it is their slot order.
class CGrAcadDc {
public:
  explicit CGrAcadDc(CGrAcadGraphicsContext* context) : m_context(context) {}
  virtual ~CGrAcadDc() = default;
  CGrAcadDc(const CGrAcadDc&) = delete;
  CGrAcadDc& operator=(const CGrAcadDc&) = delete;

  // Makes or updates the element's entity: a new one joins model space and gives the element its
  // ids; an existing one is marked changed. The tag (and id tag) is written when the element was
  // modified or its id tag changed. On success the element is no longer modified.
  virtual int Draw(CGrElement* element);
  // The element's existing entity opened for write (updated from the element when it is
  // modified) or a new entity outside the database; null when the element is of another kind,
  // its entity cannot be opened as the kind's class, or the geometry is refused. The caller
  // closes a database entity and deletes a new one.
  virtual AcDbEntity* MakeEntity(CGrElement* element) = 0;
  // A new element for the object (open for read), owned by the caller; null when the object is
  // not of the class's kind.
  virtual CGrElement* MakeElement(AcDbObject* object) = 0;
  // The element block's definition written without a reference; 1 for every other kind.
  virtual int DrawBlock(CGrElement* element);
  // The elements that the element's entity explodes into, appended to `pieces`: 1 without a
  // session id, AutoCAD's status (eNotApplicable for kinds that do not break up) otherwise.
  virtual int Explode(CGrElement* element, CGrElementVector& pieces);
  // Erases the object; one that is erased already counts as erased (0). The sum of the erase and
  // close statuses.
  virtual int EraseEntity(AcDbObjectId objectId);
  // Layer, colour, line type, line-type scale, visibility, ids, and the tag records.
  virtual void ReadCommonProperties(const AcDbEntity* entity, CGrElement* element);
  // Layer (made when missing), colour, line type (added when missing), line-type scale and
  // visibility; an empty layer name leaves the entity's layer.
  virtual int ApplyCommonProperties(CGrElement* element, AcDbEntity* entity);
  // The extents of the entity the element would make, built outside the database.
  virtual int GetExtents(CGrElement* element, CGrRect& extents);
  // 1 without a session id; otherwise erases it and clears both ids on success.
  virtual int Erase(CGrElement* element);

  int Highlight(CGrElement* element, bool on);
  CGrAcadGraphicsContext* Context() const { return m_context; }

  // The element's records in the object's extension dictionary; the object is open for write.
  // An element without tag (or id tag) loses the record it had.
  static int WriteTag(AcDbObject* object, const CGrElement& element);
  // The tag and id tag kept on the object (open for read), if any.
  static void ReadTag(const AcDbObject* object, CGrElement& element);

protected:
  // Appends a new entity (from MakeEntity) to the record, gives the element its ids and writes
  // its tag; the entity is closed, or deleted when the append fails.
  int AppendTo(AcDbBlockTableRecord* record, CGrElement* element, AcDbEntity* entity);

  // MakeEntity of the kinds whose entity is changed in place: the element as an Element, its
  // existing entity opened as an Entity (updated when the element is modified) or a new Entity
  // with the geometry. setGeometry(element, entity) writes the geometry and answers eOk.
  template <class Element, class Entity, class SetGeometry>
  AcDbEntity* MakeKindEntity(CGrElement* element, SetGeometry setGeometry) {
    auto* typed = dynamic_cast<Element*>(element);
    if (typed == nullptr) return nullptr;
    if (element->SessionId() != 0) {
      Entity* entity = nullptr;
      if (acdbOpenObject(entity, CGrAcadDb::IdFromSessionId(element->SessionId()), AcDb::kForWrite) != Acad::eOk)
        return nullptr;
      if (!element->IsModified()) return entity;
      if (setGeometry(*typed, *entity) != Acad::eOk || ApplyCommonProperties(element, entity) != gracad::kOk) {
        entity->close();
        return nullptr;
      }
      return entity;
    }
    auto* entity = new Entity;
    if (setGeometry(*typed, *entity) != Acad::eOk || ApplyCommonProperties(element, entity) != gracad::kOk) {
      delete entity;
      return nullptr;
    }
    return entity;
  }

  // Kinds whose entity cannot be changed in place (complex entities) replace it. With a session
  // id, an element that is not modified gets its entity opened for write in `unchanged`; a
  // modified one must still have a live entity of `kind`. False when the entity cannot be had.
  bool OpenUnchanged(CGrElement* element, const AcRxClass* kind, AcDbEntity*& unchanged);
  // Erases the element's old entity, once its replacement is built, and clears its ids so that
  // Draw appends the replacement.
  int RetireOld(CGrElement* element);

private:
  CGrAcadGraphicsContext* m_context;
};
