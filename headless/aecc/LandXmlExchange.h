// LandXML in and out of a drawing: alignments (every entity kind, spirals into spiral groups) with
// their stationing and station equations, and their layout profiles, as Civil 3D's own LandXML
// import and export move them. Nothing here throws; a failure leaves the drawing as it was and
// says why in `error`.
#pragma once

#include <filesystem>
#include <string>

namespace headless {
class AcadApplication;
}

namespace headless::land {

// Imports into the application's active drawing. options: null or empty, or "site=NAME" (the
// alignments go into that site, made when the drawing lacks it, instead of being siteless).
bool ImportLandXml(AcadApplication& application, const std::filesystem::path& path, const char* options,
                   std::string& error);

// Writes the active drawing's alignments and profiles as LandXML 1.2 (metres, decimal degrees).
bool ExportLandXml(AcadApplication& application, const std::filesystem::path& path, std::string& error);

}  // namespace headless::land
