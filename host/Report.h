// report.md: what a run carried through the host interface, what it could not, and how far the
// read-back departs from the input.
#pragma once

#include <string>

#include "host/RunModel.h"

namespace host {

std::string ReportMarkdown(const CRunResult& run);

}  // namespace host
