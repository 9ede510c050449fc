// The DXF writer's walk over a drawing, shared by the files that write its sections
// (DxfWriter.cpp) and its entities (DxfWriteEntities.cpp).
#pragma once

#include <cmath>
#include <cstring>
#include <functional>
#include <memory>
#include <unordered_map>
#include <unordered_set>

#include "headless/acad/Dxf.h"
#include "headless/acad/DxfAcis.h"
#include "headless/acad/DxfFormat.h"
#include "headless/acad/ImpAccess.h"
#include "headless/acad/ImpDatabase.h"
#include "headless/acad/Resbuf.h"
#include "platform/acad/dbdict.h"
#include "platform/acad/dbelipse.h"
#include "platform/acad/dbents.h"
#include "platform/acad/dbgroup.h"
#include "platform/acad/dbhatch.h"
#include "platform/acad/dblayout.h"
#include "platform/acad/dbpl.h"
#include "platform/acad/dbsol3d.h"
#include "platform/acad/dbsymtb.h"
#include "platform/acad/dbtable.h"
#include "platform/acad/dbtablestyle.h"
#include "platform/acad/dbxrecrd.h"

namespace headless::dxf::detail {

inline std::string Narrow(const ACHAR* text) { return Out::Encode(text == nullptr ? L"" : text); }

template <class T>
inline T* Peek(AcDbObjectId id) {
  return T::cast(AcDbImpDatabase::peek(id));
}

inline double Deg(double rad) { return rad * kRadToDeg; }

// Degrees in [0, 360).
inline double Deg360(double rad) {
  double d = std::fmod(Deg(rad), 360.0);
  if (d < 0.0) d += 360.0;
  return d;
}

class Writer {
public:
  Writer(AcDbDatabase& face, std::string& text)
      : m_face(face), m_db(*AcDbImpDatabase::of(&face)), m_buffer(text), m_out(text) {
    m_nextHandle = m_db.handseed();
    for (const auto& stub : m_db.stubs()) m_stubs.emplace(stub->id, stub.get());
  }

  void Run();

private:
  const AcDbStub* StubOf(AcDbObjectId id) const {
    auto found = m_stubs.find(id.asOldId());
    return found == m_stubs.end() ? nullptr : found->second;
  }
  std::uint64_t HandleOf(AcDbObjectId id) const {
    const AcDbStub* stub = StubOf(id);
    return stub == nullptr ? 0 : stub->handle;
  }
  bool Live(AcDbObjectId id) const {
    const AcDbStub* stub = StubOf(id);
    return stub != nullptr && !stub->erased;
  }
  std::uint64_t NewHandle() { return m_nextHandle++; }

  // --- Common parts -----------------------------------------------------------------------------

  // Handle, extension dictionary, reactors and owner: what every object starts with.
  void Head(const char* type, const AcDbStub& stub, int handleCode = 5);

  const std::string& NameOfRecord(AcDbObjectId id);

  void Color(const AcCmColor& color, bool off = false);

  void EntityHead(const char* type, const AcDbEntity& entity, const AcDbStub& stub, const char* subclass);

  void Normal(const AcGeVector3d& n);

  // --- Sections ---------------------------------------------------------------------------------

  void CollectTables();

  void Header();

  AcDbExtents ModelExtents();

  void Class(const char* dxfName, const char* cppName, int instances, bool entity);

  void Classes();

  // --- Tables -----------------------------------------------------------------------------------

  template <class Body>
  void Table(const char* name, AcDbObjectId tableId, int extraRecords, Body body) {
    const AcDbStub* stub = StubOf(tableId);
    auto* table = Peek<AcDbSymbolTable>(tableId);
    if (stub == nullptr || table == nullptr) return;
    int count = extraRecords;
    for (AcDbObjectId id : table->recordIds()) count += Live(id) ? 1 : 0;
    m_out.Str(0, "TABLE");
    m_out.Str(2, name);
    m_out.Handle(5, stub->handle);
    m_out.Handle(330, 0);
    m_out.Str(100, "AcDbSymbolTable");
    m_out.Int(70, count);
    if (std::strcmp(name, "DIMSTYLE") == 0) m_out.Str(100, "AcDbDimStyleTable");
    for (AcDbObjectId id : table->recordIds()) {
      const AcDbStub* record = StubOf(id);
      if (record == nullptr || record->erased) continue;
      body(*record, *Peek<AcDbSymbolTableRecord>(id));
    }
    m_out.Str(0, "ENDTAB");
  }

