// Any lines as a session: the file the program is started with, or none, and what is typed into the menus.
#include "fuzz.h"
#include "trimora/entry.h"

using namespace trimora::rooms;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  if (foreign(text)) return 0;
  const std::size_t end = std::min(text.find('\n'), size);
  const std::string file = text.substr(0, std::min(end, text.find('\0')));
  files_after(samples_and("typed", text.substr(std::min(end + 1, size))), [&] {
    must(std::freopen("typed", "r", stdin) != nullptr, "standard input can be replaced");
    std::vector<std::string> words = {"trimora"};
    if (!file.empty()) words.push_back(file);
    trimora_main(static_cast<int>(words.size()), argv_of(words).data());
  });
  return 0;
}
