// The output folder of a run. Files are written into a hidden staging folder inside it and
// renamed into place only when the whole run has succeeded; a run that fails or is abandoned
// leaves the folder as it found it (and removes it again if it made it).
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace host {

class COutputFolder {
public:
  COutputFolder() = default;
  ~COutputFolder();
  COutputFolder(const COutputFolder&) = delete;
  COutputFolder& operator=(const COutputFolder&) = delete;

  // Makes the folder (and its parents) if absent, and the staging folder in it.
  bool Open(const std::filesystem::path& folder, std::string& error);
  // Where to write the output `name` until Commit; the name is remembered.
  std::filesystem::path Staged(const std::string& name);
  bool Write(const std::string& name, std::string_view content, std::string& error);
  // Moves every staged file into the folder, replacing files of the same names.
  bool Commit(std::string& error);
  const std::vector<std::string>& names() const { return names_; }

private:
  void Abandon();

  std::filesystem::path folder_;
  std::filesystem::path staging_;
  std::vector<std::filesystem::path> madeFolders_;  // folders Open made, deepest last
  std::vector<std::string> names_;
  bool committed_ = false;
};

}  // namespace host
