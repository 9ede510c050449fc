// kdhost run: design data from LandXML through the module's host interface into a headless
// drawing, read back through the same interface, and written out as a drawing, LandXML,
// pictures and a report.
#pragma once

#include <string>

namespace host {

struct CRunOptions {
  std::string input;
  std::string outputFolder;
  double spiralTolerance = 0.001;
  double step = 1.0;
  std::string modulePath;
};

// The smallest spiral tolerance run accepts: below it the clothoid's own computation and the
// drawing's rounding are no longer far enough below the tolerance to honour it.
inline constexpr double kMinSpiralTolerance = 1e-6;
// The most samples a profile may be stroked into.
inline constexpr double kMaxProfileSamples = 1e6;

// Returns the exit status (ExitCodes.h). Messages go to standard error; progress too, but only
// when standard error is a terminal.
int RunDesign(const CRunOptions& options);

}  // namespace host
