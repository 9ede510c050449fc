// Reading the largest LandXML file of the shared data: the full read (encoding, parsing, building
// the model) against pugixml alone parsing the same bytes and converting the numbers in its
// element text, the reference. Both work from the bytes in memory. Rates are bytes_per_second;
// "ratio" is the full read's processor time over the reference's, both measured in the same run
// (processor time: the machine is shared, and wall time counts the others' work too), back to
// back so that both find the heap in the same state. Run on its own, the reference benchmark pays
// for fresh pages on every iteration (the C library hands pugixml's 4 MB buffer back to the
// system each time) and shows about half the rate it reaches next to the read.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <vector>

#include <pugixml.hpp>

#include "landxml/LandXml.h"

namespace {

struct CInput {
  std::filesystem::path path;
  std::string bytes;
  pugi::xml_encoding encoding = pugi::encoding_auto;
};

bool IsAscii(const std::string& bytes) {
  for (char c : bytes)
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  return true;
}

// The largest .xml file under <shared>/data/landxml, read once.
const std::optional<CInput>& LargestFile() {
  static const std::optional<CInput> input = []() -> std::optional<CInput> {
    const char* root = std::getenv("KD_SHARED_DIR");
    const std::filesystem::path shared =
        root && *root ? std::filesystem::path(root) : std::filesystem::path(KD_DEFAULT_SHARED_DIR);
    const std::filesystem::path folder = shared / "data" / "landxml";
    std::error_code ec;
    std::optional<CInput> best;
    std::uintmax_t bestSize = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder, ec)) {
      if (!entry.is_regular_file(ec) || entry.path().extension() != ".xml") continue;
      const std::uintmax_t size = entry.file_size(ec);
      if (!ec && size > bestSize) {
        bestSize = size;
        best = CInput{entry.path(), {}};
      }
    }
    if (!best) return std::nullopt;
    std::ifstream in(best->path, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    best->bytes = content.str();
    best->encoding = IsAscii(best->bytes) ? pugi::encoding_utf8 : pugi::encoding_auto;
    return best;
  }();
  return input;
}

// The reference: parse, then convert every blank-separated number of every element's text. A
// file of ASCII bytes is parsed as UTF-8 whatever it declares, so pugixml spends nothing on
// converting it (the reader does not either).
double PugixmlParseAndConvert(const std::string& bytes, pugi::xml_encoding encoding) {
  pugi::xml_document document;
  if (!document.load_buffer(bytes.data(), bytes.size(), pugi::parse_default, encoding)) return -1.0;
  double sum = 0.0;
  std::vector<pugi::xml_node> stack{document.document_element()};
  while (!stack.empty()) {
    const pugi::xml_node node = stack.back();
    stack.pop_back();
    for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
      if (child.type() == pugi::node_element) {
        stack.push_back(child);
      } else if (child.type() == pugi::node_pcdata) {
        const char* p = child.value();
        const char* end = p + std::strlen(p);
        while (p < end) {
          while (p < end && (*p == ' ' || *p == '\t' || *p == '\n' || *p == '\r')) ++p;
          double value = 0.0;
          const auto result = std::from_chars(p, end, value);
          if (result.ec == std::errc()) {
            sum += value;
            p = result.ptr;
          } else {
            while (p < end && *p != ' ' && *p != '\t' && *p != '\n' && *p != '\r') ++p;
          }
        }
      }
    }
  }
  return sum;
}

bool Ready(benchmark::State& state) {
  if (!LargestFile()) {
    state.SkipWithError("no shared LandXML data (set KD_SHARED_DIR to the shared folder)");
    return false;
  }
  return true;
}

void Describe(benchmark::State& state, std::size_t size) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(size));
  state.counters["MB"] = static_cast<double>(size) / 1e6;
  state.SetLabel(LargestFile()->path.filename().string());
}

void BM_PugixmlParseAndConvert(benchmark::State& state) {
  if (!Ready(state)) return;
  const CInput& input = *LargestFile();
  for (auto _ : state) benchmark::DoNotOptimize(PugixmlParseAndConvert(input.bytes, input.encoding));
  Describe(state, input.bytes.size());
}

void BM_ReadLandXmlText(benchmark::State& state) {
  if (!Ready(state)) return;
  const CInput& input = *LargestFile();
  std::clock_t readTime = 0;
  for (auto _ : state) {
    const std::clock_t start = std::clock();
    landxml::CReadResult result = landxml::ReadLandXmlText(input.bytes);
    readTime += std::clock() - start;
    if (!result) {
      state.SkipWithError(result.error.c_str());
      return;
    }
    benchmark::DoNotOptimize(result);
  }
  // The reference, timed here too (after the timed loop) so that the ratio compares runs made
  // under the same conditions.
  const int references = std::max<int>(5, static_cast<int>(state.iterations()));
  const std::clock_t start = std::clock();
  for (int i = 0; i < references; ++i) benchmark::DoNotOptimize(PugixmlParseAndConvert(input.bytes, input.encoding));
  const std::clock_t referenceTime = std::clock() - start;
  const double readEach = static_cast<double>(readTime) / static_cast<double>(state.iterations());
  const double referenceEach = static_cast<double>(referenceTime) / references;
  state.counters["ratio"] = readEach / referenceEach;
  state.counters["read_ms"] = readEach * 1000.0 / CLOCKS_PER_SEC;
  state.counters["reference_ms"] = referenceEach * 1000.0 / CLOCKS_PER_SEC;
  Describe(state, input.bytes.size());
}

void BM_ReadLandXmlFile(benchmark::State& state) {
  if (!Ready(state)) return;
  for (auto _ : state) benchmark::DoNotOptimize(landxml::ReadLandXml(LargestFile()->path));
  Describe(state, LargestFile()->bytes.size());
}

BENCHMARK(BM_PugixmlParseAndConvert)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadLandXmlText)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadLandXmlFile)->Unit(benchmark::kMillisecond);

}  // namespace
