// Reading and writing LandXML. Nothing here throws: every failure is a result with a message.
//
// Read: LandXML 1.0, 1.1 and 1.2, and national profiles that keep the 1.2 schema under their own
// namespace (Inframodel). Encodings: UTF-8 with or without a byte-order mark, US-ASCII and
// ISO-8859-1, as the XML declaration says. What is read: units, alignments (lines, circular
// curves, spirals, station equations, layout and surface profiles) and surfaces (TIN and grid
// definitions, breaklines, boundaries). Everything else in a file is passed over.
//
// Write: LandXML 1.2 in UTF-8, numbers with 17 significant digits, lengths in the model's linear
// unit (or the one asked for) and angles in the units the model's file used, so that a document
// read back gives the same model.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "landxml/Model.h"

namespace landxml {

struct CReadOptions {
  // Convert every length to this unit while reading; nothing keeps the file's unit.
  std::optional<LinearUnit> linearUnit;
};

struct CReadResult {
  // Set exactly when the read succeeded; a failed read builds nothing.
  std::optional<CModel> model;
  // On failure: "<file>: line <n>: <Element>: <what is wrong>" (the line and element are left
  // out only when the fault is in no element, such as an unreadable file).
  std::string error;
  // On success: what the reader assumed or passed over that a user may want to know (a unit
  // taken as the schema's default, a version attribute that disagrees with the namespace,
  // alignment geometry of a kind it does not read).
  std::vector<std::string> notes;

  explicit operator bool() const { return model.has_value(); }
};

// Reads the file at `path`; messages name it as given.
CReadResult ReadLandXml(const std::filesystem::path& path, const CReadOptions& options = {});
// Reads a document held in memory (its bytes, in whatever encoding it declares); messages name
// it `sourceName`.
CReadResult ReadLandXmlText(std::string_view bytes, std::string_view sourceName = "<text>",
                            const CReadOptions& options = {});

struct CWriteOptions {
  // Write lengths in this unit; nothing writes the model's units.linear.
  std::optional<LinearUnit> linearUnit;
};

struct CWriteResult {
  bool ok = false;
  // On failure: "<file>: <what went wrong>" (the file part only when writing a file). A model
  // that cannot be written faithfully fails: a coordinate that is not a finite number, a face
  // naming a point that is not there, text that is not UTF-8 or holds characters XML forbids.
  std::string error;
  explicit operator bool() const { return ok; }
};

// The document as UTF-8 text in `text` (left empty on failure).
CWriteResult WriteLandXmlText(const CModel& model, std::string& text, const CWriteOptions& options = {});
// Writes to a temporary file beside `path` and renames it over `path`, so a reader never sees a
// half-written file and a failed write leaves an existing file as it was.
CWriteResult WriteLandXml(const CModel& model, const std::filesystem::path& path, const CWriteOptions& options = {});

}  // namespace landxml
