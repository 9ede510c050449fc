// How a headless application is started: which Civil 3D parts are there, where drive paths go.
#pragma once

#include <optional>
#include <string>

namespace headless {

struct StartOptions {
  bool civilLoaded = true;   // the Civil 3D base module is among AutoCAD's loaded modules
  bool landAvailable = true;
  bool roadwayAvailable = true;
  std::string root;          // where Windows drive paths are mapped; empty: the working folder

  // Parses "no-civil,no-land,no-roadway,root=DIR" (any subset, any order, blanks around items
  // ignored); null or empty text gives the defaults. On failure returns nothing and says why.
  static std::optional<StartOptions> Parse(const char* text, std::string& error);
};

}  // namespace headless
