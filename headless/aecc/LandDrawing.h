// The land part of a drawing: where its Civil 3D objects live and how they are found, named and
// made. Shared by the COM faces and the LandXML exchange, so that both keep the same rules.
//
// Layout in the drawing: the named-objects dictionary holds "AECC_LAND", a dictionary with the
// style dictionaries ("ALIGNMENT_STYLES", "ALIGNMENT_LABEL_SETS", "PROFILE_STYLES", keyed by
// name), the sites ("SITES", keyed by name) and the registry of alignments ("REGISTRY").
// Alignments and profiles are entities of model space.
//
// Reads here look at objects without opening them (they may be open for write by the caller);
// changes open what they change and need the drawing writable (its document's write lock).
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "headless/aecc/LandDbObjects.h"

class AcDbDatabase;

namespace headless::land_drawing {

// Names match without regard to letter case, as Civil 3D's collections match them.
bool SameName(std::wstring_view a, std::wstring_view b);
// The order Civil 3D lists styles and sites in: by name, letter case ignored, compared as lower
// case (so "_No Labels" comes before "All Labels").
bool NameBefore(std::wstring_view a, std::wstring_view b);
// `base`, or the first of "base (1)", "base (2)", ... that `taken` refuses.
std::wstring FreeName(const std::wstring& base, const std::function<bool(const std::wstring&)>& taken);

// The styles a new drawing from Civil 3D's standard template has, in list order.
const std::vector<std::wstring>& TemplateStyles(LandStyleKind kind);

struct Roots {
  AcDbObjectId alignmentStyles;
  AcDbObjectId labelSets;
  AcDbObjectId profileStyles;
  AcDbObjectId sites;
  AcDbObjectId registry;

  bool Complete() const;
  AcDbObjectId Styles(LandStyleKind kind) const;
};

// The land dictionaries of the drawing; incomplete when it has none yet.
Roots Find(const AcDbDatabase* db);
// As Find, making them (with the template's styles) when the drawing has none.
Acad::ErrorStatus Ensure(AcDbDatabase* db, Roots& roots);

// Styles of a kind in list order; the one of that name (null when none).
std::vector<AcDbObjectId> Styles(const AcDbDatabase* db, LandStyleKind kind);
AcDbObjectId FindStyle(const AcDbDatabase* db, LandStyleKind kind, std::wstring_view name);
// A new style of the kind: eDuplicateRecordName when one has the name, eInvalidInput for an
// empty name.
Acad::ErrorStatus AddStyle(AcDbDatabase* db, LandStyleKind kind, const std::wstring& name, AcDbObjectId& id);
// Whether an alignment or profile of the drawing uses the style.
bool StyleInUse(const AcDbDatabase* db, AcDbObjectId style);
// Renames a style and its dictionary entry: eDuplicateRecordName when another style of its kind
// has the name, eInvalidInput for an empty one.
Acad::ErrorStatus RenameStyle(AcDbObjectId style, const std::wstring& name);

std::vector<AcDbObjectId> Sites(const AcDbDatabase* db);
AcDbObjectId FindSite(const AcDbDatabase* db, std::wstring_view name);
// eDuplicateRecordName, eInvalidInput as for styles.
Acad::ErrorStatus AddSite(AcDbDatabase* db, const std::wstring& name, AcDbObjectId& id);
Acad::ErrorStatus RenameSite(AcDbObjectId site, const std::wstring& name);

// The alignments (not erased) of a site, or the siteless ones for a null site, in the order they
// were made; all of them.
std::vector<AcDbObjectId> Alignments(const AcDbDatabase* db, AcDbObjectId site);
std::vector<AcDbObjectId> AllAlignments(const AcDbDatabase* db);
AcDbObjectId FindAlignment(const AcDbDatabase* db, AcDbObjectId site, std::wstring_view name);
// Whether another alignment of the drawing (any site) has the name.
bool AlignmentNameTaken(const AcDbDatabase* db, std::wstring_view name, AcDbObjectId except = AcDbObjectId::kNull);

struct NewAlignment {
  std::wstring name;
  std::wstring description;
  std::wstring layer;  // made when the drawing lacks it; empty: the current layer
  AcDbObjectId style;
  AcDbObjectId labelSet;
  AcDbObjectId site;   // null: siteless
};
// Appends a new alignment to model space and registers it. eDuplicateRecordName when the name is
// taken, eInvalidInput for an empty name, eInvalidSymbolTableName for a layer name AutoCAD
// refuses. The geometry, when given, is the new alignment's.
Acad::ErrorStatus AddAlignment(AcDbDatabase* db, const NewAlignment& request, AcDbObjectId& id,
                               land::AlignmentGeometry* geometry = nullptr);

// Appends a new entity to model space on `layer` (the current layer when empty) and closes it;
// the entity is deleted when that fails.
Acad::ErrorStatus AppendToModelSpace(AcDbDatabase* db, AcDbEntity* entity, const std::wstring& layer,
                                     AcDbObjectId& id);

// The profiles (not erased) of an alignment in the order they were made.
std::vector<AcDbObjectId> Profiles(AcDbObjectId alignment);
AcDbObjectId FindProfile(AcDbObjectId alignment, std::wstring_view name);
// Whether another profile of the same alignment has the name (profile names are unique per
// alignment).
bool ProfileNameTaken(AcDbObjectId alignment, std::wstring_view name, AcDbObjectId except = AcDbObjectId::kNull);

struct NewProfile {
  std::wstring name;
  std::wstring description;
  land::ProfileType type = land::ProfileType::FinishedGround;
  AcDbObjectId style;
};
// Appends a new profile of the alignment to model space, on the alignment's layer, and links it
// to the alignment. eDuplicateRecordName, eInvalidInput as for alignments.
Acad::ErrorStatus AddProfile(AcDbObjectId alignment, const NewProfile& request, AcDbObjectId& id,
                             land::ProfileGeometry* geometry = nullptr);

}  // namespace headless::land_drawing
