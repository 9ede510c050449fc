#include "headless/acad/StartOptions.h"

#include <sstream>

namespace headless {

namespace {

std::string Trim(const std::string& s) {
  const auto first = s.find_first_not_of(" \t");
  if (first == std::string::npos) return {};
  const auto last = s.find_last_not_of(" \t");
  return s.substr(first, last - first + 1);
}

}  // namespace

std::optional<StartOptions> StartOptions::Parse(const char* text, std::string& error) {
  StartOptions options;
  if (text == nullptr) return options;
  std::istringstream in(text);
  std::string item;
  while (std::getline(in, item, ',')) {
    item = Trim(item);
    if (item.empty()) continue;
    if (item == "no-civil") {
      options.civilLoaded = false;
    } else if (item == "no-land") {
      options.landAvailable = false;
    } else if (item == "no-roadway") {
      options.roadwayAvailable = false;
    } else if (item.rfind("root=", 0) == 0) {
      options.root = item.substr(5);
      if (options.root.empty()) {
        error = "option root= needs a folder";
        return std::nullopt;
      }
    } else {
      error = "unknown start option \"" + item + "\" (known: no-civil, no-land, no-roadway, root=DIR)";
      return std::nullopt;
    }
  }
  return options;
}

}  // namespace headless
