// kdhost check: the start-up and shut-down of one session, step by step, as a host runs them.
#pragma once

#include <string>

namespace host {

// Returns the exit status (ExitCodes.h).
int CheckModule(const std::string& modulePath, const std::string& startOptions);

}  // namespace host
