// Drawing files in AutoCAD's ASCII DXF form (release 2004, AC1018): what HeadlessSaveDxf and
// HeadlessOpenDxf do with a drawing.
//
// Written by hand rather than through dxflib (Debian's libdxflib-dev): dxflib's writer hands out
// handles of its own, writes neither owners nor extension dictionaries nor groups, keeps one value
// per Xrecord in a dictionary of its own, and prints reals with 16 decimals rather than 17
// significant digits; its reader gives no owners or object links. A drawing must come back with
// the same handles, tags and groups.
#pragma once

#include <memory>
#include <string>

#include "platform/acad/dbmain.h"

namespace headless::dxf {

// Writes the drawing to path: first to a temporary file beside it, renamed over path once
// complete, so that a failed save leaves no file (and an existing one as it was). False, with the
// reason in error, when the file cannot be written.
KD_PLATFORM_API bool Save(AcDbDatabase& database, const std::string& path, std::string& error);

// The whole file as text (what Save writes).
KD_PLATFORM_API std::string Write(AcDbDatabase& database);

// Reads a drawing written by Save (or by another program, for the objects this platform has):
// the objects keep their handles, owners, extension dictionaries and Xrecords. Null, with the
// reason in error, when the file cannot be read or is no DXF drawing.
KD_PLATFORM_API std::unique_ptr<AcDbDatabase> Open(const std::string& path, std::string& error);
KD_PLATFORM_API std::unique_ptr<AcDbDatabase> Read(const std::string& text, std::string& error);

}  // namespace headless::dxf
