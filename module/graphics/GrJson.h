// The JSON form of graphics elements: the document model (jsoncpp, named GrJson), text at the
// element API as wide strings and inside the document as UTF-8, parsing and writing of text, and
// whole element documents.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <json/value.h>

#include "module/graphics/GrJsonFwd.h"

class CGrElementVector;

namespace grjson {

// Wide text from and to the UTF-8 of the document. Either way, what cannot be encoded (a lone
// surrogate, a malformed sequence, a value past U+10FFFF) becomes U+FFFD; wchar_t may be 16 bits
// (surrogate pairs) or 32 bits wide.
std::string Utf8FromWide(std::wstring_view wide);
std::wstring WideFromUtf8(std::string_view utf8);

// A string value holding the text.
GrJson::Value MakeString(std::wstring_view text);
// The text of a value: a string as it is, another kind by the library's conversion (numbers
// and booleans as their text, null as ""); "" for what has none (arrays, objects).
std::wstring AsWide(const GrJson::Value& value);
// The member of an object under a wide key; null when the value is not an object or has none.
const GrJson::Value* Member(const GrJson::Value& object, std::wstring_view key);
// Sets the member under a wide key, making `object` an object if it is null.
void SetMember(GrJson::Value& object, std::wstring_view key, GrJson::Value value);

enum class Style {
  kFast,    // one line
  kStyled,  // indented, one member per line
};

// Nesting deeper than this fails a parse.
inline constexpr int kMaxParseDepth = 1000;
// Element lists nested deeper than this read as empty.
inline constexpr int kMaxListDepth = 200;

// Parses a whole document; false (and `root` null) for text that is not JSON, carries more than
// one value or nests deeper than kMaxParseDepth. Never throws.
bool Parse(std::string_view text, GrJson::Value& root);
// UTF-8 text as written, numbers to 17 significant digits, non-finite numbers as NaN,
// Infinity and -Infinity (which Parse reads back).
std::string Write(const GrJson::Value& root, Style style = Style::kFast);

// An element document is an element list: an array of element objects, each with "type".
std::string WriteElements(const CGrElementVector& elements, Style style = Style::kFast);
// Appends the elements of an element document to `elements`; false only when the text is not
// JSON. A root that is not an array holds no elements.
bool ReadElements(std::string_view text, CGrElementVector& elements);

}  // namespace grjson
