// The page of an overview: one file of HTML that needs no other and holds its data as JSON. What it looks like is in
// overview/; the build puts it into the program.
#pragma once
#include <string>
#include <string_view>

#include "output/output_file.h"

namespace trimora::rooms {

/// Write all of the page before its data, and all after them.
void begin_page(OutputFile& out);
void end_page(OutputFile& out);

/// Write text as JSON, in quotation marks. Nothing in it can end the element of the page that holds it; bytes that are no
/// UTF-8 become U+FFFD.
void put_json(OutputFile& out, std::string_view text);

/// Tells the address of a file as a page links to it: counted from the folder of the page.
class Addresses {
 public:
  explicit Addresses(const std::string& page);
  std::string of(const std::string& path);

 private:
  std::string from_;    // the folder of the page, whole
  std::string folder_;  // of the last file, and its address: most files share theirs
  std::string address_;
  bool known_ = false;
};

}  // namespace trimora::rooms
