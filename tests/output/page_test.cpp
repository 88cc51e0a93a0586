#include "output/page.h"

#include "support.h"

namespace trimora::rooms {
namespace {

// Whatever a name holds: it stays text, and what is no UTF-8 does not spoil the page.
TEST(Page, HoldsAnyText) {
  const std::pair<const char*, const char*> cases[] = {
      {"a\"b\\c\td", R"("a\"b\\c\u0009d")"},
      {"</script><!--&", R"("\u003c/script\u003e\u003c!--\u0026")"},
      {"\u00e9\u20ac\U0001F600", "\"\u00e9\u20ac\U0001F600\""},
      {"\xc3<\xe2\x82", R"("\ufffd\u003c\ufffd\ufffd")"},               // cut off
      {"\xc0\xbc\xed\xa0\x80", R"("\ufffd\ufffd\ufffd\ufffd\ufffd")"},  // too long, and half a character
      {"\xf4\x90\x80\x80", R"("\ufffd\ufffd\ufffd\ufffd")"},
  };
  for (const auto& [text, json] : cases) {
    EXPECT_EQ(written_by([&, text = text](OutputFile& out) { put_json(out, text); }), json);
  }
}

TEST(Page, IsSmall) {
  const std::string page = written_by([](OutputFile& out) {
    begin_page(out);
    end_page(out);
  });
  EXPECT_LE(page.size(), 60'000U);
  EXPECT_EQ(page.find("://"), page.npos) << "it needs a connection";
}

#ifndef _WIN32
TEST(Page, LinksFromItsFolder) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"page.html", "a.htm", "a.htm"},
      {"page.html", "./x/../y/a.htm", "y/a.htm"},
      {"out/page.html", "a.htm", "../a.htm"},
      {"out/page.html", "out/a.htm", "a.htm"},
      {"/p/page.html", "/q/r/a.htm", "../q/r/a.htm"},
      {"page.html", "javascript:alert(1).htm", "javascript%3Aalert%281%29.htm"},
      {"page.html", "a#b?%41 \"<\u00e9.htm", "a%23b%3F%2541%20%22%3C%C3%A9.htm"},
  };
  for (const auto& [page, file, address] : cases) EXPECT_EQ(Addresses(page).of(file), address) << page;
}
#endif

}  // namespace
}  // namespace trimora::rooms
