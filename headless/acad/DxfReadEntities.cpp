// The DXF reader's entities: blocks and model space, every kind with its subclass groups, and
// the vertices of complex entities with their handles.
#include "headless/acad/DxfReader.h"

namespace headless::dxf::detail {

void Reader::Blocks() {
  const auto& records = SectionRecords("BLOCKS");
  AcDbObjectId block;
  bool skipping = false;
  std::vector<Record> entities;
  for (const Record& r : records) {
    View view(m_tags, r);
    if (r.type == "BLOCK") {
      skipping = m_skipRecords.count(view.owner) != 0 || m_skipNames.count(view.Text(2)) != 0;
      block = skipping ? AcDbObjectId::kNull : IdOf(view.owner);
      if (block.isNull()) block = ByName(m_blocks, view.Text(2));
      if (!block.isNull()) {
        Change<AcDbBlockTableRecord>(block, [&](AcDbBlockTableRecord& record) {
          record.setOrigin(view.Point(10));
          Adopt(record.blockBeginId(), view.handle);
        });
      }
      entities.clear();
    } else if (r.type == "ENDBLK") {
      if (!block.isNull()) {
        AddEntities(entities, block);
        Change<AcDbBlockTableRecord>(block,
                                     [&](AcDbBlockTableRecord& record) { Adopt(record.blockEndId(), view.handle); });
      }
      block.setNull();
    } else if (!block.isNull()) {
      entities.push_back(r);
    }
  }
}

void Reader::Section(const char* name, AcDbObjectId defaultBlock) {
  std::vector<Record> model;
  std::vector<Record> paper;
  for (const Record& r : SectionRecords(name)) {
    View view(m_tags, r);
    const bool inPaper = view.Int(67) == 1;
    (inPaper ? paper : model).push_back(r);
  }
  AddEntities(model, defaultBlock);
  AddEntities(paper, m_db->roots().paperSpace);
}

// Entities in file order; a POLYLINE takes the VERTEX records after it and its SEQEND.
void Reader::AddEntities(const std::vector<Record>& records, AcDbObjectId block) {
  for (std::size_t i = 0; i < records.size(); ++i) {
    const Record& r = records[i];
    if (r.type == "POLYLINE") {
      std::size_t j = i + 1;
      std::vector<const Record*> vertices;
      while (j < records.size() && records[j].type == "VERTEX") vertices.push_back(&records[j++]);
      const Record* end = j < records.size() && records[j].type == "SEQEND" ? &records[j++] : nullptr;
      Polyline(r, vertices, end, block);
      i = j - 1;
    } else if (r.type != "VERTEX" && r.type != "SEQEND") {
      Entity(r, block);
    }
  }
}

void Reader::Common(AcDbEntity& entity, const View& view) {
  if (AcDbObjectId layer = ByName(m_layers, view.Text(8)); !layer.isNull()) entity.setLayer(layer);
  const std::wstring lineType = view.Text(6);
  if (AcDbObjectId lt = lineType.empty() ? m_face->byLayerLinetype() : LineType(lineType); !lt.isNull()) {
    entity.setLinetype(lt);
  }
  entity.setColor(ColorOf(view));
  entity.setLinetypeScale(view.Real(48, 1.0));
  entity.setVisibility(view.Int(60) == 1 ? AcDb::kInvisible : AcDb::kVisible);
}

// Appends the entity to the block and gives it (and its vertices) the file's handles.
AcDbObjectId Reader::Append(AcDbEntity* entity, const View& view, AcDbObjectId block,
                            const std::vector<std::uint64_t>& parts, std::uint64_t sequenceEnd) {
  Common(*entity, view);
  AcDbBlockTableRecord* record = nullptr;
  AcDbObjectId id;
  if (acdbOpenObject(record, block, AcDb::kForWrite) != Acad::eOk) {
    delete entity;
    return id;
  }
  if (record->appendAcDbEntity(id, entity) != Acad::eOk) {
    delete entity;
    record->close();
    return AcDbObjectId::kNull;
  }
  record->close();
  Adopt(id, view.handle);
  const AcDbImpComplexVertices* vertices = nullptr;
  if (auto* pl2 = AcDb2dPolyline::cast(entity)) vertices = &AcDbImpAccess::vertices(*pl2);
  if (auto* pl3 = AcDb3dPolyline::cast(entity)) vertices = &AcDbImpAccess::vertices(*pl3);
  if (auto* mesh = AcDbPolyFaceMesh::cast(entity)) vertices = &AcDbImpAccess::vertices(*mesh);
  if (vertices != nullptr) {
    for (int k = 0; k < vertices->ids.length() && static_cast<std::size_t>(k) < parts.size(); ++k) {
      Adopt(vertices->ids[k], parts[static_cast<std::size_t>(k)]);
    }
    Adopt(vertices->sequenceEnd, sequenceEnd);
  }
  entity->close();
  if (view.xdict != 0) m_xdicts.push_back({id, view.xdict});
  return id;
}

void Reader::Entity(const Record& r, AcDbObjectId block) {
  View view(m_tags, r);
  const std::string_view type = r.type;
  const AcGeVector3d normal = view.Normal();
  const AcGeMatrix3d toWorld = AcGeMatrix3d::planeToWorld(normal);
  if (type == "LINE") {
    auto* line = new AcDbLine(view.Point(10), view.Point(11));
    line->setThickness(view.Real(39));
    line->setNormal(normal);
    Append(line, view, block);
  } else if (type == "CIRCLE" || type == "ARC") {
    const AcGePoint3d centre = view.Point(10).transformBy(toWorld);
    AcDbEntity* entity = nullptr;
    if (type == "CIRCLE") {
      auto* circle = new AcDbCircle(centre, normal, view.Real(40, 1.0));
      circle->setThickness(view.Real(39));
      entity = circle;
    } else {
      auto* arc = new AcDbArc(centre, normal, view.Real(40, 1.0), Rad(view.Real(50)), Rad(view.Real(51)));
      arc->setThickness(view.Real(39));
      entity = arc;
    }
    Append(entity, view, block);
  } else if (type == "ELLIPSE") {
    const AcGePoint3d major = view.Point(11, AcGePoint3d(1, 0, 0));
    const double ratio = view.Real(40, 1.0);
    const double start = view.Real(41);
    const double end = view.Real(42, 2.0 * std::numbers::pi);
    const auto angleOf = [ratio](double t) { return std::atan2(ratio * std::sin(t), std::cos(t)); };
    const bool closed = std::fabs(end - start - 2.0 * std::numbers::pi) < 1e-12 || end == start;
    auto* ellipse = new AcDbEllipse;
    ellipse->set(view.Point(10), normal, AcGeVector3d(major.x, major.y, major.z), ratio, angleOf(start),
                 closed ? angleOf(start) : angleOf(end));
    Append(ellipse, view, block);
  } else if (type == "LWPOLYLINE") {
    auto* pl = new AcDbPolyline;
    Cursor cursor(view.Body("AcDbPolyline"));
    unsigned index = 0;
    while (cursor.Seek(10)) {
      const double x = cursor.Real(10);
      const double y = cursor.Real(20);
      double sw = -1.0;
      double ew = -1.0;
      double bulge = 0.0;
      while (!cursor.Done() && !cursor.Is(10)) {
        const int code = cursor.Peek().code;
        if (code == 40) {
          sw = cursor.Real(40);
        } else if (code == 41) {
          ew = cursor.Real(41);
        } else if (code == 42) {
          bulge = cursor.Real(42);
        } else {
          cursor.Skip();
        }
      }
      pl->addVertexAt(index++, AcGePoint2d(x, y), bulge, sw, ew);
    }
    pl->setClosed((view.Int(70) & 1) != 0);
    pl->setElevation(view.Real(38));
    pl->setThickness(view.Real(39));
    if (view.Find(43) != nullptr) pl->setConstantWidth(view.Real(43));
    pl->setNormal(normal);
    Append(pl, view, block);
  } else if (type == "INSERT") {
    const AcDbObjectId definition = ByName(m_blocks, view.Text(2));
    if (definition.isNull()) return;
    auto* insert = new AcDbBlockReference(view.Point(10), definition);
    insert->setScaleFactors(AcGeScale3d(view.Real(41, 1.0), view.Real(42, 1.0), view.Real(43, 1.0)));
    insert->setRotation(Rad(view.Real(50)));
    insert->setNormal(normal);
    Append(insert, view, block);
  } else if (type == "TEXT") {
    auto* text = new AcDbText;
    text->setNormal(normal);
    text->setPosition(view.Point(10).transformBy(toWorld));
    text->setTextString(view.Text(1).c_str());
    text->setHeight(view.Real(40, 0.2));
    text->setRotation(Rad(view.Real(50)));
    text->setWidthFactor(view.Real(41, 1.0));
    text->setOblique(Rad(view.Real(51)));
    text->setHorizontalMode(static_cast<AcDb::TextHorzMode>(view.Int(72)));
    // The vertical mode sits in the second AcDbText subclass.
    Cursor second(view.Body("AcDbText"));
    if (second.Seek(100)) {
      second.Skip();
      if (second.Seek(73)) text->setVerticalMode(static_cast<AcDb::TextVertMode>(second.Int(73)));
    }
    if (view.Find(11) != nullptr) text->setAlignmentPoint(view.Point(11).transformBy(toWorld));
    if (AcDbObjectId style = ByName(m_styles, view.Text(7)); !style.isNull()) text->setTextStyle(style);
    text->setThickness(view.Real(39));
    Append(text, view, block);
  } else if (type == "3DFACE") {
    auto* face = new AcDbFace(view.Point(10), view.Point(11), view.Point(12), view.Point(13));
    const long long hidden = view.Int(70);
    for (Adesk::UInt16 i = 0; i < 4; ++i)
      if ((hidden & (1 << i)) != 0) face->makeEdgeInvisibleAt(i);
    Append(face, view, block);
  } else if (type == "HATCH") {
    Hatch(view, block);
  } else if (type == "3DSOLID") {
    Solid(view, block);
  } else if (type == "ACAD_TABLE") {
    Table(view, block);
  }
}

void Reader::Polyline(const Record& r, const std::vector<const Record*>& vertexRecords, const Record* end,
                      AcDbObjectId block) {
  View view(m_tags, r);
  const long long flags = view.Int(70);
  std::vector<std::uint64_t> handles;
  for (const Record* v : vertexRecords) handles.push_back(View(m_tags, *v).handle);
  const std::uint64_t endHandle = end == nullptr ? 0 : View(m_tags, *end).handle;
  AcDbEntity* entity = nullptr;
  if ((flags & 64) != 0) {
    auto* mesh = new AcDbPolyFaceMesh;
    for (const Record* v : vertexRecords) {
      View vertex(m_tags, *v);
      if ((vertex.Int(70) & 64) != 0) {
        mesh->appendVertex(new AcDbPolyFaceMeshVertex(vertex.Point(10)));
      } else {
        mesh->appendFaceRecord(
            new AcDbFaceRecord(static_cast<Adesk::Int16>(vertex.Int(71)), static_cast<Adesk::Int16>(vertex.Int(72)),
                               static_cast<Adesk::Int16>(vertex.Int(73)), static_cast<Adesk::Int16>(vertex.Int(74))));
      }
    }
    entity = mesh;
  } else if ((flags & 8) != 0) {
    auto* pl = new AcDb3dPolyline;
    for (const Record* v : vertexRecords) pl->appendVertex(new AcDb3dPolylineVertex(View(m_tags, *v).Point(10)));
    pl->setClosed((flags & 1) != 0);
    entity = pl;
  } else if ((flags & 16) == 0) {
    auto* pl = new AcDb2dPolyline;
    pl->setNormal(view.Normal());
    pl->setElevation(view.Point(10).z);
    pl->setThickness(view.Real(39));
    pl->setDefaultStartWidth(view.Real(40));
    pl->setDefaultEndWidth(view.Real(41));
    for (const Record* v : vertexRecords) {
      View vertex(m_tags, *v);
      pl->appendVertex(new AcDb2dVertex(vertex.Point(10), vertex.Real(42), vertex.Real(40), vertex.Real(41)));
    }
    pl->setClosed((flags & 1) != 0);
    entity = pl;
  }
  if (entity != nullptr) Append(entity, view, block, handles, endHandle);
}

void Reader::Hatch(const View& view, AcDbObjectId block) {
  auto* hatch = new AcDbHatch;
  hatch->setNormal(view.Normal());
  hatch->setElevation(view.Point(10).z);
  Cursor cursor(view.Body("AcDbHatch"));
  cursor.Seek(91);
  const long long loops = cursor.Int(91);
  for (long long l = 0; l < loops && cursor.Seek(92); ++l) {
    const auto type = static_cast<Adesk::Int32>(cursor.Int(92));
    if ((type & AcDbHatch::kPolyline) != 0) {
      const bool bulged = cursor.Int(72) != 0;
      cursor.Int(73);
      const long long n = cursor.Int(93);
      AcGePoint2dArray points;
      AcGeDoubleArray bulges;
      for (long long k = 0; k < n && cursor.Seek(10); ++k) {
        const double x = cursor.Real(10);
        const double y = cursor.Real(20);
        points.append(AcGePoint2d(x, y));
        bulges.append(bulged ? cursor.Real(42) : 0.0);
      }
      hatch->appendLoop(type, points, bulges);
      continue;
    }
    const long long n = cursor.Int(93);
    std::vector<std::unique_ptr<AcGeLineSeg2d>> lines;
    std::vector<std::unique_ptr<AcGeCircArc2d>> arcs;
    AcGeVoidPointerArray edges;
    AcGeIntArray types;
    for (long long k = 0; k < n && cursor.Seek(72); ++k) {
      const long long edgeType = cursor.Int(72);
      if (edgeType == 1) {
        const double x1 = cursor.Real(10);
        const double y1 = cursor.Real(20);
        const double x2 = cursor.Real(11);
        const double y2 = cursor.Real(21);
        lines.push_back(std::make_unique<AcGeLineSeg2d>(AcGePoint2d(x1, y1), AcGePoint2d(x2, y2)));
        edges.append(lines.back().get());
        types.append(AcDbHatch::kLine);
      } else if (edgeType == 2) {
        const double x = cursor.Real(10);
        const double y = cursor.Real(20);
        const double r = cursor.Real(40);
        const double a0 = Rad(cursor.Real(50));
        double a1 = Rad(cursor.Real(51));
        // Angles in [0, 360): an end at or before the start goes round past 0.
        while (a1 <= a0) a1 += 2.0 * std::numbers::pi;
        const bool ccw = cursor.Int(73, 1) != 0;
        arcs.push_back(std::make_unique<AcGeCircArc2d>(AcGePoint2d(x, y), r, a0, a1, AcGeVector2d::kXAxis, !ccw));
        edges.append(arcs.back().get());
        types.append(AcDbHatch::kCirArc);
      }
    }
    if (!edges.isEmpty()) hatch->appendLoop(type, edges, types);
  }
  const std::wstring pattern = view.Text(2);
  hatch->setPattern(static_cast<AcDbHatch::HatchPatternType>(view.Int(76, 1)),
                    pattern.empty() ? L"SOLID" : pattern.c_str());
  hatch->setHatchStyle(static_cast<AcDbHatch::HatchStyle>(view.Int(75)));
  if (cursor.Seek(52)) hatch->setPatternAngle(Rad(cursor.Real(52)));
  if (cursor.Seek(41)) hatch->setPatternScale(cursor.Real(41, 1.0));
  Append(hatch, view, block);
}

void Reader::Solid(const View& view, AcDbObjectId block) {
  std::vector<std::string> lines;
  for (const Tag& t : view.Body("AcDbModelerGeometry")) {
    if (t.code == 1) {
      lines.push_back(Crypt(UnescapeCarets(t.value)));
    } else if (t.code == 3 && !lines.empty()) {
      lines.back() += Crypt(UnescapeCarets(t.value));
    }
  }
  AcDbImpAccess::Frustum frustum{};
  if (!FrustumFromSat(lines, frustum)) return;  // ACIS bodies of other shapes are not read
  auto* solid = new AcDb3dSolid;
  if (solid->createFrustum(frustum.height, frustum.xRadius, frustum.yRadius, frustum.topXRadius) != Acad::eOk ||
      solid->transformBy(frustum.placement) != Acad::eOk) {
    delete solid;
    return;
  }
  Append(solid, view, block);
}

void Reader::Table(const View& view, AcDbObjectId block) {
  auto* table = new AcDbTable;
  Cursor cursor(view.Body("AcDbTable"));
  cursor.Seek(91);
  const int rows = static_cast<int>(cursor.Int(91));
  const int columns = static_cast<int>(cursor.Int(92));
  if (rows <= 0 || columns <= 0 || table->setSize(rows, columns) != Acad::eOk) {
    delete table;
    return;
  }
  if (AcDbObjectId style = IdOf(view.Find(342) ? ToHandle(view.Find(342)->value) : 0); !style.isNull()) {
    table->setTableStyle(style);
  }
  table->setPosition(view.Point(10));
  const AcGePoint3d d = view.Point(11, AcGePoint3d(1, 0, 0));
  table->setDirection(AcGeVector3d(d.x, d.y, d.z));
  cursor.Seek(141);
  for (int r = 0; r < rows && cursor.Is(141); ++r) table->setRowHeight(r, cursor.Real(141));
  cursor.Seek(142);
  for (int c = 0; c < columns && cursor.Is(142); ++c) table->setColumnWidth(c, cursor.Real(142));
  for (int cell = 0; cell < rows * columns && cursor.Seek(171); ++cell) {
    cursor.Skip();
    std::wstring text;
    while (!cursor.Done() && !cursor.Is(171)) {
      if (cursor.Is(1) || cursor.Is(2) || cursor.Is(3)) text += Decode(cursor.Peek().value);
      cursor.Skip();
    }
    table->setTextString(cell / columns, cell % columns, text.c_str());
  }
  Append(table, view, block);
}

}  // namespace headless::dxf::detail
