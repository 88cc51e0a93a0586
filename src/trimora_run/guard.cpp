#include "trimora_run/guard.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <unordered_map>
#include <unordered_set>

#include "batch/concatenation.h"
#include "ground/path.h"
#include "ground/system_path.h"
#include "input/letters.h"
#include "output/file_names.h"
#include "output/columns.h"
#include "batch/partitions.h"

namespace trimora::rooms {

namespace fs = std::filesystem;

namespace {

/// Where files really are: two paths of one file have one place, unless it has several hard links. Most files of a batch
/// share their folder, which is looked up once.
class Places {
 public:
  /// The place of `path`, also when no file is there yet.
  std::string of(const std::string& path) {
    std::error_code error;
    if (fs::is_symlink(systempath(path), error)) {
      const fs::path target = fs::canonical(systempath(path), error);
      if (!error) return place(plainpath(target));
    }
    const SplitPath split = getpath(path);
    const auto [folder, fresh] = folders_.try_emplace(split.path_file);
    if (fresh) {
      const fs::path whole = fs::absolute(systempath(split.path_file.empty() ? "." : split.path_file), error);
      folder->second = plainpath(fs::weakly_canonical(whole, error));
    }
    return place(folder->second + '/' + split.name_file);
  }

 private:
  static std::string place(std::string path) {
#ifdef _WIN32  // where capitals do not make another file, and either bar separates
    std::transform(path.begin(), path.end(), path.begin(), [](char c) { return c == '\\' ? '/' : lower(c); });
#endif
    return path;
  }

  std::unordered_map<std::string, std::string> folders_;
};

bool hardlinked(const std::string& path) {
  std::error_code error;
  const auto links = fs::hard_link_count(systempath(path), error);
  return !error && links > 1;
}

void addforms(std::vector<std::string>& results, const std::string& name, const Forms& forms) {
  for (const Form form : forms) results.push_back(name + std::string(ending(form)));
}

}  // namespace

std::vector<std::string> resultsof(const OutputState& run, const Forms& forms, bool columns) {
  std::vector<std::string> results;
  if (run.tog_seqfile == 1) addforms(results, seqfile(run), forms);
  if (run.tog_viewfile != noreport) results.push_back(viewfile(run));
  if (run.tog_maskfile == 1) results.push_back(maskfile(run));
  if (run.tog_psfile == 1) results.push_back(psfile(run));
  if (run.tog_ncbfile == 1) addforms(results, ncbfile(run), forms);
  if (run.tog_ungappedfile == 1) addforms(results, ungappedfile(run), forms);
  if (columns) results.push_back(columnsfile(run));
  return results;
}

std::vector<std::string> concatenationsof(const BatchState& run, const Forms& forms, bool partitions) {
  std::vector<std::string> names;
  if (run.tog_sb == 0) return names;
  if (run.tog_allfile == 1) names.push_back(allfile(run));
  if (run.tog_allfile_init == 1) names.push_back(allfile_init(run));
  if (run.tog_allungfile == 1) names.push_back(allungfile(run));
  std::vector<std::string> results;
  for (const std::string& name : names) {
    addforms(results, name, forms);
    if (partitions) results.insert(results.end(), {raxmlfile(name), nexusfile(name)});
  }
  return results;
}

std::optional<std::pair<std::string, std::string>> samebasename(const std::vector<std::string>& paths) {
  std::unordered_map<std::string, std::string> names;
  for (const std::string& path : paths) {
    const auto [entry, fresh] = names.try_emplace(getpath(path).name_file, path);
    if (!fresh) return {{entry->second, path}};
  }
  return std::nullopt;
}

std::optional<Clash> overwritten(const std::vector<std::string>& results, const std::vector<std::string>& inputs) {
  Places places;
  std::unordered_map<std::string, std::string> inputat;
  std::vector<std::string> linkedinputs;
  for (const std::string& input : inputs) {
    std::error_code unknown;
    if (!fs::exists(systempath(input), unknown)) continue;
    inputat.try_emplace(places.of(input), input);
    if (hardlinked(input)) linkedinputs.push_back(input);
  }
  std::unordered_set<std::string> resultsat;
  for (const std::string& result : results) {
    const std::string place = places.of(result);
    if (const auto found = inputat.find(place); found != inputat.end()) return {{result, found->second}};
    if (!resultsat.insert(place).second) return {{result, ""}};
    if (linkedinputs.empty() || !hardlinked(result)) continue;
    for (const std::string& input : linkedinputs) {
      std::error_code error;
      if (fs::equivalent(systempath(result), systempath(input), error)) return {{result, input}};
    }
  }
  return std::nullopt;
}

}  // namespace trimora::rooms
