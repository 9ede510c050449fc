#include "module/acad/GrAcadDc.h"

#include <memory>

#include "module/acad/GrAcadGraphicsContext.h"
#include "module/acad/GrAcadLayer.h"
#include "platform/acad/acutads.h"
#include "platform/acad/acutmem.h"
#include "platform/acad/dbdict.h"
#include "platform/acad/dbsymtb.h"
#include "platform/acad/dbxrecrd.h"

namespace {

AcDbDatabase* DatabaseOf(const AcDbObject* object) {
  AcDbDatabase* db = object->database();
  return db != nullptr ? db : CGrAcadDb::Working();
}

// Puts a one-item chain under the key of an open dictionary (replacing what was there).
Acad::ErrorStatus PutRecord(AcDbDictionary& dictionary, const wchar_t* key, resbuf* chain) {
  if (chain == nullptr) return Acad::eOutOfMemory;
  auto* record = new AcDbXrecord;
  Acad::ErrorStatus es = record->setFromRbChain(*chain);
  acutRelRb(chain);
  AcDbObjectId id;
  if (es == Acad::eOk) es = dictionary.setAt(key, record, id);
  if (es != Acad::eOk) {
    delete record;
    return es;
  }
  return record->close();
}

void DropRecord(AcDbDictionary& dictionary, const wchar_t* key) {
  AcDbObject* record = nullptr;
  if (dictionary.getAt(key, record, AcDb::kForWrite) != Acad::eOk) return;
  record->erase();
  record->close();
}

// The first item of the record under key, when it has the group code.
resbuf* FirstItem(const AcDbDictionary& dictionary, const wchar_t* key, short restype) {
  AcDbObject* object = nullptr;
  if (dictionary.getAt(key, object, AcDb::kForRead) != Acad::eOk) return nullptr;
  resbuf* chain = nullptr;
  if (const AcDbXrecord* record = AcDbXrecord::cast(object)) record->rbChain(&chain);
  object->close();
  if (chain != nullptr && chain->restype != restype) {
    acutRelRb(chain);
    chain = nullptr;
  }
  return chain;
}

}  // namespace

int CGrAcadDc::Draw(CGrElement* element) {
  if (element == nullptr) return gracad::kRefused;
  const bool changed = element->IsModified() || element->IsIdTagChanged();
  AcDbEntity* entity = MakeEntity(element);
  if (entity == nullptr) return gracad::kRefused;
  int status = gracad::kOk;
  if (!entity->objectId().isNull()) {
    entity->recordGraphicsModified();
    if (changed) status = WriteTag(entity, *element);
    const int closed = entity->close();
    if (status == gracad::kOk) status = closed;
  } else {
    CGrAcadModelSpace space;
    if (space.Record() == nullptr) {
      delete entity;
      return gracad::kNoModelSpace;
    }
    status = AppendTo(space.Record(), element, entity);
  }
  if (status == gracad::kOk) {
    element->SetModified(false);
    element->SetIdTagChanged(false);
  }
  return status;
}

int CGrAcadDc::AppendTo(AcDbBlockTableRecord* record, CGrElement* element, AcDbEntity* entity) {
  AcDbObjectId id;
  const Acad::ErrorStatus es = record->appendAcDbEntity(id, entity);
  if (es != Acad::eOk) {
    delete entity;
    return es;
  }
  element->SetHandle(CGrAcadDb::HandleOf(id));
  element->SetSessionId(CGrAcadDb::SessionIdOf(id));
  const int status = WriteTag(entity, *element);
  const int closed = entity->close();
  return status != gracad::kOk ? status : closed;
}

int CGrAcadDc::DrawBlock(CGrElement*) { return gracad::kRefused; }

