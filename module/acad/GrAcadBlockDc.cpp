#include "module/acad/GrAcadBlockDc.h"

#include <cmath>
#include <memory>

#include "module/acad/GrAcadCurveDc.h"
#include "module/acad/GrAcadGraphicsContext.h"
#include "module/graphics/GrElementBlock.h"
#include "module/graphics/GrGroup.h"
#include "platform/acad/dbdict.h"
#include "platform/acad/dbents.h"
#include "platform/acad/dbgroup.h"
#include "platform/acad/dbsymtb.h"
#include "platform/acad/dbtable.h"

namespace {

constexpr const wchar_t* kAnonymousBlock = L"*U";
constexpr const wchar_t* kAnonymousGroup = L"*";

// Children in the order they are written: a group's members take its place.
void Flatten(const CGrElementVector& elements, std::vector<const CGrElement*>& out) {
  for (const auto& element : elements) {
    if (const auto* group = dynamic_cast<const CGrGroup*>(element.get())) {
      Flatten(group->Elements(), out);
    } else {
      out.push_back(element.get());
    }
  }
}

Acad::ErrorStatus EraseEntities(AcDbBlockTableRecord& record) {
  AcDbBlockTableRecordIterator* it = nullptr;
  if (Acad::ErrorStatus es = record.newIterator(it); es != Acad::eOk) return es;
  Acad::ErrorStatus es = Acad::eOk;
  for (; !it->done() && es == Acad::eOk; it->step()) {
    AcDbEntity* entity = nullptr;
    es = it->getEntity(entity, AcDb::kForWrite);
    if (es == Acad::eOk) {
      es = entity->erase();
      entity->close();
    }
  }
  delete it;
  return es;
}

bool IsAnonymous(const ACHAR* name) { return name != nullptr && name[0] == L'*'; }

// The box of a rectangle's corners (bottom and top) after scaling, turning and moving.
void ExtendPlaced(CGrRect& out, const CGrRect& box, const CGrElementBlock& block) {
  if (box.IsEmpty()) return;
  const CKdVector& s = block.ScaleFactors();
  const double c = std::cos(block.Rotation());
  const double n = std::sin(block.Rotation());
  for (int i = 0; i < 8; ++i) {
    const double x = ((i & 1) ? box.Max().x : box.Min().x) * s.x;
    const double y = ((i & 2) ? box.Max().y : box.Min().y) * s.y;
    const double z = ((i & 4) ? box.Max().z : box.Min().z) * s.z;
    out.Extend(CKdPoint(block.Position().x + c * x - n * y, block.Position().y + n * x + c * y,
                        block.Position().z + z));
  }
}

}  // namespace

// --- Element block ------------------------------------------------------------------------------

int CGrAcadElementBlockDc::Define(const CGrElementBlock& block, AcDbObjectId& recordId) {
  AcDbDatabase* db = CGrAcadDb::Working();
  if (db == nullptr) return Acad::eNoDatabase;
  const std::wstring& label = block.Label();
  if (recordId.isNull()) {
    CGrAcadOpened<AcDbBlockTable> table(db->blockTableId(), AcDb::kForWrite);
    if (!table) return table.Status();
    if (label.empty() || table->getAt(label.c_str(), recordId) != Acad::eOk) {
      auto* record = new AcDbBlockTableRecord;
      Acad::ErrorStatus es = record->setName(label.empty() ? kAnonymousBlock : label.c_str());
      if (es == Acad::eOk) es = table->add(recordId, record);
      if (es != Acad::eOk) {
        delete record;
        return es;
      }
      record->close();
    }
  }
  CGrAcadOpened<AcDbBlockTableRecord> record(recordId, AcDb::kForWrite);
  if (!record) return record.Status();
  if (record->isLayout()) return gracad::kRefused;
  const ACHAR* name = nullptr;
  record->getName(name);
  if (!label.empty() && name != nullptr && label != name) {
    if (Acad::ErrorStatus es = record->setName(label.c_str()); es != Acad::eOk) return es;
  }
  if (Acad::ErrorStatus es = EraseEntities(*record.get()); es != Acad::eOk) return es;
  std::vector<const CGrElement*> children;
  Flatten(block.Elements(), children);
  for (const CGrElement* child : children) {
    CGrAcadDc* dc = Context()->DcForKind(child->Type());
    if (dc == nullptr) return gracad::kRefused;
    // The definition gets entities of its own: a copy without ids.
    std::unique_ptr<CGrElement> copy(child->Clone());
    copy->ResetDrawn();
    AcDbEntity* entity = dc->MakeEntity(copy.get());
    if (entity == nullptr) return gracad::kRefused;
    if (int status = AppendTo(record.get(), copy.get(), entity); status != gracad::kOk) return status;
  }
  return gracad::kOk;
}

