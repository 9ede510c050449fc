#include "host/Session.h"

#include "host/HostText.h"

namespace host {
namespace {

// An array the module handed out, given back through its own Free... slot when this goes.
template <class T, void (ICivil3dObject::*Free)(T**)>
class CModuleArray {
public:
  explicit CModuleArray(ICivil3dObject& owner) : owner_(owner) {}
  ~CModuleArray() {
    if (data_ != nullptr) (owner_.*Free)(&data_);
  }
  CModuleArray(const CModuleArray&) = delete;
  CModuleArray& operator=(const CModuleArray&) = delete;
  T** out() { return &data_; }
  int* count() { return &count_; }
  std::vector<T> Copy() const { return data_ && count_ > 0 ? std::vector<T>(data_, data_ + count_) : std::vector<T>{}; }
  const T* data() const { return data_; }
  int size() const { return data_ ? count_ : 0; }

private:
  ICivil3dObject& owner_;
  T* data_ = nullptr;
  int count_ = 0;
};

// A list of names; the counted FreeStrings releases every string and the array.
class CModuleStrings {
public:
  explicit CModuleStrings(ICivil3dObject& owner) : owner_(owner) {}
  ~CModuleStrings() {
    if (data_ != nullptr) owner_.FreeStrings(&data_, count_);
  }
  CModuleStrings(const CModuleStrings&) = delete;
  CModuleStrings& operator=(const CModuleStrings&) = delete;
  wchar_t*** out() { return &data_; }
  int* count() { return &count_; }
  std::vector<std::wstring> Copy() const {
    std::vector<std::wstring> names;
    for (int i = 0; data_ && i < count_; ++i) names.emplace_back(data_[i] ? data_[i] : L"");
    return names;
  }

private:
  ICivil3dObject& owner_;
  wchar_t** data_ = nullptr;
  int count_ = 0;
};

// Alignments go on layer 0, which every drawing has; the module chooses the styles itself.
constexpr const wchar_t* kLayer = L"0";
constexpr const wchar_t* kStyle = L"Basic";
constexpr const wchar_t* kLabelStyleSet = L"_No Labels";

}  // namespace

CModuleSession::~CModuleSession() { Stop(); }

void CModuleSession::Stop() {
  if (session_ != nullptr && module_) module_->FreeSession(&session_);
  session_ = nullptr;
  module_.reset();
  if (app_ != nullptr) HeadlessStop(app_);
  app_ = nullptr;
}

SessionStart CModuleSession::Start(const std::string& modulePath) {
  app_ = HeadlessStart(nullptr);
  if (app_ == nullptr) {
    error_ = std::string("cannot start the headless application: ") + HeadlessLastError(nullptr);
    return SessionStart::NoApplication;
  }
  module_ = std::make_unique<ModuleLoader>(modulePath);
  if (!module_->ok()) {
    error_ = module_->error();
    return SessionStart::NoModule;
  }
  const int version = module_->InterfaceVersion();
  const std::wstring platform = module_->InterfacePlatform();
  if (version != ModuleLoader::kExpectedVersion || platform != ModuleLoader::kExpectedPlatform) {
    error_ = modulePath + " is interface version " + std::to_string(version) + " for platform \"" + Narrow(platform) +
             "\"; this host needs version 3 for platform \"F000\"";
    return SessionStart::NoModule;
  }
  session_ = module_->CreateSession();
  if (session_ == nullptr) {
    error_ = "the module made no session object";
    return SessionStart::NoSession;
  }
  const bool initialized = session_->Initialize(static_cast<CWinApp*>(HeadlessGetWinApp(app_)));
  if (!initialized || !session_->IsInitialized()) {
    error_ = std::string("the session did not initialise: Initialize ") + (initialized ? "succeeded" : "failed") +
             ", but the Civil 3D land and roadway applications are not both available in the headless application";
    return SessionStart::NoSession;
  }
  return SessionStart::Started;
}

bool CModuleSession::CreateAlignment(const std::wstring& name, const std::wstring& description) {
  return session_->CreateAlignment(name.c_str(), description.c_str(), kLayer, kStyle, kLabelStyleSet);
}

std::unique_ptr<ICivil3dAlignment> CModuleSession::GetAlignment(const std::wstring& name) {
  return std::unique_ptr<ICivil3dAlignment>(session_->GetAlignment(name.c_str()));
}

std::optional<std::vector<CAlignmentEntry>> CModuleSession::ListAlignments() {
  CModuleStrings names(*session_);
  CModuleArray<long long, &ICivil3dObject::FreeSessionIds> ids(*session_);
  if (!session_->ListAlignments(names.out(), ids.out(), names.count())) return std::nullopt;
  *ids.count() = *names.count();
  const std::vector<std::wstring> copied = names.Copy();
  const std::vector<long long> idList = ids.Copy();
  std::vector<CAlignmentEntry> entries;
  for (std::size_t i = 0; i < copied.size(); ++i) entries.push_back({copied[i], i < idList.size() ? idList[i] : 0});
  return entries;
}

std::optional<std::vector<CC3dCurve>> CModuleSession::AlignmentGeometry(ICivil3dAlignment& alignment) {
  CModuleArray<CC3dCurve, &ICivil3dObject::FreeCurves> curves(*session_);
  if (!alignment.GetAlignmentGeometry(curves.out(), curves.count())) return std::nullopt;
  return curves.Copy();
}

std::optional<std::vector<std::wstring>> CModuleSession::ListProfiles(ICivil3dAlignment& alignment) {
  CModuleStrings names(*session_);
  if (!alignment.ListProfiles(names.out(), names.count())) return std::nullopt;
  return names.Copy();
}

std::optional<std::vector<CC3dProfilePVI>> CModuleSession::ProfileGeometry(ICivil3dProfile& profile) {
  CModuleArray<CC3dProfilePVI, &ICivil3dObject::FreeProfileVPIs> pvis(*session_);
  if (!profile.GetProfileGeometry(pvis.out(), pvis.count())) return std::nullopt;
  return pvis.Copy();
}

std::optional<std::vector<CC3dProfilePoint>> CModuleSession::StrokedProfile(ICivil3dProfile& profile, double step) {
  CModuleArray<CC3dProfilePoint, &ICivil3dObject::FreeProfilePoints> points(*session_);
  if (!profile.GetStrokedProfile(step, points.out(), points.count())) return std::nullopt;
  return points.Copy();
}

}  // namespace host
