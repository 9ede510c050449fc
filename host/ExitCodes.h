// Exit statuses of kdhost; --help lists them.
#pragma once

namespace host {

enum ExitCode : int {
  kExitDone = 0,            // everything done
  kExitLeftOut = 1,         // run: outputs written, but some of the input could not be carried
  kExitUsage = 2,           // the command line is wrong
  kExitInput = 3,           // the input file cannot be read, or holds nothing run can carry
  kExitModule = 4,          // the module did not load, or is not interface version 3 for "F000"
  kExitSession = 5,         // the headless application or the module's session did not start
  kExitModuleCall = 6,      // the module refused a call the run depends on
  kExitOutput = 7,          // the outputs could not be written
};

}  // namespace host