AcDbEntity* CGrAcadElementBlockDc::MakeEntity(CGrElement* element) {
  auto* block = dynamic_cast<CGrElementBlock*>(element);
  if (block == nullptr) return nullptr;
  const CKdVector& s = block->ScaleFactors();
  const auto place = [&](AcDbBlockReference& reference) {
    Acad::ErrorStatus es = reference.setPosition(gracad::ToAcad(block->Position()));
    if (es == Acad::eOk) es = reference.setRotation(block->Rotation());
    if (es == Acad::eOk) es = reference.setScaleFactors(AcGeScale3d(s.x, s.y, s.z));
    if (es == Acad::eOk && ApplyCommonProperties(element, &reference) != gracad::kOk) es = Acad::eInvalidInput;
    return es;
  };
  if (element->SessionId() != 0) {
    AcDbBlockReference* reference = nullptr;
    if (acdbOpenObject(reference, CGrAcadDb::IdFromSessionId(element->SessionId()), AcDb::kForWrite) != Acad::eOk)
      return nullptr;
    if (!element->IsModified()) return reference;
    AcDbObjectId record = reference->blockTableRecord();
    if (AcDbTable::cast(reference) != nullptr || Define(*block, record) != gracad::kOk || place(*reference) != Acad::eOk) {
      reference->close();
      return nullptr;
    }
    return reference;
  }
  AcDbObjectId record;
  if (Define(*block, record) != gracad::kOk) return nullptr;
  auto* reference = new AcDbBlockReference(AcGePoint3d::kOrigin, record);
  if (place(*reference) != Acad::eOk) {
    delete reference;
    return nullptr;
  }
  return reference;
}

int CGrAcadElementBlockDc::DrawBlock(CGrElement* element) {
  const auto* block = dynamic_cast<const CGrElementBlock*>(element);
  if (block == nullptr) return gracad::kRefused;
  AcDbObjectId record;
  return Define(*block, record);
}

CGrElement* CGrAcadElementBlockDc::MakeElement(AcDbObject* object) {
  AcDbBlockReference* reference = AcDbBlockReference::cast(object);
  if (reference == nullptr) return nullptr;
  auto* block = new CGrElementBlock;
  if (AcDbTable::cast(reference) != nullptr) {
    // Its graphics, in drawing coordinates.
    AcDbVoidPtrArray parts;
    reference->explode(parts);
    for (void* part : parts) {
      std::unique_ptr<AcDbEntity> piece(static_cast<AcDbEntity*>(static_cast<AcRxObject*>(part)));
      block->Add(Context()->ElementFromObject(piece.get()));
    }
  } else {
    const AcGeScale3d scale = reference->scaleFactors();
    block->SetPosition(gracad::FromAcad(reference->position()));
    block->SetRotation(reference->rotation());
    block->SetScaleFactors(CKdVector(scale.sx, scale.sy, scale.sz));
    CGrAcadOpened<AcDbBlockTableRecord> record(reference->blockTableRecord(), AcDb::kForRead);
    if (record) {
      const ACHAR* name = nullptr;
      record->getName(name);
      if (name != nullptr && !IsAnonymous(name)) block->SetLabel(name);
      AcDbBlockTableRecordIterator* it = nullptr;
      if (record->newIterator(it) == Acad::eOk) {
        for (; !it->done(); it->step()) {
          AcDbEntity* entity = nullptr;
          if (it->getEntity(entity, AcDb::kForRead) != Acad::eOk) continue;
          block->Add(Context()->ElementFromObject(entity));
          entity->close();
        }
        delete it;
      }
    }
  }
  ReadCommonProperties(reference, block);
  return block;
}

int CGrAcadElementBlockDc::GetExtents(CGrElement* element, CGrRect& extents) {
  const auto* block = dynamic_cast<const CGrElementBlock*>(element);
  if (block == nullptr) return gracad::kRefused;
  std::vector<const CGrElement*> children;
  Flatten(block->Elements(), children);
  CGrRect placed;
  for (const CGrElement* child : children) {
    CGrAcadDc* dc = Context()->DcForKind(child->Type());
    CGrRect box;
    std::unique_ptr<CGrElement> copy(child->Clone());
    if (dc == nullptr || dc->GetExtents(copy.get(), box) != gracad::kOk) continue;
    ExtendPlaced(placed, box, *block);
  }
  if (placed.IsEmpty()) return Acad::eInvalidExtents;
  extents = placed;
  return gracad::kOk;
}

