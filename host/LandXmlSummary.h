// kdhost inspect: what a LandXML file holds, in which units, and what in it would not go
// through run unchanged, without loading the module.
#pragma once

#include <string>

namespace host {

// The summary as text; false (with the reader's message in `text`) when the file cannot be read.
bool InspectSummary(const std::string& path, std::string& text);

// Prints the summary to standard output; returns the exit status (ExitCodes.h).
int InspectFile(const std::string& path);

}  // namespace host
