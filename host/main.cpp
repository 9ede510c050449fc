// kdhost: loads the module as the real host does and drives it on a headless application.
#include <CLI/CLI.hpp>

#include <string>

#include "host/CheckCommand.h"
#include "host/ExitCodes.h"
#include "host/LandXmlSummary.h"
#include "host/ModuleLoader.h"
#include "host/RunCommand.h"

namespace {

constexpr const char* kExitStatuses =
    "Exit status:\n"
    "  0  done\n"
    "  1  run: outputs written, but some of the input could not be carried (report.md lists it)\n"
    "  2  the command line is wrong\n"
    "  3  the input file cannot be read (the message names the file, the line and the element),\n"
    "     or holds nothing run can carry\n"
    "  4  the module did not load, or is not interface version 3 for platform \"F000\"\n"
    "  5  the headless application or the module's session did not start\n"
    "  6  the module refused a call the run depends on\n"
    "  7  the outputs could not be written\n"
    "A run that ends with 2 to 7 leaves no output files behind.";

}  // namespace

int main(int argc, char** argv) {
  CLI::App cli{
      "kdhost: the host program of the KdCivil3d module. It loads the module the way the real host\n"
      "does (at run time by path, its four exported functions by name, interface version 3 and\n"
      "platform \"F000\" checked) and drives it on a headless AutoCAD/Civil 3D application.\n\n"
      "Example: kdhost run data/sample-road.xml --out out/sample"};
  cli.footer(kExitStatuses);
  cli.require_subcommand(1);

  host::CRunOptions run;
  run.modulePath = host::DefaultModulePath();
  auto* runCommand = cli.add_subcommand(
      "run",
      "Read INPUT (LandXML 1.0 to 1.2), write its alignments and their layout profiles through the\n"
      "module's host interface into a headless drawing, read everything back through the same\n"
      "interface and write into the output folder: drawing.dxf (the drawing), design.xml (LandXML\n"
      "1.2 of what was read back), plan.svg (the alignments in plan), profile-NAME.svg (one per\n"
      "profile) and report.md (lengths, stations, counts, what was replaced or left out, and the\n"
      "largest difference between input and read-back). The interface carries lines and arcs only:\n"
      "each spiral is replaced by the fewest arcs that stay within the spiral tolerance and join\n"
      "tangentially. Station equations and surface profiles cannot be carried and are reported.\n"
      "Progress shows on a terminal only.\n"
      "Example: kdhost run data/sample-road.xml --out out/sample --spiral-tolerance 0.0005 --step 5");
  runCommand->add_option("INPUT", run.input, "LandXML file with the design data")->required();
  runCommand->add_option("--out", run.outputFolder, "Output folder (made if absent; files of the same names are replaced)")
      ->required();
  runCommand
      ->add_option("--spiral-tolerance", run.spiralTolerance,
                   "Largest distance, in drawing units, between a spiral and the arcs that replace it "
                   "(at least 1e-6)")
      ->capture_default_str();
  runCommand->add_option("--step", run.step, "Station step at which profiles are sampled back, in drawing units")
      ->capture_default_str();
  runCommand->add_option("--module", run.modulePath, "Path of the module library")->capture_default_str();

  std::string inspectPath;
  auto* inspectCommand = cli.add_subcommand(
      "inspect",
      "Summarise a LandXML file without the module: version, units, alignments with their\n"
      "elements, station equations and profiles, surfaces, and problems (what run could not carry,\n"
      "elements that disagree with each other, profiles beyond their alignment).\n"
      "Example: kdhost inspect data/sample-road.xml");
  inspectCommand->add_option("FILE", inspectPath, "LandXML file")->required();

  std::string checkModule = host::DefaultModulePath();
  std::string checkOptions;
  auto* checkCommand = cli.add_subcommand(
      "check",
      "Start a headless application, load the module, check interface version 3 and platform\n"
      "\"F000\", create and initialise a session, report what happened, free everything.\n"
      "Example: kdhost check --options no-roadway");
  checkCommand->add_option("--module", checkModule, "Path of the module library")->capture_default_str();
  checkCommand->add_option("--options", checkOptions,
                           "Start options of the headless application, comma-separated: no-civil, no-land, "
                           "no-roadway, root=DIR");

  try {
    cli.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    const int status = cli.exit(e);
    return status == 0 ? host::kExitDone : host::kExitUsage;
  }
  if (runCommand->parsed()) return host::RunDesign(run);
  if (inspectCommand->parsed()) return host::InspectFile(inspectPath);
  if (checkCommand->parsed()) return host::CheckModule(checkModule, checkOptions);
  return host::kExitUsage;
}