// --- Group --------------------------------------------------------------------------------------

int CGrAcadGroupDc::Draw(CGrElement* element) {
  auto* group = dynamic_cast<CGrGroup*>(element);
  if (group == nullptr) return gracad::kRefused;
  const bool changed = group->IsModified() || group->IsIdTagChanged();
  // The group owns its children and is not const here: they take the ids of what is drawn.
  auto& children = const_cast<CGrElementVector&>(group->Elements());
  AcDbObjectIdArray members;
  for (std::size_t i = 0; i < children.Size(); ++i) {
    CGrElement* child = children.At(i);
    if (int status = Context()->Draw(child); status != gracad::kOk) return status;
    if (child->Type() != group->Type()) members.append(CGrAcadDb::IdFromSessionId(child->SessionId()));
  }
  const std::wstring& name = group->Name();
  AcDbGroup* object = nullptr;
  if (group->SessionId() != 0) {
    const Acad::ErrorStatus es = acdbOpenObject(object, CGrAcadDb::IdFromSessionId(group->SessionId()), AcDb::kForWrite);
    if (es != Acad::eOk) return es;
  } else {
    AcDbDatabase* db = CGrAcadDb::Working();
    if (db == nullptr) return Acad::eNoDatabase;
    CGrAcadOpened<AcDbDictionary> groups(db->groupDictionaryId(), AcDb::kForWrite);
    if (!groups) return groups.Status();
    object = new AcDbGroup;
    AcDbObjectId id;
    const Acad::ErrorStatus es = groups->setAt(name.empty() ? kAnonymousGroup : name.c_str(), object, id);
    if (es != Acad::eOk) {
      delete object;
      return es;
    }
    group->SetSessionId(CGrAcadDb::SessionIdOf(id));
    group->SetHandle(CGrAcadDb::HandleOf(id));
  }
  Acad::ErrorStatus es = Acad::eOk;
  if (changed) {
    es = object->clear();
    if (es == Acad::eOk && !members.isEmpty()) es = object->append(members);
    const ACHAR* current = object->name();
    if (es == Acad::eOk && !name.empty() && (current == nullptr || name != current)) es = object->setName(name.c_str());
  }
  int status = es;
  if (status == gracad::kOk && changed) status = WriteTag(object, *group);
  const int closed = object->close();
  if (status == gracad::kOk) status = closed;
  if (status == gracad::kOk) {
    group->SetModified(false);
    group->SetIdTagChanged(false);
  }
  return status;
}

AcDbEntity* CGrAcadGroupDc::MakeEntity(CGrElement*) { return nullptr; }

CGrElement* CGrAcadGroupDc::MakeElement(AcDbObject* object) {
  AcDbGroup* source = AcDbGroup::cast(object);
  if (source == nullptr) return nullptr;
  auto* group = new CGrGroup(source->isAnonymous() || source->name() == nullptr ? L"" : source->name());
  if (AcDbGroupIterator* it = source->newIterator()) {
    for (; !it->done(); it->next()) {
      CGrAcadOpened<AcDbEntity> member(it->objectId(), AcDb::kForRead);
      if (member) group->Add(Context()->ElementFromObject(member.get()));
    }
    delete it;
  }
  group->SetSessionId(CGrAcadDb::SessionIdOf(source->objectId()));
  group->SetHandle(CGrAcadDb::HandleOf(source->objectId()));
  ReadTag(source, *group);
  return group;
}

int CGrAcadGroupDc::GetExtents(CGrElement* element, CGrRect& extents) {
  const auto* group = dynamic_cast<const CGrGroup*>(element);
  if (group == nullptr) return gracad::kRefused;
  CGrRect all;
  for (const auto& child : group->Elements()) {
    CGrAcadDc* dc = Context()->DcForKind(child->Type());
    CGrRect box;
    if (dc != nullptr && dc->GetExtents(child.get(), box) == gracad::kOk) all.Extend(box);
  }
  if (all.IsEmpty()) return Acad::eInvalidExtents;
  extents = all;
  return gracad::kOk;
}