int CGrAcadDc::Explode(CGrElement* element, CGrElementVector& pieces) {
  if (element == nullptr || element->SessionId() == 0) return gracad::kRefused;
  CGrAcadOpened<AcDbEntity> entity(CGrAcadDb::IdFromSessionId(element->SessionId()), AcDb::kForRead);
  if (!entity) return entity.Status();
  AcDbVoidPtrArray parts;
  const Acad::ErrorStatus es = entity->explode(parts);
  for (void* part : parts) {
    std::unique_ptr<AcDbEntity> piece(static_cast<AcDbEntity*>(static_cast<AcRxObject*>(part)));
    if (es == Acad::eOk) pieces.Add(m_context->ElementFromObject(piece.get()));
  }
  return es;
}

int CGrAcadDc::EraseEntity(AcDbObjectId objectId) {
  AcDbObject* object = nullptr;
  const Acad::ErrorStatus es = acdbOpenAcDbObject(object, objectId, AcDb::kForWrite);
  if (es == Acad::eWasErased) return gracad::kOk;
  if (es != Acad::eOk) return es;
  const int erased = object->erase();
  return erased + object->close();
}

int CGrAcadDc::Erase(CGrElement* element) {
  if (element == nullptr || element->SessionId() == 0) return gracad::kRefused;
  const int status = EraseEntity(CGrAcadDb::IdFromSessionId(element->SessionId()));
  if (status == gracad::kOk) {
    element->SetSessionId(0);
    element->SetHandle(0);
  }
  return status;
}

int CGrAcadDc::Highlight(CGrElement* element, bool on) {
  if (element == nullptr || element->SessionId() == 0) return gracad::kRefused;
  CGrAcadOpened<AcDbEntity> entity(CGrAcadDb::IdFromSessionId(element->SessionId()), AcDb::kForRead);
  if (!entity) return entity.Status();
  return on ? entity->highlight() : entity->unhighlight();
}

void CGrAcadDc::ReadCommonProperties(const AcDbEntity* entity, CGrElement* element) {
  if (ACHAR* layer = entity->layer()) {
    element->SetLayerName(layer);
    acutDelString(layer);
  }
  element->SetColor(GrElementColorFromAcad(entity->color()));
  if (ACHAR* lineType = entity->linetype()) {
    element->SetLineType(CGrAcadLineType::CodeOf(lineType));
    acutDelString(lineType);
  }
  element->SetLineTypeScale(entity->linetypeScale());
  element->SetDisplay(entity->visibility() == AcDb::kVisible);
  const AcDbObjectId id = entity->objectId();
  element->SetSessionId(CGrAcadDb::SessionIdOf(id));
  element->SetHandle(id.isNull() ? 0 : CGrAcadDb::HandleOf(id));
  ReadTag(entity, *element);
}

int CGrAcadDc::ApplyCommonProperties(CGrElement* element, AcDbEntity* entity) {
  AcDbDatabase* db = DatabaseOf(entity);
  if (!element->LayerName().empty()) {
    const AcDbObjectId layer = CGrAcadLayerTable(db).Ensure(element->LayerName());
    if (layer.isNull()) return Acad::eKeyNotFound;
    if (Acad::ErrorStatus es = entity->setLayer(layer); es != Acad::eOk) return es;
  }
  if (Acad::ErrorStatus es = entity->setColor(GrAcadColorFromElement(element->Color())); es != Acad::eOk) return es;
  const AcDbObjectId lineType = CGrAcadLineType::Ensure(db, element->LineType());
  if (lineType.isNull()) return Acad::eKeyNotFound;
  if (Acad::ErrorStatus es = entity->setLinetype(lineType); es != Acad::eOk) return es;
  if (Acad::ErrorStatus es = entity->setLinetypeScale(element->LineTypeScale()); es != Acad::eOk) return es;
  return entity->setVisibility(element->GetDisplay() ? AcDb::kVisible : AcDb::kInvisible);
}

