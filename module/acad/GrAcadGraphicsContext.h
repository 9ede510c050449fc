// CGrAcadGraphicsContext: the graphics context over AutoCAD's drawing database. It owns one
// drawing class per element kind and routes every request to the class of the element's kind.
// Callers hold the document lock (CGrLockDoc) around every change.
#pragma once

#include <array>
#include <memory>

#include "module/acad/GrAcadDc.h"
#include "module/acad/GrGraphicsContext.h"

class CGrAcadGraphicsContext : public IGrGraphicsContext {
public:
  // `opaque` is only kept (the program passes null).
  explicit CGrAcadGraphicsContext(void* opaque = nullptr);
  ~CGrAcadGraphicsContext() override;
  CGrAcadGraphicsContext(const CGrAcadGraphicsContext&) = delete;
  CGrAcadGraphicsContext& operator=(const CGrAcadGraphicsContext&) = delete;

  int Draw(CGrElement* element) override;
  CGrElement* MakeElementFromHandle(std::int64_t handle) override;
  CGrElement* MakeElementFromSessionId(std::int64_t sessionId) override;
  int EraseByHandle(const std::int64_t* handle) override;
  int Erase(CGrElement* element) override;
  int Flush() override { return gracad::kOk; }
  int DrawBlock(CGrElement* element) override;
  int Highlight(CGrElement* element, bool on) override;
  int Explode(CGrElement* element, CGrElementVector& pieces) override;
  int UseColorTranslator(IGrPlatformColor* translator, int reserved) override;
  int UseColorTranslatorDefault(IGrPlatformColor* translator) override;
  std::uint32_t IndexToRgb(std::uint32_t index) override;
  std::uint32_t RgbToIndex(std::uint32_t rgb) override;
  CGrAcadLayerTable* CreateLayerTable() override;
  CGrAcadTextStyle* CreateTextStyle(const std::wstring& name, const std::wstring& fontFile, double height,
                                    double widthFactor) override;
  int SelectCrossing(const CKdPoint& corner1, const CKdPoint& corner2, std::vector<std::int64_t>& handles) override;
  int GetExtents(CGrElement* element, CGrRect& extents) override;

  // The drawing class of an element kind; null for kinds that have none.
  CGrAcadDc* DcForKind(int kind) const;
  // The element kind an object reads back as (0 when none): the first class of AutoCAD's that
  // matches, in the order line, arc, circle, polylines, block reference, group, text, hatch,
  // face (a triangle when its last two corners are equal), polyface mesh, ellipse.
  static int KindOf(const AcDbObject* object);
  // A new element for an object open for read: null for erased or unclassifiable objects.
  CGrElement* ElementFromObject(AcDbObject* object) const;
  // If the element has a handle and no session id, the session id from the handle; if it has a
  // session id and no handle, the handle from the session id.
  static void ReconcileIds(CGrElement& element);
  void* Opaque() const { return m_opaque; }

private:
  // In the order of the kinds: line, arc, circle, polyline, element block, text, group, hatch,
  // rectangle face, triangle face, table, cylinder, shallow element, mesh, ellipse.
  std::array<std::unique_ptr<CGrAcadDc>, 15> m_dcs;
  void* m_opaque;
};
