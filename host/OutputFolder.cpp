#include "host/OutputFolder.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>

namespace host {

namespace fs = std::filesystem;

COutputFolder::~COutputFolder() {
  if (!committed_) Abandon();
}

void COutputFolder::Abandon() {
  std::error_code ec;
  if (!staging_.empty()) fs::remove_all(staging_, ec);
  // Only the folders this run made, and only while they are empty.
  for (auto it = madeFolders_.rbegin(); it != madeFolders_.rend(); ++it) fs::remove(*it, ec);
  staging_.clear();
  madeFolders_.clear();
}

bool COutputFolder::Open(const fs::path& folder, std::string& error) {
  folder_ = folder;
  std::error_code ec;
  std::vector<fs::path> missing;
  for (fs::path p = fs::absolute(folder, ec); !p.empty() && !fs::exists(p, ec); p = p.parent_path()) {
    missing.push_back(p);
    if (p == p.parent_path()) break;
  }
  for (auto it = missing.rbegin(); it != missing.rend(); ++it) {
    if (!fs::create_directory(*it, ec) && ec) {
      error = folder.string() + ": cannot make the folder: " + ec.message();
      Abandon();
      return false;
    }
    madeFolders_.push_back(*it);
  }
  if (!fs::is_directory(folder, ec)) {
    error = folder.string() + ": is not a folder";
    Abandon();
    return false;
  }
  staging_ = folder / (".kdhost-run-" + std::to_string(::getpid()));
  fs::remove_all(staging_, ec);
  if (!fs::create_directory(staging_, ec)) {
    error = folder.string() + ": cannot write in the folder: " + (ec ? ec.message() : "unknown error");
    staging_.clear();
    Abandon();
    return false;
  }
  return true;
}

fs::path COutputFolder::Staged(const std::string& name) {
  names_.push_back(name);
  return staging_ / name;
}

bool COutputFolder::Write(const std::string& name, std::string_view content, std::string& error) {
  const fs::path path = Staged(name);
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (out) out.write(content.data(), static_cast<std::streamsize>(content.size()));
  if (out) out.close();
  if (!out) {
    error = (folder_ / name).string() + ": cannot write: " + std::strerror(errno);
    return false;
  }
  return true;
}

bool COutputFolder::Commit(std::string& error) {
  std::error_code ec;
  for (std::size_t i = 0; i < names_.size(); ++i) {
    fs::rename(staging_ / names_[i], folder_ / names_[i], ec);
    if (ec) {
      error = (folder_ / names_[i]).string() + ": cannot move into place: " + ec.message();
      // No half output: what this run already moved goes again.
      for (std::size_t k = 0; k < i; ++k) fs::remove(folder_ / names_[k], ec);
      return false;
    }
  }
  fs::remove_all(staging_, ec);
  committed_ = true;
  return true;
}

}  // namespace host
