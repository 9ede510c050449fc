#include "host/RunCommand.h"

#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <set>

#include "headless/api/headless.h"
#include "host/DesignXml.h"
#include "host/ExitCodes.h"
#include "host/HostText.h"
#include "host/OutputFolder.h"
#include "host/Report.h"
#include "host/RunModel.h"
#include "host/Session.h"
#include "host/SvgPlan.h"
#include "host/SvgProfile.h"
#include "landxml/LandXml.h"

namespace host {
namespace {

// Progress lines on a terminal; nothing when standard error goes to a file or a pipe.
class CProgress {
public:
  CProgress() : enabled_(::isatty(STDERR_FILENO) == 1), start_(std::chrono::steady_clock::now()) {}
  void Say(const std::string& what) const {
    if (!enabled_) return;
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start_;
    std::fprintf(stderr, "kdhost: %7.2f s  %s\n", elapsed.count(), what.c_str());
  }
  bool enabled() const { return enabled_; }

private:
  bool enabled_;
  std::chrono::steady_clock::time_point start_;
};

int Fail(int code, const std::string& message) {
  std::fprintf(stderr, "kdhost: %s\n", message.c_str());
  return code;
}

// The name itself when free, else "name (2)", "name (3)", ...; an empty name becomes `fallback`.
std::string UniqueName(const std::string& wanted, const std::string& fallback, std::set<std::string>& used) {
  const std::string base = wanted.empty() ? fallback : wanted;
  std::string name = base;
  for (int k = 2; used.count(name); ++k) name = base + " (" + std::to_string(k) + ")";
  used.insert(name);
  return name;
}

// Plans every alignment and its profiles. The status is not kExitDone (and `error` says why)
// when an alignment cannot be carried at all or the step would stroke a profile into too many
// samples.
int PlanRun(const landxml::CModel& model, const CRunOptions& options, CRunResult& run, std::string& error) {
  std::set<std::string> alignmentNames;
  for (std::size_t i = 0; i < model.alignments.size(); ++i) {
    const landxml::CAlignment& input = model.alignments[i];
    CAlignmentRun a;
    a.input = &input;
    a.name = UniqueName(input.name, "Alignment " + std::to_string(i + 1), alignmentNames);
    if (a.name != input.name)
      a.notes.push_back("alignment " + std::to_string(i + 1) + " (\"" + input.name + "\") is named \"" + a.name +
                        "\": the drawing needs distinct, non-empty names");
    a.description = input.desc;
    a.plan = PlanAlignment(input, options.spiralTolerance);
    if (!a.plan.error.empty()) {
      error = options.input + ": alignment \"" + a.name + "\": " + a.plan.error;
      return kExitInput;
    }
    a.notCarried = a.plan.notCarried;
    a.notes.insert(a.notes.end(), a.plan.notes.begin(), a.plan.notes.end());

    std::set<std::string> profileNames;
    for (const landxml::CProfile& profile : input.profiles) {
      for (const landxml::CProfAlign& layout : profile.layouts) {
        CProfileRun p;
        p.name = UniqueName(layout.name.empty() ? profile.name : layout.name,
                            "Profile " + std::to_string(profileNames.size() + 1), profileNames);
        p.description = layout.desc.empty() ? profile.desc : layout.desc;
        p.plan = PlanProfile(layout);
        for (const std::string& item : p.plan.notCarried) a.notCarried.push_back("profile \"" + p.name + "\": " + item);
        if (p.plan.pvis.size() < 2) continue;
        const double range = p.plan.pvis.back().GetStation() - p.plan.pvis.front().GetStation();
        if (std::fabs(range) / options.step > kMaxProfileSamples) {
          error = "--step " + Short(options.step) + " would sample profile \"" + p.name + "\" (" + Fixed(range, 3) +
                  " long) into more than " + Short(kMaxProfileSamples) + " points";
          return kExitUsage;
        }
        a.profiles.push_back(std::move(p));
      }
      for (const landxml::CProfSurf& surface : profile.surfaceProfiles)
        a.notCarried.push_back("surface profile \"" + surface.name + "\" (" + std::to_string(surface.points.size()) +
                               " points): the interface carries layout profiles only");
    }
    run.alignments.push_back(std::move(a));
  }
  for (const landxml::CSurface& surface : model.surfaces)
    run.notCarried.push_back("surface \"" + surface.name + "\" (" + std::to_string(surface.points.size()) +
                             " points): run does not carry surfaces");
  return kExitDone;
}

// Creates the alignment with its geometry, stationing and profiles. False when the module
// refuses the alignment itself; a refused profile is reported and the run goes on.
bool WriteAlignment(CModuleSession& session, CAlignmentRun& a, std::string& error) {
  const std::wstring name = Widen(a.name);
  if (!session.CreateAlignment(name, Widen(a.description))) {
    error = "the module did not create alignment \"" + a.name + "\"";
    return false;
  }
  const std::unique_ptr<ICivil3dAlignment> alignment = session.GetAlignment(name);
  if (!alignment) {
    error = "the module did not find alignment \"" + a.name + "\" after creating it";
    return false;
  }
  const std::vector<CC3dCurve> records = ToRecords(a.plan.curves);
  if (!alignment->SetAlignmentGeometry(records.data(), static_cast<int>(records.size()))) {
    error = "the module refused the geometry of alignment \"" + a.name + "\"";
    return false;
  }
  alignment->SetStartingStation(a.plan.startStation);

  for (auto it = a.profiles.begin(); it != a.profiles.end();) {
    const std::wstring profileName = Widen(it->name);
    std::unique_ptr<ICivil3dProfile> profile;
    if (alignment->CreateProfile(profileName.c_str(), Widen(it->description).c_str()))
      profile.reset(alignment->GetProfile(profileName.c_str()));
    if (!profile) {
      a.notCarried.push_back("profile \"" + it->name + "\": the module did not create it");
      it = a.profiles.erase(it);
      continue;
    }
    const std::vector<CC3dProfilePVI>& pvis = it->plan.pvis;
    if (!profile->SetProfileGeometry(pvis.data(), static_cast<int>(pvis.size())))
      a.notCarried.push_back("profile \"" + it->name +
                             "\": the module refused its PVIs (SetProfileGeometry returned false); what it kept "
                             "is read back");
    ++it;
  }
  return true;
}

bool ReadBack(CModuleSession& session, CRunResult& run, std::string& error) {
  const std::optional<std::vector<CAlignmentEntry>> listed = session.ListAlignments();
  if (!listed) {
    error = "the module did not list the drawing's alignments";
    return false;
  }
  for (CAlignmentRun& a : run.alignments) {
    const std::wstring name = Widen(a.name);
    bool found = false;
    for (const CAlignmentEntry& entry : *listed) found = found || entry.name == name;
    const std::unique_ptr<ICivil3dAlignment> alignment = found ? session.GetAlignment(name) : nullptr;
    if (!alignment) {
      error = "alignment \"" + a.name + "\" is not among the drawing's alignments after it was written";
      return false;
    }
    const std::optional<std::vector<CC3dCurve>> curves = session.AlignmentGeometry(*alignment);
    if (!curves) {
      error = "the module did not read back the geometry of alignment \"" + a.name + "\"";
      return false;
    }
    for (const CC3dCurve& c : *curves) a.readBack.push_back(FromRecord(c));
    a.startStation = alignment->GetStartingStation();
    a.polylineId = alignment->GetPolylineId();
    if (a.polylineId == 0) a.notes.push_back("the alignment drew no polyline of itself, so drawing.dxf does not show it");
    a.comparison = CompareAlignment(a.plan, a.readBack, a.startStation);

    const std::optional<std::vector<std::wstring>> profileNames = session.ListProfiles(*alignment);
    if (!profileNames) {
      error = "the module did not list the profiles of alignment \"" + a.name + "\"";
      return false;
    }
    for (CProfileRun& p : a.profiles) {
      const std::wstring profileName = Widen(p.name);
      bool listedProfile = false;
      for (const std::wstring& n : *profileNames) listedProfile = listedProfile || n == profileName;
      std::unique_ptr<ICivil3dProfile> profile;
      if (listedProfile) profile.reset(alignment->GetProfile(profileName.c_str()));
      std::optional<std::vector<CC3dProfilePVI>> pvis;
      std::optional<std::vector<CC3dProfilePoint>> samples;
      if (profile) pvis = session.ProfileGeometry(*profile);
      if (pvis) samples = session.StrokedProfile(*profile, run.step);
      if (!pvis || !samples) {
        a.notCarried.push_back("profile \"" + p.name + "\": the module did not read it back");
        continue;
      }
      p.readBack = std::move(*pvis);
      p.samples = std::move(*samples);
      p.comparison = CompareProfile(p.plan.pvis, p.readBack, p.samples);
    }
  }
  return true;
}

// Picture file names: profile-NAME.svg, with the alignment's name put in where two alignments
// have profiles of one name.
void NamePictures(CRunResult& run) {
  std::multiset<std::string> plain;
  for (const CAlignmentRun& a : run.alignments)
    for (const CProfileRun& p : a.profiles) plain.insert(FileSafe(p.name));
  std::set<std::string> used;
  for (CAlignmentRun& a : run.alignments) {
    for (CProfileRun& p : a.profiles) {
      if (p.readBack.empty()) continue;
      std::string stem = "profile-" + FileSafe(p.name);
      if (plain.count(FileSafe(p.name)) > 1) stem = "profile-" + FileSafe(a.name) + "-" + FileSafe(p.name);
      std::string file = stem + ".svg";
      for (int k = 2; used.count(file); ++k) file = stem + "-" + std::to_string(k) + ".svg";
      used.insert(file);
      p.pictureFile = file;
    }
  }
}

int WriteOutputs(CModuleSession& session, CRunResult& run, COutputFolder& folder, const CProgress& progress) {
  std::string error;
  progress.Say("saving the drawing");
  if (HeadlessSaveDxf(session.application(), folder.Staged("drawing.dxf").c_str()) != 0)
    return Fail(kExitOutput, "cannot save the drawing: " + std::string(HeadlessLastError(session.application())));

  progress.Say("writing design.xml");
  std::string xml;
  const landxml::CWriteResult written = landxml::WriteLandXmlText(DesignModel(run), xml);
  if (!written) return Fail(kExitOutput, "cannot write design.xml: " + written.error);
  if (!folder.Write("design.xml", xml, error)) return Fail(kExitOutput, error);

  progress.Say("drawing plan.svg");
  std::vector<CPlanAlignment> plan;
  for (const CAlignmentRun& a : run.alignments) plan.push_back({a.name, a.startStation, a.readBack});
  CPlanPicture planPicture;
  planPicture.title = "Plan: " + std::filesystem::path(run.inputFile).filename().string();
  planPicture.unitName = run.UnitName();
  planPicture.imperial = run.units.IsImperial();
  if (!folder.Write("plan.svg", PlanSvg(plan, planPicture), error)) return Fail(kExitOutput, error);

  NamePictures(run);
  for (const CAlignmentRun& a : run.alignments) {
    for (const CProfileRun& p : a.profiles) {
      if (p.pictureFile.empty()) continue;
      progress.Say("drawing " + p.pictureFile);
      CProfilePicture picture;
      picture.title = "Profile \"" + p.name + "\" of alignment \"" + a.name + "\"";
      picture.unitName = run.UnitName();
      picture.imperial = run.units.IsImperial();
      if (!folder.Write(p.pictureFile, ProfileSvg(p.readBack, p.samples, picture), error))
        return Fail(kExitOutput, error);
    }
  }
  run.outputFiles = folder.names();
  run.outputFiles.push_back("report.md");
  if (!folder.Write("report.md", ReportMarkdown(run), error)) return Fail(kExitOutput, error);
  return kExitDone;
}

}  // namespace

int RunDesign(const CRunOptions& options) {
  if (!(options.spiralTolerance >= kMinSpiralTolerance) || !std::isfinite(options.spiralTolerance))
    return Fail(kExitUsage, "--spiral-tolerance must be at least " + Short(kMinSpiralTolerance) + " (drawing units)");
  if (!(options.step > 0.0) || !std::isfinite(options.step)) return Fail(kExitUsage, "--step must be above 0");
  if (options.outputFolder.empty()) return Fail(kExitUsage, "--out needs a folder");

  const CProgress progress;
  progress.Say("reading " + options.input);
  const landxml::CReadResult read = landxml::ReadLandXml(options.input);
  if (!read) return Fail(kExitInput, read.error);
  const landxml::CModel& model = *read.model;
  if (model.alignments.empty())
    return Fail(kExitInput, options.input + ": holds no alignments, so there is nothing for run to carry");

  CRunResult run;
  run.inputFile = options.input;
  run.modulePath = options.modulePath;
  run.projectName = model.projectName;
  run.units = model.units;
  run.landXmlVersion = model.version;
  run.spiralTolerance = options.spiralTolerance;
  run.step = options.step;
  run.readerNotes = read.notes;
  std::string error;
  progress.Say("replacing spirals by arcs within " + Short(options.spiralTolerance));
  if (const int status = PlanRun(model, options, run, error); status != kExitDone) return Fail(status, error);

  COutputFolder folder;
  if (!folder.Open(options.outputFolder, error)) return Fail(kExitOutput, error);

  progress.Say("starting the headless application and loading " + options.modulePath);
  CModuleSession session;
  switch (session.Start(options.modulePath)) {
    case SessionStart::Started:
      break;
    case SessionStart::NoModule:
      return Fail(kExitModule, session.error());
    case SessionStart::NoApplication:
    case SessionStart::NoSession:
      return Fail(kExitSession, session.error());
  }

  for (std::size_t i = 0; i < run.alignments.size(); ++i) {
    CAlignmentRun& a = run.alignments[i];
    progress.Say("writing alignment " + std::to_string(i + 1) + " of " + std::to_string(run.alignments.size()) + ": \"" +
                 a.name + "\" (" + Count(a.plan.curves.size(), "entity", "entities") + ", " +
                 Count(a.profiles.size(), "profile", "profiles") + ")");
    if (!WriteAlignment(session, a, error)) return Fail(kExitModuleCall, error);
  }
  progress.Say("reading everything back");
  if (!ReadBack(session, run, error)) return Fail(kExitModuleCall, error);

  if (const int status = WriteOutputs(session, run, folder, progress); status != kExitDone) return status;
  if (!folder.Commit(error)) return Fail(kExitOutput, error);
  progress.Say("wrote " + options.outputFolder + ": " + [&] {
    std::string list;
    for (const std::string& f : run.outputFiles) list += (list.empty() ? "" : ", ") + f;
    return list;
  }());

  if (!run.AnythingLeftOut()) return kExitDone;
  std::fprintf(stderr, "kdhost: some of %s could not be carried (see %s/report.md):\n", options.input.c_str(),
               options.outputFolder.c_str());
  for (const std::string& item : run.notCarried) std::fprintf(stderr, "  %s\n", item.c_str());
  for (const CAlignmentRun& a : run.alignments)
    for (const std::string& item : a.notCarried) std::fprintf(stderr, "  alignment \"%s\": %s\n", a.name.c_str(), item.c_str());
  return kExitLeftOut;
}

}  // namespace host
