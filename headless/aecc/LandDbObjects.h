// The Civil 3D objects of a drawing as drawing-database objects: alignments and profiles are
// entities in model space, sites and styles are objects in the land dictionaries (LandDrawing.h).
// Each gets an object id and a handle like any object; the COM faces read them opened for read and
// change them opened for write, under the lock automation takes.
//
// Every setter checks that the object is open for write (eNotOpenForWrite otherwise), as the
// setters of AutoCAD's own classes do.
#pragma once

#include <string>
#include <vector>

#include "headless/aecc/model/AlignmentGeometry.h"
#include "headless/aecc/model/ProfileGeometry.h"
#include "platform/acad/dbmain.h"

namespace headless {

enum class LandStyleKind { Alignment, AlignmentLabelSet, Profile };

// A style or a label style set: its name and description. What it would draw is not modelled.
class AeccDbStyle final : public AcDbObject {
public:
  ACRX_DECLARE_MEMBERS(AeccDbStyle);
  AeccDbStyle(LandStyleKind kind, std::wstring name);
  ~AeccDbStyle() override;

  LandStyleKind kind() const { return m_kind; }
  const std::wstring& name() const { return m_name; }
  // The key of the dictionary entry follows (LandDrawing's RenameStyle does both).
  Acad::ErrorStatus setName(const std::wstring& name);
  const std::wstring& description() const { return m_description; }
  Acad::ErrorStatus setDescription(const std::wstring& description);

private:
  LandStyleKind m_kind;
  std::wstring m_name;
  std::wstring m_description;
};

// A site: a named container of alignments (and, in Civil 3D, of parcels and grading).
class AeccDbSite final : public AcDbObject {
public:
  ACRX_DECLARE_MEMBERS(AeccDbSite);
  explicit AeccDbSite(std::wstring name);
  ~AeccDbSite() override;

  const std::wstring& name() const { return m_name; }
  Acad::ErrorStatus setName(const std::wstring& name);

protected:
  // The site's alignments go with it (and come back with it).
  Acad::ErrorStatus subErase(Adesk::Boolean erasing) override;

private:
  std::wstring m_name;
  std::vector<AcDbObjectId> m_erasedAlong;  // the alignments its erase took along
};

// The drawing's alignments in the order they were made, sites' and siteless ones alike (erased
// ones stay listed: unerasing brings them back in their place).
class AeccDbLandRegistry final : public AcDbObject {
public:
  ACRX_DECLARE_MEMBERS(AeccDbLandRegistry);
  AeccDbLandRegistry();
  ~AeccDbLandRegistry() override;

  const std::vector<AcDbObjectId>& alignments() const { return m_alignments; }
  Acad::ErrorStatus addAlignment(AcDbObjectId id);

private:
  std::vector<AcDbObjectId> m_alignments;
};

class AeccDbAlignment final : public AcDbEntity {
public:
  ACRX_DECLARE_MEMBERS(AeccDbAlignment);
  AeccDbAlignment();
  ~AeccDbAlignment() override;

  const std::wstring& name() const { return m_name; }
  Acad::ErrorStatus setName(const std::wstring& name);
  const std::wstring& description() const { return m_description; }
  Acad::ErrorStatus setDescription(const std::wstring& description);
  AcDbObjectId styleId() const { return m_style; }
  Acad::ErrorStatus setStyleId(AcDbObjectId id);
  AcDbObjectId labelSetId() const { return m_labelSet; }
  Acad::ErrorStatus setLabelSetId(AcDbObjectId id);
  // Null for a siteless alignment.
  AcDbObjectId siteId() const { return m_site; }
  Acad::ErrorStatus setSiteId(AcDbObjectId id);

  const land::AlignmentGeometry& geometry() const { return m_geometry; }
  // The geometry to change; null unless the alignment is open for write.
  land::AlignmentGeometry* geometryForWrite();

  // Its profiles in the order they were made (erased ones included).
  const std::vector<AcDbObjectId>& profileIds() const { return m_profiles; }
  Acad::ErrorStatus addProfileId(AcDbObjectId id);

protected:
  // Profiles go with their alignment (and come back with it).
  Acad::ErrorStatus subErase(Adesk::Boolean erasing) override;

private:
  std::wstring m_name;
  std::wstring m_description;
  AcDbObjectId m_style;
  AcDbObjectId m_labelSet;
  AcDbObjectId m_site;
  land::AlignmentGeometry m_geometry;
  std::vector<AcDbObjectId> m_profiles;
  std::vector<AcDbObjectId> m_erasedAlong;  // the profiles its erase took along
};

class AeccDbProfile final : public AcDbEntity {
public:
  ACRX_DECLARE_MEMBERS(AeccDbProfile);
  AeccDbProfile(AcDbObjectId alignment, land::ProfileType type);
  ~AeccDbProfile() override;

  const std::wstring& name() const { return m_name; }
  Acad::ErrorStatus setName(const std::wstring& name);
  const std::wstring& description() const { return m_description; }
  Acad::ErrorStatus setDescription(const std::wstring& description);
  AcDbObjectId styleId() const { return m_style; }
  Acad::ErrorStatus setStyleId(AcDbObjectId id);
  AcDbObjectId alignmentId() const { return m_alignment; }

  const land::ProfileGeometry& geometry() const { return m_geometry; }
  // The geometry to change; null unless the profile is open for write.
  land::ProfileGeometry* geometryForWrite();

private:
  AcDbObjectId m_alignment;
  std::wstring m_name;
  std::wstring m_description;
  AcDbObjectId m_style;
  land::ProfileGeometry m_geometry;
};

}  // namespace headless