int CGrAcadDc::GetExtents(CGrElement* element, CGrRect& extents) {
  if (element == nullptr) return gracad::kRefused;
  // A copy without ids, so that the entity is built outside the database.
  std::unique_ptr<CGrElement> copy(element->Clone());
  copy->ResetDrawn();
  std::unique_ptr<AcDbEntity> entity(MakeEntity(copy.get()));
  if (!entity) return gracad::kRefused;
  AcDbExtents box;
  const Acad::ErrorStatus es = entity->getGeomExtents(box);
  if (es != Acad::eOk) return es;
  const AcGePoint3d lo = box.minPoint();
  const AcGePoint3d hi = box.maxPoint();
  extents = CGrRect(CKdPoint(lo.x, lo.y, lo.z), CKdPoint(hi.x, hi.y, hi.z));
  return gracad::kOk;
}

bool CGrAcadDc::OpenUnchanged(CGrElement* element, const AcRxClass* kind, AcDbEntity*& unchanged) {
  unchanged = nullptr;
  if (element->SessionId() == 0) return true;
  const AcDbObjectId id = CGrAcadDb::IdFromSessionId(element->SessionId());
  const AcRxClass* objectClass = id.objectClass();
  if (objectClass == nullptr || !objectClass->isDerivedFrom(kind) || id.isErased()) return false;
  if (element->IsModified()) return true;
  AcDbEntity* entity = nullptr;
  if (acdbOpenAcDbEntity(entity, id, AcDb::kForWrite) != Acad::eOk) return false;
  unchanged = entity;
  return true;
}

int CGrAcadDc::RetireOld(CGrElement* element) {
  const int status = EraseEntity(CGrAcadDb::IdFromSessionId(element->SessionId()));
  if (status == gracad::kOk) {
    element->SetSessionId(0);
    element->SetHandle(0);
  }
  return status;
}

int CGrAcadDc::WriteTag(AcDbObject* object, const CGrElement& element) {
  const std::wstring* tag = element.Tag();
  const bool hasIdTag = element.IdTag() != 0;
  if (tag == nullptr && !hasIdTag && object->extensionDictionary().isNull()) return gracad::kOk;
  const Acad::ErrorStatus created = object->createExtensionDictionary();
  if (created != Acad::eOk && created != Acad::eAlreadyInDb) return created;
  // The dictionary stays erased when an erased object comes back: it is unerased here.
  AcDbDictionary* dictionary = nullptr;
  if (acdbOpenObject(dictionary, object->extensionDictionary(), AcDb::kForWrite, true) != Acad::eOk)
    return gracad::kRefused;
  if (dictionary->isErased()) dictionary->erase(false);
  Acad::ErrorStatus es = Acad::eOk;
  if (tag != nullptr) {
    es = PutRecord(*dictionary, gracad::kTagKey, acutBuildList(AcDb::kDxfText, tag->c_str(), 0));
  } else {
    DropRecord(*dictionary, gracad::kTagKey);
  }
  if (es == Acad::eOk && hasIdTag) {
    es = PutRecord(*dictionary, gracad::kIdTagKey,
                   acutBuildList(AcDb::kDxfInt32, static_cast<int>(element.IdTag()), 0));
  } else if (es == Acad::eOk) {
    DropRecord(*dictionary, gracad::kIdTagKey);
  }
  dictionary->close();
  return es;
}

void CGrAcadDc::ReadTag(const AcDbObject* object, CGrElement& element) {
  const AcDbObjectId dictionaryId = object->extensionDictionary();
  if (dictionaryId.isNull()) return;
  CGrAcadOpened<AcDbDictionary> dictionary(dictionaryId, AcDb::kForRead);
  if (!dictionary) return;
  if (resbuf* text = FirstItem(*dictionary.get(), gracad::kTagKey, AcDb::kDxfText)) {
    if (text->resval.rstring != nullptr) element.SetTag(text->resval.rstring);
    acutRelRb(text);
  }
  if (resbuf* idTag = FirstItem(*dictionary.get(), gracad::kIdTagKey, AcDb::kDxfInt32)) {
    element.SetIdTag(static_cast<std::uint32_t>(idTag->resval.rlong));
    acutRelRb(idTag);
  }
}
