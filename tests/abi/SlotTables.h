// The host contract's slot tables, as the host's compiler (Microsoft's ABI) numbers them.
// Each row names a virtual member by its name and arity (the arity tells overloads apart), and
// carries its pointer-to-member index under the Itanium ABI of this build.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "module/interface/ICivil3dAlignment.h"
#include "module/interface/ICivil3dCorridor.h"
#include "module/interface/ICivil3dObject.h"
#include "module/interface/ICivil3dProfile.h"
#include "module/interface/ICivil3dSurface.h"

namespace slots {

template <class>
struct Arity;
template <class R, class... A>
struct Arity<R(A...)> {
  static constexpr int value = sizeof...(A);
};
template <class R, class... A>
struct Arity<R(A...) const> {
  static constexpr int value = sizeof...(A);
};

// Itanium: a pointer to a virtual member function holds 1 + the entry's byte offset in the
// vtable; a non-virtual one holds an even address. -1 marks a non-virtual member.
template <class F>
std::ptrdiff_t ItaniumIndex(F pmf) {
  static_assert(sizeof(F) == 2 * sizeof(std::uintptr_t));
  std::uintptr_t raw[2];
  std::memcpy(raw, &pmf, sizeof raw);
  if ((raw[0] & 1u) == 0) return -1;
  return static_cast<std::ptrdiff_t>((raw[0] - 1) / sizeof(void*));
}

template <class C, class F>
using MemberOf = F C::*;

struct SlotRow {
  int slot;             // the contract's slot number
  std::string name;     // "~" for the destructor
  int arity;
  std::ptrdiff_t itanium;  // index found in this build, unused for the destructor
};

struct InterfaceTable {
  std::string name;
  int entries;          // vftable entries under the Microsoft ABI
  int destructorSlot;
  std::vector<SlotRow> rows;
};

#define KD_SLOT(slot, Class, member, Sig) \
  SlotRow{slot, #member, Arity<Sig>::value, ItaniumIndex(static_cast<MemberOf<Class, Sig>>(&Class::member))}
#define KD_DTOR(slot) SlotRow{slot, "~", 0, -1}

inline std::vector<InterfaceTable> ContractTables() {
  using S = const wchar_t*;
  return {
      {"ICivil3dObject", 37, 36,
       {KD_SLOT(0, ICivil3dObject, Initialize, bool(CWinApp*)),
        KD_SLOT(1, ICivil3dObject, IsInitialized, bool()),
        KD_SLOT(2, ICivil3dObject, GetAlignment, ICivil3dAlignment*(S)),
        KD_SLOT(3, ICivil3dObject, ListAlignments, bool(wchar_t***, long long**, int*)),
        KD_SLOT(4, ICivil3dObject, CreateAlignment, bool(S, S, S, S, S)),
        KD_SLOT(5, ICivil3dObject, GetAlignmentStyleNames, bool(wchar_t***, int*)),
        KD_SLOT(6, ICivil3dObject, GetAlignmentLabelStyleSetNames, bool(wchar_t***, int*)),
        KD_SLOT(7, ICivil3dObject, DeleteAlignment, bool(S)),
        KD_SLOT(8, ICivil3dObject, GetSurface, ICivil3dSurface*(S)),
        KD_SLOT(9, ICivil3dObject, ListSurfaces, bool(wchar_t***, long long**, int*)),
        KD_SLOT(10, ICivil3dObject, CreateSurface, bool(S, S, S, S)),
        KD_SLOT(11, ICivil3dObject, DeleteSurface, bool(S)),
        KD_SLOT(12, ICivil3dObject, GetSurfaceStyleNames, bool(wchar_t***, int*)),
        KD_SLOT(13, ICivil3dObject, IsCorridorFeatureAvailable, bool()),
        KD_SLOT(14, ICivil3dObject, GetCorridor, ICivil3dCorridor*(S)),
        KD_SLOT(15, ICivil3dObject, ListCorridors, bool(wchar_t***, long long**, int*)),
        KD_SLOT(16, ICivil3dObject, CreateCorridor, void(S)),
        KD_SLOT(17, ICivil3dObject, RebuildCorridor, void(S)),
        KD_SLOT(18, ICivil3dObject, DeleteCorridor, void(S)),
        KD_SLOT(19, ICivil3dObject, AddAssembly, void(S, S, S, bool, double, double)),
        KD_SLOT(20, ICivil3dObject, AddAssembly, void(S, S, S, bool)),
        KD_SLOT(21, ICivil3dObject, AddKelvoAssembly, void(S, double, double)),
        KD_SLOT(22, ICivil3dObject, AddKelvoAssemblyRight, void(S, double, double)),
        KD_SLOT(23, ICivil3dObject, AddKelvoAssemblyIn, void(S, double, double)),
        KD_SLOT(24, ICivil3dObject, AddKelvoAssemblyOut, void(S, double, double)),
        KD_SLOT(25, ICivil3dObject, DeleteAssembly, void(S)),
        KD_SLOT(26, ICivil3dObject, AddBaseline, void(S, S, S, S, S, S, double, double, double)),
        KD_SLOT(27, ICivil3dObject, AddBaselineForSurface, void(S, S, S, S, S, S, double)),
        KD_SLOT(28, ICivil3dObject, AddBaselineForSurface, void(S, S, S, S, S, double, double, S, double)),
        KD_SLOT(29, ICivil3dObject, FreeStrings, void(wchar_t***, int)),
        KD_SLOT(30, ICivil3dObject, FreeStrings, void(wchar_t**)),
        KD_SLOT(31, ICivil3dObject, FreeSessionIds, void(long long**)),
        KD_SLOT(32, ICivil3dObject, FreePoints, void(CC3dPoint**)),
        KD_SLOT(33, ICivil3dObject, FreeProfilePoints, void(CC3dProfilePoint**)),
        KD_SLOT(34, ICivil3dObject, FreeProfileVPIs, void(CC3dProfilePVI**)),
        KD_SLOT(35, ICivil3dObject, FreeCurves, void(CC3dCurve**)),
        KD_DTOR(36)}},
      {"ICivil3dAlignment", 14, 0,
       {KD_DTOR(0),
        KD_SLOT(1, ICivil3dAlignment, GetPolylineId, long long()),
        KD_SLOT(2, ICivil3dAlignment, GetSessionId, long long()),
        KD_SLOT(3, ICivil3dAlignment, GetName, bool(wchar_t*, int&)),
        KD_SLOT(4, ICivil3dAlignment, SetAlignmentGeometry, bool(const CC3dCurve*, int)),
        KD_SLOT(5, ICivil3dAlignment, GetAlignmentGeometry, bool(CC3dCurve**, int*)),
        KD_SLOT(6, ICivil3dAlignment, GetStartingStation, double()),
        KD_SLOT(7, ICivil3dAlignment, SetStartingStation, void(const double&)),
        KD_SLOT(8, ICivil3dAlignment, SetStationReference, void(const double&, const CC3dPoint&)),
        KD_SLOT(9, ICivil3dAlignment, ListProfiles, bool(wchar_t***, int*)),
        KD_SLOT(10, ICivil3dAlignment, GetProfile, ICivil3dProfile*(S)),
        KD_SLOT(11, ICivil3dAlignment, CreateProfile, bool(S, S)),
        KD_SLOT(12, ICivil3dAlignment, DeleteProfile, bool(S)),
        KD_SLOT(13, ICivil3dAlignment, SetName, bool(S))}},
      {"ICivil3dProfile", 7, 0,
       {KD_DTOR(0),
        KD_SLOT(1, ICivil3dProfile, SetProfileGeometry, bool(const CC3dProfilePVI*, int)),
        KD_SLOT(2, ICivil3dProfile, GetProfileGeometry, bool(CC3dProfilePVI**, int*)),
        KD_SLOT(3, ICivil3dProfile, ClearProfileGeometry, bool()),
        KD_SLOT(4, ICivil3dProfile, GetStrokedProfile, bool(const double&, CC3dProfilePoint**, int*)),
        KD_SLOT(5, ICivil3dProfile, GetSessionId, long long()),
        KD_SLOT(6, ICivil3dProfile, SetName, bool(S))}},
      {"ICivil3dSurface", 18, 0,
       {KD_DTOR(0),
        KD_SLOT(1, ICivil3dSurface, SetPoints, bool(const CC3dPoint*, int)),
        KD_SLOT(2, ICivil3dSurface, DeletePoints, bool()),
        KD_SLOT(3, ICivil3dSurface, Rebuild, bool()),
        KD_SLOT(4, ICivil3dSurface, GetSessionId, long long()),
        KD_SLOT(5, ICivil3dSurface, GetBoundary, bool(CC3dCurve**, int*)),
        KD_SLOT(6, ICivil3dSurface, GetIntersectionWithVector,
                bool(const CC3dPoint&, const CC3dPoint&, CC3dPoint&)),
        KD_SLOT(7, ICivil3dSurface, SampleElevations,
                bool(const CC3dPoint&, const CC3dPoint&, CC3dPoint**, int*)),
        KD_SLOT(8, ICivil3dSurface, SetBoundary, bool(const CC3dCurve*, int)),
        KD_SLOT(9, ICivil3dSurface, SetVoid, bool(S, const CC3dCurve*, int)),
        KD_SLOT(10, ICivil3dSurface, DeleteBoundary, bool()),
        KD_SLOT(11, ICivil3dSurface, SetName, bool(S)),
        KD_SLOT(12, ICivil3dSurface, NumOfTriangles, int()),
        KD_SLOT(13, ICivil3dSurface, GetTriangles, bool(CC3dPoint*, int*, int*, int*, int*, int)),
        KD_SLOT(14, ICivil3dSurface, PasteSurface, bool(S)),
        KD_SLOT(15, ICivil3dSurface, AddBreakline, bool(const CC3dCurve*, int)),
        KD_SLOT(16, ICivil3dSurface, DeleteBreaklines, bool()),
        KD_SLOT(17, ICivil3dSurface, getAssetsSessionIds, std::set<unsigned long long>())}},
      {"ICivil3dCorridor", 5, 0,
       {KD_DTOR(0),
        KD_SLOT(1, ICivil3dCorridor, Rebuild, bool()),
        KD_SLOT(2, ICivil3dCorridor, HasBaselineAlignment, bool(S)),
        KD_SLOT(3, ICivil3dCorridor, GetSessionId, long long()),
        KD_SLOT(4, ICivil3dCorridor, SetName, bool(S))}},
      {"CC3dPoint", 3, 0,
       {KD_DTOR(0),
        KD_SLOT(1, CC3dPoint, operator==, bool(const CC3dPoint&) const),
        KD_SLOT(2, CC3dPoint, operator!=, bool(const CC3dPoint&) const)}},
      {"CC3dCurve", 1, 0, {KD_DTOR(0)}},
      {"CC3dProfilePVI", 1, 0, {KD_DTOR(0)}},
  };
}

#undef KD_SLOT
#undef KD_DTOR

}  // namespace slots