  void RecordHead(const char* type, const AcDbStub& stub, const char* subclass, const AcDbSymbolTableRecord& record,
                  int flags, int handleCode = 5);

  void Tables();

  // --- Blocks and entities ----------------------------------------------------------------------

  void BlockBegin(std::uint64_t handle, std::uint64_t owner, const std::string& name, const AcGePoint3d& origin,
                  int flags, bool paper);

  void BlockEnd(std::uint64_t handle, std::uint64_t owner, bool paper);

  void Blocks();

  void Entities();

  void Entity(AcDbObjectId id);

  void Circle(const AcGePoint3d& centre, const AcGeVector3d& normal, double radius, double thickness);

  void LightweightPolyline(const AcDbPolyline& pl, const AcDbStub& stub);

  void Vertices(const AcDbImpComplexVertices& vertices, const AcDbEntity& owner, const AcDbStub& ownerStub,
                const std::function<void(const AcDbVertex&)>& body);

  void Polyline2d(const AcDb2dPolyline& pl, const AcDbStub& stub);

  void Polyline3d(const AcDb3dPolyline& pl, const AcDbStub& stub);

  void PolyfaceMesh(const AcDbPolyFaceMesh& mesh, const AcDbStub& stub);

  void Text(const AcDbText& text, const AcDbStub& stub);

  // Pattern lines of the predefined patterns this platform knows, as acad.pat has them; others
  // are written without lines (the viewer fills them in from its own pattern file).
  void PatternLines(const AcDbHatch& hatch);

  void Hatch(const AcDbHatch& hatch, const AcDbStub& stub);

  void Solid(const AcDb3dSolid& solid, const AcDbStub& stub);

  // A table: its cells, and the "*T" block that shows them in programs without tables.
  void TableEntity(const AcDbTable& table, const AcDbStub& stub);

  void TableGraphics(AcDbObjectId tableId);

  void PieceHead(const char* type, const char* subclass, std::uint64_t handle, std::uint64_t owner);

  // --- Objects ----------------------------------------------------------------------------------

  // The objects in an order that depends on the drawing alone, not on the order its objects were
  // made in: the named objects dictionary's tree, then each extension dictionary's tree in the
  // order their owners were written.
  void Objects();

  void Tree(AcDbObjectId id);

  // An object's owner was written (objects in extension dictionaries of objects with no DXF
  // form are left out with them).
  bool OwnerWritten(const AcDbStub& stub) const;

  void Object(const AcDbStub& stub);

  void XrecordItem(const AcDbXrecord::Item& item);

  void Layout(const AcDbLayout& layout, const AcDbStub& stub);

  void TableStyle(const AcDbTableStyle& style, const AcDbStub& stub);

  struct TableBlock {
    std::uint64_t record = 0;
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    std::string name;
  };

  AcDbDatabase& m_face;
  AcDbImpDatabase& m_db;
  std::string& m_buffer;
  Out m_out;
  std::unordered_map<Adesk::IntDbId, const AcDbStub*> m_stubs;
  std::unordered_map<Adesk::IntDbId, std::string> m_names;
  std::unordered_map<Adesk::IntDbId, std::uint64_t> m_layoutOf;
  std::unordered_map<Adesk::IntDbId, TableBlock> m_tableBlocks;
  std::vector<AcDbObjectId> m_tableBlockOrder;
  std::unordered_set<std::uint64_t> m_written;
  std::unordered_set<std::uint64_t> m_objectsWritten;
  std::vector<AcDbObjectId> m_xdictQueue;
  std::uint64_t m_nextHandle = 1;
  bool m_paperSpace = false;
};

}  // namespace headless::dxf::detail
