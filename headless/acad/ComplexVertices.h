// What the complex entities (old-style polylines, polyface meshes) share: vertices that the entity
// holds until it joins a database and that are database objects it owns from then on.
#pragma once

#include <vector>

#include "platform/acad/dbents.h"

namespace headless {

// Brings the vertices an entity held into its database, owned by it, ended by a sequence end.
Acad::ErrorStatus AddVertices(const AcDbObject& owner, AcDbImpComplexVertices& vertices);
// Adds one vertex: kept by the entity before it is in a database (which must be open for write),
// a database object, open for write, after.
Acad::ErrorStatus AppendVertex(AcDbEntity& owner, AcDbImpComplexVertices& vertices, AcDbVertex* vertex,
                               AcDbObjectId* objId);
// An erased complex entity takes its vertices and sequence end along (and back).
void EraseVertices(const AcDbImpComplexVertices& vertices, bool erasing);
// The live vertices, to change on behalf of the entity (which is open for write).
std::vector<AcDbVertex*> WritableVertices(const AcDbImpComplexVertices& vertices);

// The common properties of an entity given to the pieces it explodes into.
template <class Entity>
void CopyEntityProperties(const AcDbEntity& from, Entity* to) {
  to->setColor(from.color());
  if (!from.layerId().isNull()) to->setLayer(from.layerId());
  if (!from.linetypeId().isNull()) to->setLinetype(from.linetypeId());
  to->setLinetypeScale(from.linetypeScale());
  to->setVisibility(from.visibility());
}

}  // namespace headless
