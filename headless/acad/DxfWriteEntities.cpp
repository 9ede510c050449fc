// The DXF writer's entities: every kind with its subclass groups, the vertices of complex
// entities, and the graphics block of a table.
#include "headless/acad/DxfWriter.h"

namespace headless::dxf::detail {

void Writer::BlockBegin(std::uint64_t handle, std::uint64_t owner, const std::string& name, const AcGePoint3d& origin,
                        int flags, bool paper) {
  m_out.Str(0, "BLOCK");
  m_out.Handle(5, handle);
  m_out.Handle(330, owner);
  m_out.Str(100, "AcDbEntity");
  if (paper) m_out.Int(67, 1);
  m_out.Str(8, "0");
  m_out.Str(100, "AcDbBlockBegin");
  m_out.Str(2, name);
  m_out.Int(70, flags);
  m_out.Point(10, origin.x, origin.y, origin.z);
  m_out.Str(3, name);
  m_out.Str(1, "");
}

void Writer::BlockEnd(std::uint64_t handle, std::uint64_t owner, bool paper) {
  m_out.Str(0, "ENDBLK");
  m_out.Handle(5, handle);
  m_out.Handle(330, owner);
  m_out.Str(100, "AcDbEntity");
  if (paper) m_out.Int(67, 1);
  m_out.Str(8, "0");
  m_out.Str(100, "AcDbBlockEnd");
}

void Writer::Blocks() {
  m_out.Str(0, "SECTION");
  m_out.Str(2, "BLOCKS");
  auto* blocks = Peek<AcDbBlockTable>(m_db.roots().blockTable);
  for (AcDbObjectId id : blocks->recordIds()) {
    const AcDbStub* stub = StubOf(id);
    auto* record = Peek<AcDbBlockTableRecord>(id);
    if (stub == nullptr || stub->erased || record == nullptr) continue;
    const bool paper = id == m_db.roots().paperSpace;
    const std::string& name = NameOfRecord(id);
    BlockBegin(HandleOf(record->blockBeginId()), stub->handle, name, record->origin(), record->isAnonymous() ? 1 : 0,
               paper);
    if (!record->isLayout()) {
      for (AcDbObjectId entityId : record->entityIds()) Entity(entityId);
    }
    BlockEnd(HandleOf(record->blockEndId()), stub->handle, paper);
  }
  for (AcDbObjectId id : m_tableBlockOrder) TableGraphics(id);
  m_out.Str(0, "ENDSEC");
}

void Writer::Entities() {
  m_out.Str(0, "SECTION");
  m_out.Str(2, "ENTITIES");
  if (auto* model = Peek<AcDbBlockTableRecord>(m_db.roots().modelSpace)) {
    for (AcDbObjectId id : model->entityIds()) Entity(id);
  }
  if (auto* paper = Peek<AcDbBlockTableRecord>(m_db.roots().paperSpace)) {
    m_paperSpace = true;
    for (AcDbObjectId id : paper->entityIds()) Entity(id);
    m_paperSpace = false;
  }
  m_out.Str(0, "ENDSEC");
}

void Writer::Entity(AcDbObjectId id) {
  const AcDbStub* stub = StubOf(id);
  if (stub == nullptr || stub->erased) return;
  AcDbObject* object = stub->object.get();
  bool written = true;
  if (auto* line = AcDbLine::cast(object)) {
    EntityHead("LINE", *line, *stub, "AcDbLine");
    if (line->thickness() != 0.0) m_out.Real(39, line->thickness());
    m_out.Point(10, line->startPoint().x, line->startPoint().y, line->startPoint().z);
    m_out.Point(11, line->endPoint().x, line->endPoint().y, line->endPoint().z);
    Normal(line->normal());
  } else if (auto* arc = AcDbArc::cast(object)) {
    EntityHead("ARC", *arc, *stub, "AcDbCircle");
    Circle(arc->center(), arc->normal(), arc->radius(), arc->thickness());
    m_out.Str(100, "AcDbArc");
    m_out.Real(50, Deg(arc->startAngle()));
    m_out.Real(51, Deg(arc->endAngle()));
  } else if (auto* circle = AcDbCircle::cast(object)) {
    EntityHead("CIRCLE", *circle, *stub, "AcDbCircle");
    Circle(circle->center(), circle->normal(), circle->radius(), circle->thickness());
  } else if (auto* ellipse = AcDbEllipse::cast(object)) {
    EntityHead("ELLIPSE", *ellipse, *stub, "AcDbEllipse");
    const AcGePoint3d c = ellipse->center();
    const AcGeVector3d major = ellipse->majorAxis();
    const AcGeVector3d n = ellipse->normal();
    double start = 0.0;
    double end = 0.0;
    ellipse->getStartParam(start);
    ellipse->getEndParam(end);
    m_out.Point(10, c.x, c.y, c.z);
    m_out.Point(11, major.x, major.y, major.z);
    m_out.Point(210, n.x, n.y, n.z);
    m_out.Real(40, ellipse->radiusRatio());
    m_out.Real(41, start);
    m_out.Real(42, end);
  } else if (auto* light = AcDbPolyline::cast(object)) {
    LightweightPolyline(*light, *stub);
  } else if (auto* flat = AcDb2dPolyline::cast(object)) {
    Polyline2d(*flat, *stub);
  } else if (auto* spatial = AcDb3dPolyline::cast(object)) {
    Polyline3d(*spatial, *stub);
  } else if (auto* mesh = AcDbPolyFaceMesh::cast(object)) {
    PolyfaceMesh(*mesh, *stub);
  } else if (auto* table = AcDbTable::cast(object)) {
    TableEntity(*table, *stub);
  } else if (auto* insert = AcDbBlockReference::cast(object)) {
    EntityHead("INSERT", *insert, *stub, "AcDbBlockReference");
    m_out.Str(2, NameOfRecord(insert->blockTableRecord()));
    const AcGePoint3d p = insert->position();
    m_out.Point(10, p.x, p.y, p.z);
    const AcGeScale3d s = insert->scaleFactors();
    m_out.Real(41, s.sx);
    m_out.Real(42, s.sy);
    m_out.Real(43, s.sz);
    m_out.Real(50, Deg(insert->rotation()));
    Normal(insert->normal());
  } else if (auto* text = AcDbText::cast(object)) {
    Text(*text, *stub);
  } else if (auto* face = AcDbFace::cast(object)) {
    EntityHead("3DFACE", *face, *stub, "AcDbFace");
    int hidden = 0;
    for (Adesk::UInt16 i = 0; i < 4; ++i) {
      AcGePoint3d p;
      face->getVertexAt(i, p);
      m_out.Point(10 + i, p.x, p.y, p.z);
      Adesk::Boolean visible = true;
      face->isEdgeVisibleAt(i, visible);
      if (!visible) hidden |= 1 << i;
    }
    m_out.Int(70, hidden);
  } else if (auto* hatch = AcDbHatch::cast(object)) {
    Hatch(*hatch, *stub);
  } else if (auto* solid = AcDb3dSolid::cast(object)) {
    Solid(*solid, *stub);
  } else {
    // Objects of other applications (Civil 3D's) have no DXF form here.
    written = false;
  }
  if (written) m_written.insert(stub->handle);
}

void Writer::Circle(const AcGePoint3d& centre, const AcGeVector3d& normal, double radius, double thickness) {
  if (thickness != 0.0) m_out.Real(39, thickness);
  // The centre in the object coordinate system of the normal.
  const AcGePoint3d c = AcGePoint3d(centre).transformBy(AcGeMatrix3d::worldToPlane(normal));
  m_out.Point(10, c.x, c.y, c.z);
  m_out.Real(40, radius);
  Normal(normal);
}

void Writer::LightweightPolyline(const AcDbPolyline& pl, const AcDbStub& stub) {
  EntityHead("LWPOLYLINE", pl, stub, "AcDbPolyline");
  m_out.Int(90, pl.numVerts());
  m_out.Int(70, pl.isClosed() ? 1 : 0);
  double width = 0.0;
  if (pl.getConstantWidth(width) == Acad::eOk && width != 0.0) m_out.Real(43, width);
  if (pl.elevation() != 0.0) m_out.Real(38, pl.elevation());
  if (pl.thickness() != 0.0) m_out.Real(39, pl.thickness());
  for (unsigned i = 0; i < pl.numVerts(); ++i) {
    AcGePoint2d p;
    double bulge = 0.0;
    double sw = 0.0;
    double ew = 0.0;
    pl.getPointAt(i, p);
    pl.getBulgeAt(i, bulge);
    pl.getWidthsAt(i, sw, ew);
    m_out.Point2(10, p.x, p.y);
    if (sw != 0.0 || ew != 0.0) {
      m_out.Real(40, sw);
      m_out.Real(41, ew);
    }
    if (bulge != 0.0) m_out.Real(42, bulge);
  }
  Normal(pl.normal());
}

void Writer::Vertices(const AcDbImpComplexVertices& vertices, const AcDbEntity& owner, const AcDbStub& ownerStub,
                      const std::function<void(const AcDbVertex&)>& body) {
  for (AcDbObjectId id : vertices.ids) {
    const AcDbStub* stub = StubOf(id);
    if (stub == nullptr || stub->erased) continue;
    auto* vertex = AcDbVertex::cast(stub->object.get());
    Head("VERTEX", *stub);
    m_out.Str(100, "AcDbEntity");
    if (m_paperSpace) m_out.Int(67, 1);
    m_out.Str(8, owner.layerId().isNull() ? std::string("0") : NameOfRecord(owner.layerId()));
    m_out.Str(100, "AcDbVertex");
    body(*vertex);
    m_written.insert(stub->handle);
  }
  if (const AcDbStub* end = StubOf(vertices.sequenceEnd)) {
    Head("SEQEND", *end);
    m_out.Str(100, "AcDbEntity");
    if (m_paperSpace) m_out.Int(67, 1);
    m_out.Str(8, owner.layerId().isNull() ? std::string("0") : NameOfRecord(owner.layerId()));
    m_written.insert(end->handle);
  }
  (void)ownerStub;
}

void Writer::Polyline2d(const AcDb2dPolyline& pl, const AcDbStub& stub) {
  EntityHead("POLYLINE", pl, stub, "AcDb2dPolyline");
  m_out.Int(66, 1);
  m_out.Point(10, 0, 0, pl.elevation());
  if (pl.thickness() != 0.0) m_out.Real(39, pl.thickness());
  m_out.Int(70, pl.isClosed() ? 1 : 0);
  if (pl.defaultStartWidth() != 0.0) m_out.Real(40, pl.defaultStartWidth());
  if (pl.defaultEndWidth() != 0.0) m_out.Real(41, pl.defaultEndWidth());
  Normal(pl.normal());
  Vertices(AcDbImpAccess::vertices(pl), pl, stub, [&](const AcDbVertex& v) {
    const auto& vertex = static_cast<const AcDb2dVertex&>(v);
    m_out.Str(100, "AcDb2dVertex");
    const AcGePoint3d p = vertex.position();
    m_out.Point(10, p.x, p.y, pl.elevation());
    if (vertex.startWidth() != 0.0) m_out.Real(40, vertex.startWidth());
    if (vertex.endWidth() != 0.0) m_out.Real(41, vertex.endWidth());
    if (vertex.bulge() != 0.0) m_out.Real(42, vertex.bulge());
    m_out.Int(70, 0);
  });
}

void Writer::Polyline3d(const AcDb3dPolyline& pl, const AcDbStub& stub) {
  EntityHead("POLYLINE", pl, stub, "AcDb3dPolyline");
  m_out.Int(66, 1);
  m_out.Point(10, 0, 0, 0);
  m_out.Int(70, 8 | (pl.isClosed() ? 1 : 0));
  Vertices(AcDbImpAccess::vertices(pl), pl, stub, [&](const AcDbVertex& v) {
    const auto& vertex = static_cast<const AcDb3dPolylineVertex&>(v);
    m_out.Str(100, "AcDb3dPolylineVertex");
    const AcGePoint3d p = vertex.position();
    m_out.Point(10, p.x, p.y, p.z);
    m_out.Int(70, 32);
  });
}

void Writer::PolyfaceMesh(const AcDbPolyFaceMesh& mesh, const AcDbStub& stub) {
  EntityHead("POLYLINE", mesh, stub, "AcDbPolyFaceMesh");
  m_out.Int(66, 1);
  m_out.Point(10, 0, 0, 0);
  m_out.Int(70, 64);
  m_out.Int(71, mesh.numVertices());
  m_out.Int(72, mesh.numFaces());
  Vertices(AcDbImpAccess::vertices(mesh), mesh, stub, [&](const AcDbVertex& v) {
    if (const auto* vertex = AcDbPolyFaceMeshVertex::cast(&v)) {
      m_out.Str(100, "AcDbPolyFaceMeshVertex");
      const AcGePoint3d p = vertex->position();
      m_out.Point(10, p.x, p.y, p.z);
      m_out.Int(70, 192);
    } else if (const auto* record = AcDbFaceRecord::cast(&v)) {
      m_out.Str(100, "AcDbFaceRecord");
      m_out.Point(10, 0, 0, 0);
      m_out.Int(70, 128);
      for (Adesk::UInt16 k = 0; k < 4; ++k) {
        Adesk::Int16 index = 0;
        Adesk::Boolean visible = true;
        record->getVertexAt(k, index);
        record->isEdgeVisibleAt(k, visible);
        if (index != 0) m_out.Int(71 + k, visible ? index : -index);
      }
    }
  });
}

void Writer::Text(const AcDbText& text, const AcDbStub& stub) {
  EntityHead("TEXT", text, stub, "AcDbText");
  const AcGeMatrix3d toPlane = AcGeMatrix3d::worldToPlane(text.normal());
  if (text.thickness() != 0.0) m_out.Real(39, text.thickness());
  const AcGePoint3d p = text.position().transformBy(toPlane);
  m_out.Point(10, p.x, p.y, p.z);
  m_out.Real(40, text.height());
  m_out.Wide(1, text.textStringConst());
  if (text.rotation() != 0.0) m_out.Real(50, Deg(text.rotation()));
  if (text.widthFactor() != 1.0) m_out.Real(41, text.widthFactor());
  if (text.oblique() != 0.0) m_out.Real(51, Deg(text.oblique()));
  m_out.Str(7, text.textStyle().isNull() ? std::string("Standard") : NameOfRecord(text.textStyle()));
  if (text.horizontalMode() != AcDb::kTextLeft) m_out.Int(72, text.horizontalMode());
  if (!text.isDefaultAlignment()) {
    const AcGePoint3d a = text.alignmentPoint().transformBy(toPlane);
    m_out.Point(11, a.x, a.y, a.z);
  }
  Normal(text.normal());
  m_out.Str(100, "AcDbText");
  if (text.verticalMode() != AcDb::kTextBase) m_out.Int(73, text.verticalMode());
}

// Pattern lines of the predefined patterns this platform knows, as acad.pat has them; others
// are written without lines (the viewer fills them in from its own pattern file).
void Writer::PatternLines(const AcDbHatch& hatch) {
  const std::wstring name = hatch.patternName();
  if (hatch.isSolidFill() || name != L"ANSI31") {
    m_out.Int(78, 0);
    return;
  }
  // ANSI31: lines at 45 degrees, 0.125 apart (the offset turns with the lines).
  const double angle = hatch.patternAngle() + std::atan(1.0);
  const double spacing = 0.125 * hatch.patternScale();
  m_out.Int(78, 1);
  m_out.Real(53, Deg(angle));
  m_out.Real(43, 0.0);
  m_out.Real(44, 0.0);
  m_out.Real(45, -spacing * std::sin(angle));
  m_out.Real(46, spacing * std::cos(angle));
  m_out.Int(79, 0);
}

void Writer::Hatch(const AcDbHatch& hatch, const AcDbStub& stub) {
  EntityHead("HATCH", hatch, stub, "AcDbHatch");
  m_out.Point(10, 0, 0, hatch.elevation());
  const AcGeVector3d n = hatch.normal();
  m_out.Point(210, n.x, n.y, n.z);
  m_out.Wide(2, hatch.patternName());
  m_out.Int(70, hatch.isSolidFill() ? 1 : 0);
  m_out.Int(71, 0);
  const auto& loops = hatch.loops();
  m_out.Int(91, static_cast<long long>(loops.size()));
  for (const AcDbHatch::Loop& loop : loops) {
    m_out.Int(92, loop.type & ~AcDbHatch::kPolyline);
    m_out.Int(93, static_cast<long long>(loop.edges.size()));
    for (const AcDbHatch::Edge& edge : loop.edges) {
      if (!edge.isArc) {
        m_out.Int(72, 1);
        m_out.Point2(10, edge.start.x, edge.start.y);
        m_out.Point2(11, edge.end.x, edge.end.y);
      } else {
        // A clockwise arc has its angles measured clockwise, as AcGeCircArc2d does.
        const bool ccw = edge.sweep >= 0.0;
        const double start = ccw ? edge.startAngle : -edge.startAngle;
        m_out.Int(72, 2);
        m_out.Point2(10, edge.center.x, edge.center.y);
        m_out.Real(40, edge.radius);
        const double from = Deg360(start);
        const double sweep = Deg(std::fabs(edge.sweep));
        m_out.Real(50, from);
        m_out.Real(51, sweep >= 360.0 ? from + 360.0 : Deg360(start + std::fabs(edge.sweep)));
        m_out.Int(73, ccw ? 1 : 0);
      }
    }
    m_out.Int(97, 0);
  }
  m_out.Int(75, hatch.hatchStyle());
  m_out.Int(76, hatch.patternType());
  if (!hatch.isSolidFill()) {
    m_out.Real(52, Deg(hatch.patternAngle()));
    m_out.Real(41, hatch.patternScale());
    m_out.Int(77, 0);
    PatternLines(hatch);
  }
  m_out.Int(98, 0);
}

void Writer::Solid(const AcDb3dSolid& solid, const AcDbStub& stub) {
  EntityHead("3DSOLID", solid, stub, "AcDbModelerGeometry");
  m_out.Int(70, 1);
  for (const std::string& line : FrustumSat(AcDbImpAccess::frustum(solid))) {
    const std::string coded = EscapeCarets(Crypt(line));
    // At most 255 characters a group; the rest follows in groups 3, never splitting a "^ ".
    constexpr std::size_t kChunk = 255;
    std::size_t at = 0;
    do {
      std::size_t size = std::min(kChunk, coded.size() - at);
      if (size == kChunk && coded[at + size - 1] == '^') --size;
      m_out.Str(at == 0 ? 1 : 3, std::string_view(coded).substr(at, size));
      at += size;
    } while (at < coded.size());
  }
  m_out.Str(100, "AcDb3dSolid");
}

// A table: its cells, and the "*T" block that shows them in programs without tables.
void Writer::TableEntity(const AcDbTable& table, const AcDbStub& stub) {
  const TableBlock& block = m_tableBlocks.at(stub.id);
  EntityHead("ACAD_TABLE", table, stub, "AcDbBlockReference");
  m_out.Str(2, block.name);
  const AcGePoint3d p = table.position();
  m_out.Point(10, p.x, p.y, p.z);
  m_out.Str(100, "AcDbTable");
  m_out.Int(280, 0);
  m_out.Handle(342, HandleOf(table.tableStyle()));
  m_out.Handle(343, block.record);
  const AcGeVector3d d = table.direction();
  m_out.Point(11, d.x, d.y, d.z);
  m_out.Int(90, 22);
  m_out.Int(91, table.numRows());
  m_out.Int(92, table.numColumns());
  m_out.Int(93, 0);
  m_out.Int(94, 0);
  m_out.Int(95, 0);
  m_out.Int(96, 0);
  for (int r = 0; r < table.numRows(); ++r) m_out.Real(141, table.rowHeight(r));
  for (int c = 0; c < table.numColumns(); ++c) m_out.Real(142, table.columnWidth(c));
  for (int r = 0; r < table.numRows(); ++r) {
    for (int c = 0; c < table.numColumns(); ++c) {
      m_out.Int(171, 1);
      m_out.Int(172, 0);
      m_out.Int(173, 0);
      m_out.Int(174, 0);
      m_out.Int(175, 1);
      m_out.Int(176, 1);
      m_out.Int(91, 0);
      m_out.Int(178, 0);
      m_out.Real(145, 0.0);
      ACHAR* text = table.textString(r, c);
      m_out.Wide(1, text == nullptr ? L"" : text);
      delete[] text;
    }
  }
}

void Writer::TableGraphics(AcDbObjectId tableId) {
  const TableBlock& block = m_tableBlocks.at(tableId.asOldId());
  auto* table = Peek<AcDbTable>(tableId);
  BlockBegin(block.begin, block.record, block.name, AcGePoint3d::kOrigin, 1, false);
  AcDbVoidPtrArray parts;
  table->explode(parts);
  // The pieces lie in drawing coordinates; the block is inserted at the table's position.
  const AcGeMatrix3d back = AcGeMatrix3d::translation(AcGePoint3d::kOrigin - table->position());
  for (void* part : parts) {
    std::unique_ptr<AcDbEntity> piece(static_cast<AcDbEntity*>(static_cast<AcRxObject*>(part)));
    piece->transformBy(back);
    const std::uint64_t handle = NewHandle();
    if (auto* line = AcDbLine::cast(piece.get())) {
      PieceHead("LINE", "AcDbLine", handle, block.record);
      m_out.Point(10, line->startPoint().x, line->startPoint().y, line->startPoint().z);
      m_out.Point(11, line->endPoint().x, line->endPoint().y, line->endPoint().z);
    } else if (auto* text = AcDbText::cast(piece.get())) {
      PieceHead("TEXT", "AcDbText", handle, block.record);
      const AcGePoint3d p = text->position();
      m_out.Point(10, p.x, p.y, p.z);
      m_out.Real(40, text->height());
      m_out.Wide(1, text->textStringConst());
      m_out.Str(7, "Standard");
      m_out.Int(72, text->horizontalMode());
      const AcGePoint3d a = text->alignmentPoint();
      m_out.Point(11, a.x, a.y, a.z);
      m_out.Str(100, "AcDbText");
    }
  }
  BlockEnd(block.end, block.record, false);
}

void Writer::PieceHead(const char* type, const char* subclass, std::uint64_t handle, std::uint64_t owner) {
  m_out.Str(0, type);
  m_out.Handle(5, handle);
  m_out.Handle(330, owner);
  m_out.Str(100, "AcDbEntity");
  m_out.Str(8, "0");
  m_out.Str(100, subclass);
}

}  // namespace headless::dxf::detail
