#include "module/graphics/GrJson.h"

#include <exception>
#include <memory>
#include <sstream>

#include <json/reader.h>
#include <json/writer.h>

#include "module/graphics/GrElementVector.h"

namespace grjson {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

void AppendUtf8(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out.push_back(static_cast<char>(cp));
  } else if (cp < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else if (cp < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  }
}

void AppendWide(std::wstring& out, char32_t cp) {
  if constexpr (sizeof(wchar_t) == 2) {
    if (cp >= 0x10000) {
      cp -= 0x10000;
      out.push_back(static_cast<wchar_t>(0xD800 + (cp >> 10)));
      out.push_back(static_cast<wchar_t>(0xDC00 + (cp & 0x3FF)));
      return;
    }
  }
  out.push_back(static_cast<wchar_t>(cp));
}

bool IsSurrogate(char32_t cp) { return cp >= 0xD800 && cp <= 0xDFFF; }

const Json::CharReaderBuilder& ReaderBuilder() {
  static const Json::CharReaderBuilder builder = [] {
    Json::CharReaderBuilder b;
    b["collectComments"] = false;
    b["allowSpecialFloats"] = true;
    b["stackLimit"] = kMaxParseDepth;
    b["failIfExtra"] = true;
    return b;
  }();
  return builder;
}

const Json::StreamWriterBuilder& WriterBuilder(Style style) {
  static const auto make = [](const char* indentation) {
    Json::StreamWriterBuilder b;
    b["indentation"] = indentation;
    b["emitUTF8"] = true;
    b["useSpecialFloats"] = true;
    b["precision"] = 17;
    return b;
  };
  static const Json::StreamWriterBuilder fast = make("");
  static const Json::StreamWriterBuilder styled = make("   ");
  return style == Style::kStyled ? styled : fast;
}

}  // namespace

std::string Utf8FromWide(std::wstring_view wide) {
  std::string out;
  out.reserve(wide.size());
  for (std::size_t i = 0; i < wide.size(); ++i) {
    char32_t cp = static_cast<char32_t>(wide[i]);
    if constexpr (sizeof(wchar_t) == 2) {
      cp &= 0xFFFF;
      if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < wide.size()) {
        const char32_t low = static_cast<char32_t>(wide[i + 1]) & 0xFFFF;
        if (low >= 0xDC00 && low <= 0xDFFF) {
          cp = 0x10000 + ((cp - 0xD800) << 10) + (low - 0xDC00);
          ++i;
        }
      }
    }
    if (IsSurrogate(cp) || cp > 0x10FFFF) cp = kReplacement;
    AppendUtf8(out, cp);
  }
  return out;
}

std::wstring WideFromUtf8(std::string_view utf8) {
  std::wstring out;
  out.reserve(utf8.size());
  std::size_t i = 0;
  while (i < utf8.size()) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    if (lead < 0x80) {
      out.push_back(static_cast<wchar_t>(lead));
      ++i;
      continue;
    }
    int extra = 0;
    char32_t cp = 0;
    char32_t least = 0;
    if ((lead & 0xE0) == 0xC0) {
      extra = 1, cp = lead & 0x1F, least = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
      extra = 2, cp = lead & 0x0F, least = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
      extra = 3, cp = lead & 0x07, least = 0x10000;
    } else {
      AppendWide(out, kReplacement);
      ++i;
      continue;
    }
    std::size_t j = i + 1;
    for (; j < i + 1 + static_cast<std::size_t>(extra); ++j) {
      if (j >= utf8.size() || (static_cast<unsigned char>(utf8[j]) & 0xC0) != 0x80) break;
      cp = (cp << 6) | (static_cast<unsigned char>(utf8[j]) & 0x3F);
    }
    const bool complete = j == i + 1 + static_cast<std::size_t>(extra);
    AppendWide(out, complete && cp >= least && cp <= 0x10FFFF && !IsSurrogate(cp) ? cp : kReplacement);
    // A broken sequence gives one replacement and resumes at the byte that broke it.
    i = j;
  }
  return out;
}

GrJson::Value MakeString(std::wstring_view text) { return GrJson::Value(Utf8FromWide(text)); }

std::wstring AsWide(const GrJson::Value& value) {
  const char* begin = nullptr;
  const char* end = nullptr;
  if (value.getString(&begin, &end)) return WideFromUtf8(std::string_view(begin, static_cast<std::size_t>(end - begin)));
  if (value.isArray() || value.isObject()) return std::wstring();
  try {
    return WideFromUtf8(value.asString());
  } catch (const std::exception&) {
    return std::wstring();
  }
}

const GrJson::Value* Member(const GrJson::Value& object, std::wstring_view key) {
  if (!object.isObject()) return nullptr;
  const std::string utf8 = Utf8FromWide(key);
  return object.find(utf8.data(), utf8.data() + utf8.size());
}

void SetMember(GrJson::Value& object, std::wstring_view key, GrJson::Value value) {
  if (!object.isObject() && !object.isNull()) return;
  const std::string utf8 = Utf8FromWide(key);
  *object.demand(utf8.data(), utf8.data() + utf8.size()) = std::move(value);
}

bool Parse(std::string_view text, GrJson::Value& root) {
  root = GrJson::Value();
  try {
    const std::unique_ptr<Json::CharReader> reader(ReaderBuilder().newCharReader());
    Json::String errors;
    if (reader->parse(text.data(), text.data() + text.size(), &root, &errors)) return true;
  } catch (const std::exception&) {
    // too deep: the reader gives up by throwing
  }
  root = GrJson::Value();
  return false;
}

std::string Write(const GrJson::Value& root, Style style) {
  const std::unique_ptr<Json::StreamWriter> writer(WriterBuilder(style).newStreamWriter());
  std::ostringstream out;
  writer->write(root, &out);
  return std::move(out).str();
}

std::string WriteElements(const CGrElementVector& elements, Style style) {
  if (style == Style::kStyled) {
    GrJson::Value list(GrJson::arrayValue);
    elements.WriteJson(list);
    return Write(list, style);
  }
  // One line: the text of the whole array is the elements' texts between brackets, so each
  // element goes through its own small value, written and freed while it is still in cache.
  const std::unique_ptr<Json::StreamWriter> writer(WriterBuilder(style).newStreamWriter());
  std::ostringstream out;
  out << '[';
  bool first = true;
  for (const auto& element : elements) {
    GrJson::Value object(GrJson::objectValue);
    object[GrJson::StaticString("type")] = GrJson::Value(element->Type());
    element->WriteJson(object);
    if (!first) out << ',';
    first = false;
    writer->write(object, &out);
  }
  out << ']';
  return std::move(out).str();
}

bool ReadElements(std::string_view text, CGrElementVector& elements) {
  GrJson::Value root;
  if (!Parse(text, root)) return false;
  elements.ReadJson(root);
  return true;
}

}  // namespace grjson
