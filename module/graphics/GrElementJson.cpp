// The JSON form of every element kind, kept in one place so that the keys and their encodings
// can be read side by side (and jsoncpp stays out of the kinds' own files).
#include <cstdint>
#include <cstring>
#include <exception>
#include <memory>
#include <utility>

#include "module/graphics/GrArc.h"
#include "module/graphics/GrCircle.h"
#include "module/graphics/GrElementBlock.h"
#include "module/graphics/GrElementFactory.h"
#include "module/graphics/GrEllipse.h"
#include "module/graphics/GrFace.h"
#include "module/graphics/GrGroup.h"
#include "module/graphics/GrHatch.h"
#include "module/graphics/GrJson.h"
#include "module/graphics/GrLine.h"
#include "module/graphics/GrMesh.h"
#include "module/graphics/GrPolyline.h"
#include "module/graphics/GrTable.h"
#include "module/graphics/GrText.h"
#include "module/graphics/GrVertexPolyline.h"

namespace {

using GrJson::Value;
// Keys are ASCII literals: held without copying.
using Key = GrJson::StaticString;

template <std::size_t N>
const Value* Find(const Value& object, const char (&key)[N]) {
  return object.isObject() ? object.find(key, key + N - 1) : nullptr;
}

// Conversions by the library's rules; what it refuses (a string as a number, a negative number
// as unsigned, an array as text) leaves the target as it was.
bool ToDouble(const Value& v, double& out) {
  try {
    out = v.asDouble();
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool ToInt(const Value& v, std::int32_t& out) {
  try {
    out = v.asInt();
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool ToUInt(const Value& v, std::uint32_t& out) {
  try {
    out = v.asUInt();
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool ToBool(const Value& v, bool& out) {
  try {
    out = v.asBool();
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool ToText(const Value& v, std::wstring& out) {
  if (v.isArray() || v.isObject()) return false;
  out = grjson::AsWide(v);
  return true;
}

double NumberOrZero(const Value& v) {
  double number = 0.0;
  ToDouble(v, number);
  return number;
}

template <std::size_t N>
void ReadDouble(const Value& object, const char (&key)[N], double& field) {
  if (const Value* v = Find(object, key)) ToDouble(*v, field);
}

template <std::size_t N>
void ReadInt(const Value& object, const char (&key)[N], std::int32_t& field) {
  if (const Value* v = Find(object, key)) ToInt(*v, field);
}

template <std::size_t N>
void ReadUInt(const Value& object, const char (&key)[N], std::uint32_t& field) {
  if (const Value* v = Find(object, key)) ToUInt(*v, field);
}

template <std::size_t N>
void ReadBool(const Value& object, const char (&key)[N], bool& field) {
  if (const Value* v = Find(object, key)) ToBool(*v, field);
}

template <std::size_t N>
void ReadText(const Value& object, const char (&key)[N], std::wstring& field) {
  if (const Value* v = Find(object, key)) ToText(*v, field);
}

// [x, y, z]. An object of three members reads from "x", "y", "z" where allowed; anything else
// reads as the origin.
CKdPoint PointFrom(const Value& v, bool allowObject) {
  if (v.isArray() && v.size() == 3) {
    return {NumberOrZero(v[0u]), NumberOrZero(v[1u]), NumberOrZero(v[2u])};
  }
  if (allowObject && v.isObject() && v.size() == 3) {
    CKdPoint p(0.0, 0.0, 0.0);
    if (const Value* x = Find(v, "x")) p.x = NumberOrZero(*x);
    if (const Value* y = Find(v, "y")) p.y = NumberOrZero(*y);
    if (const Value* z = Find(v, "z")) p.z = NumberOrZero(*z);
    return p;
  }
  return {0.0, 0.0, 0.0};
}

template <std::size_t N>
void ReadPoint(const Value& object, const char (&key)[N], CKdPoint& field) {
  if (const Value* v = Find(object, key)) field = PointFrom(*v, true);
}

// Vectors (block scale, ellipse axes) take the array form only.
template <std::size_t N>
void ReadVector(const Value& object, const char (&key)[N], CKdVector& field) {
  if (const Value* v = Find(object, key)) {
    const CKdPoint p = PointFrom(*v, false);
    field = {p.x, p.y, p.z};
  }
}

Value PointValue(double x, double y, double z) {
  Value array(GrJson::arrayValue);
  array.append(x);
  array.append(y);
  array.append(z);
  return array;
}

Value PointValue(const CKdPoint& p) { return PointValue(p.x, p.y, p.z); }
Value VectorValue(const CKdVector& v) { return PointValue(v.x, v.y, v.z); }

void WriteColorKeys(Value& object, const CGrColor& color) {
  object[Key("indClr")] = Value(GrJson::UInt(color.StoredIndex()));
  object[Key("rgbClr")] = Value(GrJson::UInt(color.StoredRgb()));
  object[Key("uindClr")] = Value(GrJson::Int(color.Method()));
}

// Each key that is missing leaves its field as it was.
void ReadColorKeys(const Value& object, CGrColor& color) {
  std::uint32_t index = color.StoredIndex();
  std::uint32_t rgb = color.StoredRgb();
  std::int32_t method = color.Method();
  ReadUInt(object, "indClr", index);
  ReadUInt(object, "rgbClr", rgb);
  ReadInt(object, "uindClr", method);
  color.SetIndex(index);
  color.SetRgb(rgb);
  color.SetMethod(method);
}

// A true colour is written as its bare RGB number, anything else as the object form.
Value ColorValue(const CGrColor& color) {
  if (color.Method() == grcolor::kMethodRgb) return Value(GrJson::UInt(color.StoredRgb()));
  Value object(GrJson::objectValue);
  WriteColorKeys(object, color);
  return object;
}

// A bare integer is an RGB whichever integer kind the reader gave it (the text reader makes
// small numbers signed, the writer makes them unsigned); anything else is read as the object
// form.
CGrColor ColorFrom(const Value& v, CGrColor color) {
  if (v.type() == GrJson::intValue || v.type() == GrJson::uintValue) {
    const auto rgb = static_cast<std::uint32_t>(v.isUInt64() ? v.asUInt64() : static_cast<std::uint64_t>(v.asInt64()));
    return CGrColor(rgb);
  }
  ReadColorKeys(v, color);
  return color;
}

void WriteList(Value& object, const char* key, const CGrElementVector& elements) {
  Value& list = object[Key(key)];
  list = Value(GrJson::arrayValue);
  elements.WriteJson(list);
}

// Depth of element lists being read on this thread: the recursion through nested groups and
// blocks stops at grjson::kMaxListDepth.
thread_local int t_listDepth = 0;

// The reading rules of element lists: entries in order, "type" carried over from the previous
// entry when absent (an entry before any type is skipped), entries that are not objects or
// whose type the factory does not make are skipped. `keep` decides what stays.
template <class Keep>
void ReadList(const Value* list, Keep&& keep) {
  if (list == nullptr || !list->isArray() || t_listDepth >= grjson::kMaxListDepth) return;
  ++t_listDepth;
  bool haveType = false;
  std::int32_t type = 0;
  for (const Value& entry : *list) {
    if (!entry.isObject()) continue;
    if (const Value* typeValue = Find(entry, "type")) haveType = ToInt(*typeValue, type) || haveType;
    if (!haveType) continue;
    std::unique_ptr<CGrElement> element(CGrElementFactory::Make(type));
    if (!element) continue;
    element->ReadJson(entry);
    keep(std::move(element));
  }
  --t_listDepth;
}

void ReadElementsInto(const Value* list, CGrElementVector& elements) {
  ReadList(list, [&elements](std::unique_ptr<CGrElement> element) { elements.Add(std::move(element)); });
}

Value CellsValue(const CGrCellRows& rows) {
  Value array(GrJson::arrayValue);
  for (const auto& row : rows) {
    Value cells(GrJson::arrayValue);
    for (const auto& cell : row) cells.append(grjson::MakeString(cell));
    array.append(std::move(cells));
  }
  return array;
}

// Rows are read only when "CTS" is present, and then from "Points" (kept on purpose).
void ReadCells(const Value& object, CGrCellRows& rows) {
  if (Find(object, "CTS") == nullptr) return;
  rows.clear();
  const Value* points = Find(object, "Points");
  if (points == nullptr || !points->isArray()) return;
  for (const Value& row : *points) {
    auto& cells = rows.emplace_back();
    if (!row.isArray()) continue;
    for (const Value& cell : row) {
      std::wstring text;
      ToText(cell, text);
      cells.push_back(std::move(text));
    }
  }
}

}  // namespace

// --- lists ---

void CGrElementVector::WriteJson(GrJson::Value& array) const {
  if (!array.isArray()) array = Value(GrJson::arrayValue);
  for (const auto& element : m_items) {
    Value object(GrJson::objectValue);
    object[Key("type")] = Value(element->Type());
    element->WriteJson(object);
    array.append(std::move(object));
  }
}

void CGrElementVector::ReadJson(const GrJson::Value& array) { ReadElementsInto(&array, *this); }

// --- common keys ---

void CGrElement::WriteJson(GrJson::Value& object) const {
  object[Key("color")] = ColorValue(m_color);
  object[Key("layer")] = grjson::MakeString(m_layer);
  object[Key("lineTp")] = Value(GrJson::Int(m_lineType));
  object[Key("ltScale")] = Value(m_lineTypeScale);
  if (m_tag) object[Key("tag")] = grjson::MakeString(*m_tag);
  object[Key("idTag")] = Value(GrJson::UInt(m_idTag));
}

void CGrElement::ReadJson(const GrJson::Value& object) {
  if (const Value* color = Find(object, "color")) m_color = ColorFrom(*color, m_color);
  ReadText(object, "layer", m_layer);
  ReadInt(object, "lineTp", m_lineType);
  ReadDouble(object, "ltScale", m_lineTypeScale);
  std::wstring tag;
  ReadText(object, "tag", tag);
  if (!tag.empty()) m_tag = std::make_unique<std::wstring>(std::move(tag));
  ReadUInt(object, "idTag", m_idTag);
  m_modified = true;
}

// --- kinds ---

void CGrText::WriteJson(GrJson::Value& object) const {
  CGrElement::WriteJson(object);
  object[Key("pos")] = PointValue(m_position);
  object[Key("ht")] = Value(m_height);
  object[Key("rot")] = Value(m_rotation);
  object[Key("msg")] = grjson::MakeString(m_message);
  object[Key("styleNm")] = grjson::MakeString(m_styleName);
  object[Key("justification")] = Value(GrJson::UInt(m_justification));
}

void CGrText::ReadJson(const GrJson::Value& object) {
  CGrElement::ReadJson(object);
  ReadPoint(object, "pos", m_position);
  ReadDouble(object, "ht", m_height);
  ReadDouble(object, "rot", m_rotation);
  ReadText(object, "msg", m_message);
  ReadText(object, "styleNm", m_styleName);
  ReadUInt(object, "justification", m_justification);
  MarkChanged();
}

void CGrCircle::WriteJson(GrJson::Value& object) const {
  CGrElement::WriteJson(object);
  object[Key("ctr")] = PointValue(m_center);
  object[Key("rad")] = Value(m_radius);
}

void CGrCircle::ReadJson(const GrJson::Value& object) {
  CGrElement::ReadJson(object);
  ReadPoint(object, "ctr", m_center);
  ReadDouble(object, "rad", m_radius);
  MarkChanged();
}

void CGrLine::WriteJson(GrJson::Value& object) const {
  CGrElement::WriteJson(object);
  object[Key("startPt")] = PointValue(m_start);
  object[Key("endPt")] = PointValue(m_end);
}

void CGrLine::ReadJson(const GrJson::Value& object) {
  CGrElement::ReadJson(object);
  ReadPoint(object, "startPt", m_start);
  ReadPoint(object, "endPt", m_end);
  MarkChanged();
}

void CGrArc::WriteJson(GrJson::Value& object) const {
  CGrElement::WriteJson(object);
  object[Key("ctr")] = PointValue(m_center);
  object[Key("rad")] = Value(m_radius);
  object[Key("sa")] = Value(m_startAngle);
  object[Key("swp")] = Value(m_sweep);
}

void CGrArc::ReadJson(const GrJson::Value& object) {
  CGrElement::ReadJson(object);
  ReadPoint(object, "ctr", m_center);
  ReadDouble(object, "rad", m_radius);
  ReadDouble(object, "sa", m_startAngle);
  ReadDouble(object, "swp", m_sweep);
  MarkChanged();
}

void CGrPolyline::WriteJson(GrJson::Value& object) const {
  CGrElement::WriteJson(object);
  object[Key("closed")] = Value(m_closed);
  if (m_curves.empty()) return;
  Value& list = object[Key("curves")];
  list = Value(GrJson::arrayValue);
  for (const auto& curve : m_curves) {
    const CGrElement* element = curve->CurveElement();
    Value entry(GrJson::objectValue);
    entry[Key("type")] = Value(element->Type());
    element->WriteJson(entry);
    list.append(std::move(entry));
  }
}

void CGrPolyline::ReadJson(const GrJson::Value& object) {
  CGrElement::ReadJson(object);
  ReadBool(object, "closed", m_closed);
  // Only curves stay in a polyline.
  ReadList(Find(object, "curves"), [this](std::unique_ptr<CGrElement> element) {
    if (auto* curve = dynamic_cast<IGrCurve*>(element.get())) {
      element.release();
      m_curves.emplace_back(curve);
    }
  });
  MarkChanged();
}

void CGrElementBlock::WriteJson(GrJson::Value& object) const {
  CGrElement::WriteJson(object);
  object[Key("pos")] = PointValue(m_position);
  object[Key("rot")] = Value(m_rotation);
  object[Key("scale")] = VectorValue(m_scale);
  object[Key("label")] = grjson::MakeString(m_label);
  WriteList(object, "elements", m_elements);
}

void CGrElementBlock::ReadJson(const GrJson::Value& object) {
  CGrElement::ReadJson(object);
  ReadPoint(object, "pos", m_position);
  ReadDouble(object, "rot", m_rotation);
  ReadVector(object, "scale", m_scale);
  ReadText(object, "label", m_label);
  ReadElementsInto(Find(object, "elements"), m_elements);
  MarkChanged();
  m_placedStale = true;
}

void CGrGroup::WriteJson(GrJson::Value& object) const {
  CGrElement::WriteJson(object);
  object[Key("name")] = grjson::MakeString(m_name);
  WriteList(object, "elements", m_elements);
}

void CGrGroup::ReadJson(const GrJson::Value& object) {
  CGrElement::ReadJson(object);
  ReadText(object, "name", m_name);
  ReadElementsInto(Find(object, "elements"), m_elements);
  MarkChanged();
}

void CGrHatch::WriteJson(GrJson::Value& object) const {
  CGrElement::WriteJson(object);
  WriteList(object, "borders", m_borders);
}

void CGrHatch::ReadJson(const GrJson::Value& object) {
  CGrElement::ReadJson(object);
  ReadElementsInto(Find(object, "borders"), m_borders);
  MarkChanged();
}

namespace {

constexpr const char* kCornerKeys[] = {"v1", "v2", "v3", "v4"};

}  // namespace

template <std::size_t N>
void CGrFace<N>::WriteJson(GrJson::Value& object) const {
  CGrElement::WriteJson(object);
  for (std::size_t i = 0; i < N; ++i) object[Key(kCornerKeys[i])] = PointValue(m_corners[i]);
}

template <std::size_t N>
void CGrFace<N>::ReadJson(const GrJson::Value& object) {
  CGrElement::ReadJson(object);
  for (std::size_t i = 0; i < N; ++i) {
    if (const Value* v = object.isObject() ? object.find(kCornerKeys[i], kCornerKeys[i] + 2) : nullptr) {
      m_corners[i] = PointFrom(*v, true);
    }
  }
  MarkChanged();
}

template class CGrFace<4>;
template class CGrFace<3>;

void CGrVertexPolyline::WriteJson(GrJson::Value& object) const {
  CGrElement::WriteJson(object);
  object[Key("closed")] = Value(m_closed);
  Value& indices = object[Key("indices")];
  indices = Value(GrJson::arrayValue);
  for (const auto& vertex : m_vertices) indices.append(PointValue(vertex));
}

void CGrVertexPolyline::ReadJson(const GrJson::Value& object) {
  CGrElement::ReadJson(object);
  m_vertices.clear();
  ReadBool(object, "closed", m_closed);
  if (const Value* indices = Find(object, "indices"); indices != nullptr && indices->isArray()) {
    for (const Value& entry : *indices) {
      if (entry.isArray() && entry.size() == 3 && entry[0u].isNumeric() && entry[1u].isNumeric() &&
          entry[2u].isNumeric()) {
        m_vertices.emplace_back(entry[0u].asDouble(), entry[1u].asDouble(), entry[2u].asDouble());
      }
    }
  }
  MarkChanged();
}

void CGrTable::WriteJson(GrJson::Value& object) const {
  CGrElement::WriteJson(object);
  object[Key("LOC")] = PointValue(m_location);
  object[Key("TL")] = grjson::MakeString(m_title);
  object[Key("CTS")] = CellsValue(m_rows);
}

void CGrTable::ReadJson(const GrJson::Value& object) {
  CGrElement::ReadJson(object);
  ReadPoint(object, "LOC", m_location);
  ReadText(object, "TL", m_title);
  ReadCells(object, m_rows);
  MarkChanged();
}

void CGrCylinder::WriteJson(GrJson::Value& object) const {
  CGrElement::WriteJson(object);
  object[Key("GM")] = Value(m_axis.has_value());
  if (m_axis) {
    object[Key("SP")] = PointValue(m_axis->StartPoint());
    object[Key("EP")] = PointValue(m_axis->EndPoint());
  }
  object[Key("TL")] = grjson::MakeString(m_title);
  object[Key("CTS")] = CellsValue(m_rows);
}

void CGrCylinder::ReadJson(const GrJson::Value& object) {
  CGrElement::ReadJson(object);
  bool geometry = false;
  ReadBool(object, "GM", geometry);
  if (geometry) {
    CKdPoint start(0.0, 0.0, 0.0);
    CKdPoint end(0.0, 0.0, 0.0);
    ReadPoint(object, "SP", start);
    ReadPoint(object, "EP", end);
    m_axis.emplace(start, end);
  }
  ReadText(object, "TL", m_title);
  ReadCells(object, m_rows);
  MarkChanged();
}

void CGrEllipse::WriteJson(GrJson::Value& object) const {
  CGrElement::WriteJson(object);
  object[Key("center")] = PointValue(m_center);
  object[Key("minorAxis")] = VectorValue(m_minorAxis);
  object[Key("majorAxis")] = VectorValue(m_majorAxis);
  object[Key("startAngle")] = Value(m_startAngle);
  object[Key("endAngle")] = Value(m_endAngle);
}

void CGrEllipse::ReadJson(const GrJson::Value& object) {
  CGrElement::ReadJson(object);
  ReadPoint(object, "center", m_center);
  ReadVector(object, "minorAxis", m_minorAxis);
  ReadVector(object, "majorAxis", m_majorAxis);
  ReadDouble(object, "startAngle", m_startAngle);
  ReadDouble(object, "endAngle", m_endAngle);
  MarkChanged();
}

void CGrMesh::WriteJson(GrJson::Value& object) const {
  CGrElement::WriteJson(object);
  Value& vertices = object[Key("meshVertices")];
  vertices = Value(GrJson::arrayValue);
  for (const auto& vertex : m_vertices) {
    vertices.append(vertex.x);
    vertices.append(vertex.y);
    vertices.append(vertex.z);
  }
  Value& materials = object[Key("meshMaterials")];
  materials = Value(GrJson::arrayValue);
  for (const auto& material : m_materials) {
    Value entry(GrJson::objectValue);
    entry[Key("materialName")] = grjson::MakeString(material.name);
    entry[Key("materialTransparency")] = Value(material.transparency);
    WriteColorKeys(entry, material.color);
    materials.append(std::move(entry));
  }
  Value& faces = object[Key("meshFaces")];
  faces = Value(GrJson::arrayValue);
  for (const auto& face : m_faces) {
    for (const std::int32_t index : face) faces.append(Value(GrJson::Int(index)));
  }
}

void CGrMesh::ReadJson(const GrJson::Value& object) {
  CGrElement::ReadJson(object);
  if (const Value* vertices = Find(object, "meshVertices")) {
    m_vertices.clear();
    // Three numbers a vertex; a trailing one or two are ignored.
    const GrJson::ArrayIndex count = vertices->isArray() ? vertices->size() : 0;
    m_vertices.reserve(count / 3);
    for (GrJson::ArrayIndex i = 0; i + 3 <= count; i += 3) {
      m_vertices.emplace_back(NumberOrZero((*vertices)[i]), NumberOrZero((*vertices)[i + 1]),
                              NumberOrZero((*vertices)[i + 2]));
    }
  }
  if (const Value* materials = Find(object, "meshMaterials")) {
    m_materials.clear();
    // A material without "uindClr" keeps the colour method of the one read before it.
    std::int32_t method = CGrMeshMaterial().color.Method();
    if (materials->isArray()) {
      for (const Value& entry : *materials) {
        if (!entry.isObject()) continue;
        CGrMeshMaterial material;
        ReadText(entry, "materialName", material.name);
        ReadDouble(entry, "materialTransparency", material.transparency);
        material.color.SetMethod(method);
        ReadColorKeys(entry, material.color);
        method = material.color.Method();
        m_materials.push_back(std::move(material));
      }
    }
  }
  if (const Value* faces = Find(object, "meshFaces")) {
    std::vector<std::int32_t> indices;
    if (faces->isArray()) {
      indices.reserve(faces->size());
      for (const Value& index : *faces) {
        std::int32_t value = 0;
        ToInt(index, value);
        indices.push_back(value);
      }
    }
    SetFaceIndices(indices);
  }
  MarkChanged();
}
