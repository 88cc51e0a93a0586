#include "batch/overview.h"

#include <charconv>
#include <string_view>

#include "output/forms.h"
#include "output/page.h"

namespace trimora::rooms {

namespace {

/// Writes the members of objects and lists, with commas between them.
class Json {
 public:
  explicit Json(OutputFile& out) : out_(out) {}

  void open(char bracket) {
    comma();
    out_.put(bracket);
    first_ = true;
  }
  void close(char bracket) {
    out_.put(bracket);
    first_ = false;
  }
  void name(std::string_view name) {
    comma();
    put_json(out_, name);
    out_.put(':');
    first_ = true;  // its value follows without a comma
  }
  void text(std::string_view text) {
    comma();
    put_json(out_, text);
  }
  void number(long long number) {
    comma();
    char* to = out_.room(24);
    out_.filled(std::to_chars(to, to + 24, number).ptr);
  }
  void null() {
    comma();
    out_.put("null");
  }
  void line() { out_.put('\n'); }

  template <typename All, typename Each>
  void list(const All& all, Each each) {
    open('[');
    for (const auto& one : all) each(one);
    close(']');
  }

 private:
  void comma() {
    if (!first_) out_.put(',');
    first_ = false;
  }
  OutputFile& out_;
  bool first_ = true;
};

void put_about(Json& json, const Overview& about, Addresses& addresses) {
  const auto text = [&](const std::string& each) { json.text(each); };
  json.name("overview");
  json.number(1);
  json.name("program");
  json.text(about.program);
  json.name("name");
  json.text(about.name);
  json.name("command");
  json.list(about.command, text);
  json.name("settings");
  json.list(about.parameters, [&](const Parameter& each) {
    json.list(std::vector{each.option, each.value, each.meaning}, text);
  });
  json.name("notes");
  json.list(about.notes, text);
  json.name("files");
  json.list(about.files, [&](const std::string& path) { json.list(std::vector{path, addresses.of(path)}, text); });
}

void put_table(Json& json, const std::vector<TableRow>& rows) {
  json.name("table");
  json.open('{');
  json.name("columns");
  json.list(table_columns(), [&](const std::string& title) { json.text(title); });
  json.name("rows");
  json.list(rows, [&](const TableRow& row) {
    json.line();
    json.open('[');
    json.text(row.alignment);
    for (const long long number : numbers_of(row)) number < 0 ? json.null() : json.number(number);
    json.text(status_of(row));
    json.text(row.message);
    json.close(']');
  });
  json.close('}');
}

void put_counts(Json& json, const Together& together) {
  json.name("counts");
  if (together.chosen.empty()) return json.null();
  const Counts counts = summary(together.occupancy, together.row, together.chosen, together.name).counts;
  const std::pair<std::string_view, long long> each[] = {{"letters", counts.letters},
                                                         {"unknown", counts.unknown},
                                                         {"gaps", counts.gaps},
                                                         {"end_gaps", counts.end_gaps},
                                                         {"absent", counts.absent}};
  json.open('{');
  for (const auto& [name, number] : each) {
    json.name(name);
    json.number(number);
  }
  json.close('}');
}

void put_occupancy(Json& json, const std::vector<TableRow>& rows, const Together& together) {
  const Occupancy& occupancy = together.occupancy;
  json.name("occupancy");
  if (together.chosen.empty()) return json.null();
  json.open('{');
  json.name("species");
  json.list(together.chosen, [&](int s) { json.text(plain_name(together.name[s])); });
  json.name("genes");
  json.open('[');
  for (std::size_t r = 0, g = 0; r < rows.size() && g < occupancy.genes(); ++r) {
    if (rows[r].alignment != occupancy.path(g)) continue;
    json.number(static_cast<long long>(r));
    ++g;
  }
  json.close(']');
  json.name("width");
  json.open('[');
  for (std::size_t g = 0; g < occupancy.genes(); ++g) json.number(occupancy.width(g));
  json.close(']');
  json.name("letters");
  json.list(together.chosen, [&](int s) {
    json.line();
    json.open('[');
    for (std::size_t g = 0; g < occupancy.genes(); ++g) {
      const int i = together.row(g, s);
      i == 0 ? json.null() : json.number(occupancy.counts(g, i).letters);
    }
    json.close(']');
  });
  json.close('}');
}

}  // namespace

void write_overview(OutputFile& out, const Overview& about, const std::vector<TableRow>& rows,
                    const std::function<std::string(std::size_t row)>& report, const Together& together) {
  begin_page(out);
  Addresses addresses(about.path);
  Json json(out);
  json.open('{');
  put_about(json, about, addresses);
  put_counts(json, together);
  put_table(json, rows);
  json.name("reports");
  json.open('[');
  for (std::size_t r = 0; r < rows.size(); ++r) {
    const std::string path = report(r);
    path.empty() ? json.null() : json.text(addresses.of(path));
  }
  json.close(']');
  put_occupancy(json, rows, together);
  json.close('}');
  end_page(out);
}

}  // namespace trimora::rooms
