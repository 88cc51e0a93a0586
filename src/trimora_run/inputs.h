// The files that the command line names: alignments, folders of them, lists of them; and their coding sequences.
#pragma once
#include <optional>
#include <string>
#include <vector>

#include "trimora_run/settings.h"

namespace trimora::rooms {

/// What the files that were named hold.
struct Named {
  std::vector<std::string> paths;
  std::vector<std::string> others;  // files in folders that are no alignments
  std::vector<std::string> decided;
  std::optional<std::string> list;  // the one file that was named is a list
  bool several = false;             // several files, or a folder
};

/// Fails    not_readable, for a folder or a list
Named named_files(const Settings& settings);

/// The files that --codons names: those of a folder or a list, or one.
struct CodingFiles {
  std::vector<std::string> paths;
  bool list = false;
};
CodingFiles coding_files(const std::string& path);

/// Whether it can be opened twice. A missing path counts as a file.
bool is_file(const std::string& path);

/// The path of a file in a folder; the name alone where there is none.
std::string in_folder(const std::string& folder, const std::string& name);

}  // namespace trimora::rooms
