// A document's bytes made UTF-8 as its byte-order mark and XML declaration say, and positions in
// them turned into line numbers.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace landxml::internal {

struct CDecodedText {
  // The UTF-8 text: a view of the input when it already was UTF-8 or pure ASCII, else of `owned`.
  // A UTF-8 byte-order mark stays in place, so offsets and lines match the input's.
  std::string_view text;
  std::string owned;
  std::string encoding;  // the encoding the document was read in, for messages
};

// Makes the document UTF-8. Returns false with a message (without file or line) when the
// encoding is one this reader does not take or contradicts the byte-order mark.
bool DecodeDocument(std::string_view bytes, CDecodedText& decoded, std::string& error);

// 1-based line of the byte at `offset` (lines end at LF, CR LF or a lone CR).
std::size_t LineAt(std::string_view text, std::size_t offset);

// The name of the element whose tag holds or precedes `offset` (the start or end tag's name),
// "" when there is none; for XML syntax errors, where no element node exists yet.
std::string ElementNameAt(std::string_view text, std::size_t offset);

// Whether `s` is well-formed UTF-8.
bool IsValidUtf8(std::string_view s);

}  // namespace landxml::internal
