// The module trimora._core: what the Python files of the package call. They check arguments and hand on plain values.
// Words     kind, gaps, form: a number, the place of the choice in the enumeration of the header
// Counting  sequences and columns from 0
// Names     bytes of a file that are not UTF-8 become lone surrogates in Python, and these the same bytes again
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <cstddef>
#include <exception>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ground/terminal.h"
#include "trimora/trimora.h"
#include "trimora_run/entry.h"
#include "trimora_run/terminal.h"

namespace py = pybind11;
using trimora::Alignment;
using without_gil = py::call_guard<py::gil_scoped_release>;

namespace {

py::str text_of(std::string_view bytes) {
  PyObject* text = PyUnicode_DecodeUTF8(bytes.data(), static_cast<py::ssize_t>(bytes.size()), "surrogateescape");
  if (text == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::str>(text);
}

std::string bytes_of(const py::str& text) {
  PyObject* bytes = PyUnicode_AsEncodedString(text.ptr(), "utf-8", "surrogateescape");
  if (bytes == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::bytes>(bytes);
}

using Strings = std::vector<std::string>;

Strings texts_of(const py::list& names) {
  Strings all;
  for (const py::handle name : names) all.push_back(bytes_of(py::reinterpret_borrow<py::str>(name)));
  return all;
}

/// The letters of one object at a time, in its own memory wherever they are side by side there.
class Letters {
 public:
  /// Returns a view that lives until the next call.
  std::string_view in(const py::handle& row) {
    if (PyUnicode_Check(row.ptr())) return in_text(row);
    if (PyObject_CheckBuffer(row.ptr()) != 0) return in_buffer(py::reinterpret_borrow<py::buffer>(row));
    if (!py::hasattr(row, "__bytes__")) refuse(row);
    kept_ = py::reinterpret_steal<py::object>(PyObject_Bytes(row.ptr()));
    if (!kept_) throw py::error_already_set();
    return in_buffer(py::reinterpret_borrow<py::buffer>(kept_));
  }

 private:
  static std::string_view in_text(const py::handle& text) {
    py::ssize_t size = 0;
    const char* letters = PyUnicode_AsUTF8AndSize(text.ptr(), &size);
    if (letters == nullptr) throw py::error_already_set();
    return {letters, static_cast<std::size_t>(size)};
  }

  std::string_view in_buffer(const py::buffer& buffer) {
    info_ = buffer.request();
    if (info_.itemsize != 1 || info_.ndim != 1) refuse(buffer);
    const auto* first = static_cast<const char*>(info_.ptr);
    if (info_.strides[0] == 1) return {first, static_cast<std::size_t>(info_.size)};
    gathered_.clear();
    for (py::ssize_t k = 0; k < info_.size; ++k) gathered_ += first[k * info_.strides[0]];
    return gathered_;
  }

  [[noreturn]] static void refuse(const py::handle& row) {
    throw py::type_error("the letters of a sequence have to be text or bytes, not " +
                         std::string(py::str(py::type::handle_of(row).attr("__name__"))));
  }

  py::object kept_;
  py::buffer_info info_;
  std::string gathered_;
};

std::optional<trimora::Kind> kind_of(std::optional<int> kind) {
  return kind ? std::optional(static_cast<trimora::Kind>(*kind)) : std::nullopt;
}

/// An alignment of what Python holds: the letters are copied while no other thread of Python can change them.
Alignment from_rows(const py::list& names, const py::list& rows, std::optional<int> kind) {
  const Strings all = texts_of(names);
  Letters letters;
  return Alignment::from_rows(
      all, [&](std::size_t i) { return letters.in(rows[i]); }, kind_of(kind));
}

py::list names_of(const Alignment& ali) {
  py::list names;
  for (std::size_t i = 0; i < ali.size(); ++i) names.append(text_of(ali.name(i)));
  return names;
}

py::list sequences_of(const Alignment& ali) {
  py::list sequences;
  for (std::size_t i = 0; i < ali.size(); ++i) sequences.append(text_of(ali.row(i)));
  return sequences;
}

/// A selection with what it was made of: reasons are found when someone asks for them.
struct Selection {
  Alignment ali;
  trimora::Parameters parameters;
  trimora::Selection found;
};

using Share = std::optional<std::pair<int, bool>>;  // a number of sequences, or of per cent

std::optional<trimora::Sequences> sequences_in(const Share& share) {
  return share ? std::optional(trimora::Sequences{share->first, share->second}) : std::nullopt;
}

/// What is not given is as the preset says.
Selection selected(const Alignment& ali, const std::string& preset, std::optional<int> kind, std::optional<int> gaps,
                   std::optional<int> b0, Share b1, Share b2, std::optional<int> b3, std::optional<int> b4,
                   bool similarity) {
  trimora::Parameters parameters = trimora::preset(preset);
  parameters.kind = kind_of(kind);
  if (gaps) parameters.gaps = static_cast<trimora::Gaps>(*gaps);
  if (b0) parameters.b0 = b0;
  if (b1) parameters.b1 = sequences_in(b1);
  if (b2) parameters.b2 = sequences_in(b2);
  if (b3) parameters.b3 = *b3;
  if (b4) parameters.b4 = *b4;
  parameters.similarity = similarity;
  return {ali, parameters, trimora::select(ali, parameters)};
}

/// The numbers as a read-only array on their own memory, which belongs to `owner`; as a list where there is no numpy.
template <typename Number>
py::object numbers(const std::vector<Number>& values, const py::object& owner, bool numpy) {
  if (!numpy) return py::cast(values);
  py::array_t<Number> array(static_cast<py::ssize_t>(values.size()), values.data(), owner);
  array.attr("flags").attr("writeable") = false;
  return array;
}

/// The reasons as objects of Python, the same words only once.
py::list reasons_of(const Selection& selection) {
  std::vector<std::string> all;
  {
    const py::gil_scoped_release others_run;
    all = trimora::reasons(selection.ali, selection.parameters);
  }
  std::map<std::string, py::str> known;
  py::list reasons;
  for (const std::string& words : all) reasons.append(known.try_emplace(words, words).first->second);
  return reasons;
}

/// The alignment, the columns of each part, which parts are left out, and the letters of each sequence in each.
py::tuple joined(const std::vector<Alignment>& alignments, int match, const py::list& rule, const py::list& species,
                 const py::list& new_names, const Share& min_species, int min_columns, const Share& min_genes,
                 bool numpy) {
  trimora::Joining joining;
  joining.match = static_cast<trimora::Match>(match);
  const Strings rules = texts_of(rule), old_names = texts_of(species), names = texts_of(new_names);
  joining.name_begin = rules.at(0);
  joining.name_end = rules.at(1);
  joining.name_parts = rules.at(2);
  for (std::size_t k = 0; k < old_names.size(); ++k) joining.species.emplace_back(old_names[k], names.at(k));
  joining.min_species = sequences_in(min_species);
  joining.min_columns = min_columns;
  joining.min_genes = sequences_in(min_genes);
  const trimora::Supermatrix all = [&] {
    const py::gil_scoped_release others_run;
    return trimora::supermatrix(alignments, joining);
  }();
  py::object occupancy = py::cast(all.occupancy);
  if (numpy) {
    py::array_t<int> array({all.occupancy.size(), all.parts.size()});
    auto cells = array.mutable_unchecked<2>();
    for (py::ssize_t i = 0; i < cells.shape(0); ++i) {
      const std::vector<int>& row = all.occupancy[static_cast<std::size_t>(i)];
      for (py::ssize_t k = 0; k < cells.shape(1); ++k) cells(i, k) = row[static_cast<std::size_t>(k)];
    }
    occupancy = std::move(array);
  }
  return py::make_tuple(all.alignment, all.parts, all.left_out, occupancy);
}

/// Coding sequences of Python, one to each name.
trimora::CodingSequences coding_sequences(const py::list& names, const py::list& rows) {
  trimora::CodingSequences coding{texts_of(names), {}};
  Letters letters;
  for (const py::handle row : rows) coding.sequences.emplace_back(letters.in(row));
  return coding;
}

int run(std::vector<std::string> arguments) {
  trimora::rooms::open_standard_streams();
  [[maybe_unused]] const Terminal terminal;
  std::vector<char*> argv;
  for (std::string& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);
  return trimora::rooms::trimora_run_main(static_cast<int>(arguments.size()), argv.data());
}

/// What the library throws becomes trimora.Error or, when an argument is to blame, ValueError.
void translate(std::exception_ptr thrown) {
  try {
    std::rethrow_exception(thrown);
  } catch (const trimora::Error& error) {
    const py::str what = text_of(error.what());
    if (error.kind == trimora::Error::Kind::bad_argument) {
      PyErr_SetObject(PyExc_ValueError, what.ptr());
      return;
    }
    const py::object type = py::module_::import("trimora._error").attr("Error");
    const py::object sequence = error.sequence < 0 ? py::object(py::none()) : py::int_(error.sequence);
    const py::object name = error.name.empty() ? py::object(py::none()) : text_of(error.name);
    PyErr_SetObject(type.ptr(), type(what, trimora::name_of(error.kind), sequence, name).ptr());
  }
}

}  // namespace

PYBIND11_MODULE(_core, module) {
  py::register_exception_translator(translate);
  module.attr("__version__") = trimora::version();

  py::class_<Alignment>(module, "Alignment")
      .def("__len__", &Alignment::size)
      .def_property_readonly("width", &Alignment::width)
      .def_property_readonly("names", names_of)
      .def_property_readonly("sequences", sequences_of)
      .def_property_readonly("kind",
                             [](const Alignment& ali) { return ali.kind() ? static_cast<int>(*ali.kind()) : -1; })
      .def_property_readonly("format", &Alignment::format)
      .def("text", [](const Alignment& ali, int form) { return text_of(write(ali, static_cast<trimora::Form>(form))); })
      .def(
          "write",
          [](const Alignment& ali, const std::string& path, int form) {
            write(ali, static_cast<trimora::Form>(form), path);
          },
          without_gil());
  module.def("read", &trimora::read, without_gil());
  module.def(
      "read_text", [](std::string_view text) { return trimora::read_text(text); }, without_gil());
  module.def("from_rows", from_rows);

  py::class_<Selection>(module, "Selection")
      .def("columns", [](const py::object& self,
                         bool numpy) { return numbers(self.cast<const Selection&>().found.columns, self, numpy); })
      .def("scores", [](const py::object& self,
                        bool numpy) { return numbers(self.cast<const Selection&>().found.scores, self, numpy); })
      .def_property_readonly("blocks", [](const Selection& selection) { return selection.found.blocks; })
      .def_property_readonly("classes",
                             [](const Selection& selection) {
                               return std::string(selection.found.classes.begin(), selection.found.classes.end());
                             })
      .def("reasons", reasons_of)
      .def_property_readonly("kind", [](const Selection& selection) { return static_cast<int>(selection.found.kind); })
      .def_property_readonly("b1", [](const Selection& selection) { return selection.found.b1; })
      .def_property_readonly("b2", [](const Selection& selection) { return selection.found.b2; })
      .def(
          "trim", [](const Selection& selection, const Alignment& ali) { return trimora::trim(ali, selection.found); },
          without_gil())
      .def_property_readonly("alignment", [](const Selection& selection) { return selection.ali; });
  module.def("select", selected, without_gil());

  py::class_<trimora::CodingSequences>(module, "CodingSequences");
  module.def("coding_sequences", coding_sequences);
  module.def("read_coding_sequences", &trimora::read_coding_sequences, without_gil());
  module.def(
      "codons",
      [](const Alignment& proteins, const trimora::CodingSequences& coding, int code) {
        return trimora::codons(proteins, coding.names, coding.sequences, code);
      },
      without_gil());
  module.def(
      "selected_codons",
      [](const Selection& selection, const trimora::CodingSequences& coding, int code) {
        return trimora::codons(selection.ali, selection.found, coding, code);
      },
      without_gil());
  module.def("supermatrix", joined);

  module.def("run", run, without_gil());
}
