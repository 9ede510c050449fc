// The reader's front door: bytes to UTF-8, XML parsing, the root element's version and
// namespace, the units, and the faults turned into one message.
#include <fstream>
#include <new>

#include "landxml/LandXml.h"
#include "landxml/internal/NumberText.h"
#include "landxml/internal/ReadContext.h"
#include "landxml/internal/TextInput.h"

namespace landxml {
namespace {

using internal::ChildElement;
using internal::CReadContext;
using internal::CReadFault;
using internal::IsElement;
using internal::LocalName;

constexpr std::string_view kLandXmlNamespacePrefix = "http://www.landxml.org/schema/LandXML-";
constexpr std::string_view kReadVersions[] = {"1.0", "1.1", "1.2"};

// Escapes and line ends as XML defines them; point text lives in the element itself (fewer
// nodes, and the bulk of a file is point text).
constexpr unsigned kParseOptions = pugi::parse_default | pugi::parse_embed_pcdata;

bool IsReadVersion(std::string_view v) {
  for (std::string_view known : kReadVersions)
    if (v == known) return true;
  return false;
}

std::string Trimmed(const char* text) {
  std::string_view s(text);
  while (!s.empty() && internal::IsXmlSpace(s.front())) s.remove_prefix(1);
  while (!s.empty() && internal::IsXmlSpace(s.back())) s.remove_suffix(1);
  return std::string(s);
}

// The schema version of the document from its namespace and version attribute. LandXML's own
// namespaces decide; a document in another namespace is a national profile (Inframodel keeps the
// 1.2 schema under its own namespace) and its version attribute decides.
std::string SchemaVersion(pugi::xml_node root, const CReadContext& context, std::string& namespaceUri,
                          std::vector<std::string>& notes) {
  const std::string_view name = root.name();
  const std::size_t colon = name.find(':');
  const std::string xmlnsName =
      colon == std::string_view::npos ? "xmlns" : "xmlns:" + std::string(name.substr(0, colon));
  namespaceUri = Trimmed(root.attribute(xmlnsName.c_str()).value());
  const std::string versionAttribute = Trimmed(root.attribute("version").value());

  std::string_view uri = namespaceUri;
  if (uri.substr(0, 5) == "https") uri = uri.substr(5);
  if (uri.substr(0, 4) == "http") uri = uri.substr(4);
  const std::string_view landXmlTail = kLandXmlNamespacePrefix.substr(4);
  if (uri.substr(0, landXmlTail.size()) == landXmlTail) {
    std::string_view version = uri.substr(landXmlTail.size());
    if (!version.empty() && version.back() == '/') version.remove_suffix(1);
    if (!IsReadVersion(version))
      context.Fail(root,
                   "namespace \"" + namespaceUri + "\" is a LandXML version this reader does not read (1.0, 1.1, 1.2)");
    if (!versionAttribute.empty() && versionAttribute != version)
      notes.push_back("version=\"" + versionAttribute + "\" disagrees with the namespace of LandXML " +
                      std::string(version) + "; read as " + std::string(version));
    return std::string(version);
  }
  if (versionAttribute.empty())
    context.Fail(root, namespaceUri.empty()
                           ? "has neither a LandXML namespace nor a version"
                           : "namespace \"" + namespaceUri + "\" is not LandXML's and there is no version");
  if (!IsReadVersion(versionAttribute))
    context.Fail(root, "version=\"" + versionAttribute + "\" is not read (1.0, 1.1 and 1.2 are)");
  return versionAttribute;
}

CUnits ReadUnits(pugi::xml_node root, CReadContext& context, std::vector<std::string>& notes) {
  CUnits units;
  const pugi::xml_node unitsNode = ChildElement(root, "Units");
  pugi::xml_node system;
  for (pugi::xml_node child = unitsNode.first_child(); child && !system; child = child.next_sibling())
    if (IsElement(child, "Metric") || IsElement(child, "Imperial")) system = child;
  if (!system) {
    units.linearDefaulted = units.angularDefaulted = units.directionDefaulted = true;
    notes.push_back(
        "the document gives no <Units>: lengths are taken as metres and angles and directions as radians, "
        "the schema's defaults");
    return units;
  }
  const bool imperial = IsElement(system, "Imperial");
  const std::string where = context.Where(system);

  const pugi::xml_attribute linear = system.attribute("linearUnit");
  if (!linear) {
    units.linear = imperial ? LinearUnit::Foot : LinearUnit::Metre;
    units.linearDefaulted = true;
    notes.push_back(where + " gives no linearUnit: " + std::string(LinearUnitName(units.linear)) + " taken");
  } else if (const auto parsed = ParseLinearUnit(linear.value())) {
    units.linear = *parsed;
  } else {
    context.Fail(system,
                 "linearUnit=\"" + std::string(linear.value()) + "\" is not read (meter, foot and USSurveyFoot are)");
  }

  auto angular = [&](const char* name, AngularUnit& unit, bool& defaulted) {
    const pugi::xml_attribute attribute = system.attribute(name);
    if (!attribute) {
      unit = AngularUnit::Radians;
      defaulted = true;
      notes.push_back(where + " gives no " + name + ": radians taken, the schema's default");
    } else if (const auto parsed = ParseAngularUnit(attribute.value())) {
      unit = *parsed;
    } else {
      context.Fail(system, std::string(name) + "=\"" + attribute.value() +
                               "\" is not read (radians, decimal degrees, grads and decimal dd.mm.ss are)");
    }
  };
  angular("angularUnit", units.angular, units.angularDefaulted);
  angular("directionUnit", units.direction, units.directionDefaulted);
  units.fileLinear = units.linear;
  return units;
}

CModel ReadDocument(const pugi::xml_document& document, std::string_view text, std::vector<std::string>& notes) {
  CModel model;
  CReadContext probe(CUnits{}, notes);
  probe.SetText(text);
  const pugi::xml_node root = document.document_element();
  if (LocalName(root.name()) != "LandXML")
    probe.Fail(root, "is the root element; a LandXML document has <LandXML> there");
  model.version = SchemaVersion(root, probe, model.namespaceUri, notes);
  model.units = ReadUnits(root, probe, notes);

  CReadContext context(model.units, notes);
  context.SetText(text);
  if (internal::DirectionsRunCounterClockwise(context, root)) {
    context.SetCounterClockwiseDirections(true);
    notes.push_back(
        "the document's directions run counter-clockwise from north (its lines' coordinates and its "
        "curves' turns say so); they are read as clockwise azimuths");
  }
  if (const pugi::xml_node project = ChildElement(root, "Project")) model.projectName = context.Text(project, "name");
  for (pugi::xml_node child = root.first_child(); child; child = child.next_sibling()) {
    if (IsElement(child, "Alignments")) {
      internal::ReadAlignments(context, child, model.alignments);
    } else if (IsElement(child, "Surfaces")) {
      internal::ReadSurfaces(context, child, model.surfaces);
    }
  }
  return model;
}

std::string FaultMessage(std::string_view source, std::string_view text, const CReadFault& fault) {
  std::string located;
  if (!fault.element.empty()) located += ": <" + fault.element + ">";
  located += ": " + fault.what;
  // An element name in bytes that are not UTF-8 must not make the message itself unreadable.
  if (!internal::IsValidUtf8(located)) {
    for (char& c : located)
      if (static_cast<unsigned char>(c) >= 0x80) c = '?';
  }
  std::string message(source);
  if (fault.offset >= 0)
    message += ": line " + std::to_string(internal::LineAt(text, static_cast<std::size_t>(fault.offset)));
  return message + located;
}

}  // namespace

CReadResult ReadLandXmlText(std::string_view bytes, std::string_view sourceName, const CReadOptions& options) {
  CReadResult result;
  internal::CDecodedText decoded;
  try {
    std::string error;
    if (!internal::DecodeDocument(bytes, decoded, error)) {
      result.error = std::string(sourceName) + ": " + error;
      return result;
    }
    pugi::xml_document document;
    const pugi::xml_parse_result parsed =
        document.load_buffer(decoded.text.data(), decoded.text.size(), kParseOptions, pugi::encoding_utf8);
    if (!parsed) {
      CReadFault fault;
      fault.offset = parsed.offset;
      fault.element = internal::ElementNameAt(decoded.text, static_cast<std::size_t>(parsed.offset));
      fault.what = std::string("is not well-formed XML: ") + parsed.description();
      if (parsed.status == pugi::status_no_document_element) {
        fault.element.clear();
        fault.what = "holds no XML element";
      }
      result.error = FaultMessage(sourceName, decoded.text, fault);
      return result;
    }
    std::vector<std::string> notes;
    CModel model = ReadDocument(document, decoded.text, notes);
    if (options.linearUnit) ConvertLinearUnit(model, *options.linearUnit);
    result.model = std::move(model);
    result.notes = std::move(notes);
  } catch (const CReadFault& fault) {
    result.error = FaultMessage(sourceName, decoded.text, fault);
  } catch (const std::bad_alloc&) {
    result.error = std::string(sourceName) + ": not enough memory to read the document";
  } catch (const std::exception& e) {
    result.error = std::string(sourceName) + ": " + e.what();
  }
  return result;
}

CReadResult ReadLandXml(const std::filesystem::path& path, const CReadOptions& options) {
  CReadResult result;
  const std::string source = path.string();
  std::error_code folderError;
  if (std::filesystem::is_directory(path, folderError)) {
    result.error = source + ": is a folder, not a file";
    return result;
  }
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    std::error_code ec;
    result.error = source + (std::filesystem::exists(path, ec) ? ": cannot be opened" : ": no such file");
    return result;
  }
  std::string bytes;
  try {
    in.seekg(0, std::ios::end);
    const std::streamoff size = in.tellg();
    in.seekg(0, std::ios::beg);
    if (size < 0) {
      result.error = source + ": cannot be read";
      return result;
    }
    bytes.resize(static_cast<std::size_t>(size));
    in.read(bytes.data(), size);
    if (in.gcount() != size) {
      result.error = source + ": cannot be read";
      return result;
    }
  } catch (const std::exception&) {
    result.error = source + ": too large to read";
    return result;
  }
  return ReadLandXmlText(bytes, source, options);
}

}  // namespace landxml
