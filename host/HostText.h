// Text helpers of the host: UTF-8 and the interface's wide strings, numbers for messages and
// pictures, file-name-safe names.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

// UTF-8 to the wide text the host interface passes, whatever the width of wchar_t (UTF-16 where
// it is 16 bits, UTF-32 where it is 32). Malformed bytes become U+FFFD.
std::wstring Widen(std::string_view utf8);
// Wide text from the interface to UTF-8; unpaired surrogates become U+FFFD.
std::string Narrow(std::wstring_view wide);

// The number with a fixed count of decimals ("12.300"); "-0.000" comes out as "0.000".
std::string Fixed(double value, int decimals);
// The number in the shortest form that reads back the same, for reports ("1e-07", "0.5").
std::string Short(double value);
// A length or difference for a report, in a form a person reads at a glance: 3 significant
// digits ("0.000512", "1.2e-09", "0").
std::string Brief(double value);

// A station as civil drawings label it: metric "1+234.50" (thousands of metres), imperial
// "12+34.50" (hundreds of feet). `decimals` after the point.
std::string StationText(double station, bool imperial, int decimals);

// "1 arc", "2 arcs".
std::string Count(std::size_t n, std::string_view one, std::string_view many);

// A name made safe for a file name: letters, digits, '-', '_' and '.' kept, anything else
// (spaces, slashes, non-ASCII) becomes '_'; empty becomes "unnamed".
std::string FileSafe(std::string_view name);

}  // namespace host
