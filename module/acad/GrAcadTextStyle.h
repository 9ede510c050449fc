// CGrAcadTextStyle: a text style of the drawing by name, with the font and sizes the module gives
// it; texts are drawn with the style their element names.
#pragma once

#include <string>

#include "platform/acad/dbmain.h"

class CGrAcadTextStyle {
public:
  // A height of 0 leaves each text its own height; the width factor must be positive.
  CGrAcadTextStyle(const std::wstring& name, const std::wstring& fontFile = L"txt", double height = 0.0,
                   double widthFactor = 1.0)
      : m_name(name), m_fontFile(fontFile), m_height(height), m_widthFactor(widthFactor) {}

  const std::wstring& Name() const { return m_name; }
  const std::wstring& FontFile() const { return m_fontFile; }
  double Height() const { return m_height; }
  double WidthFactor() const { return m_widthFactor; }

  // The style in db (the working drawing when null): null when there is none.
  static AcDbObjectId Find(const std::wstring& name, AcDbDatabase* db = nullptr);
  // The name of a text style record; empty for a null or foreign id.
  static std::wstring NameOf(AcDbObjectId id);
  // The style of this name, made with these settings when missing (an existing one keeps its
  // own); null when it cannot be had.
  AcDbObjectId Ensure(AcDbDatabase* db = nullptr) const;
  // Makes the style or gives an existing one these settings: 0, or AutoCAD's status.
  int Apply(AcDbDatabase* db = nullptr) const;

private:
  std::wstring m_name;
  std::wstring m_fontFile;
  double m_height;
  double m_widthFactor;
};
