// Reading identifier-object pairs from JSON: only a two-entry array with an identifier text
// first reaches the registry, and only a found object reads the second entry.
#include <gtest/gtest.h>
#include <json/json.h>

#include <map>
#include <sstream>
#include <string>

#include "module/ids/KdIdPair.h"

namespace {

class Stored : public IKdIdObject<Json::Value> {
public:
  void ReadJson(const Json::Value& value) override {
    ++reads;
    name = value.get("name", "").asString();
  }
  int reads = 0;
  std::string name;
};

class Registry : public IKdIdRegistry<Json::Value> {
public:
  IKdIdObject<Json::Value>* FindById(const CKdId& id) override {
    ++lookups;
    lastId = id.Text();
    const auto it = objects.find(id);
    return it == objects.end() ? nullptr : it->second;
  }
  std::map<CKdId, Stored*> objects;
  int lookups = 0;
  std::wstring lastId;
};

class KdIdPairReading : public testing::Test {
protected:
  void SetUp() override { registry.objects.emplace(CKdId(L"{AEB86808-60E8-41F9-9B91-A991DDA2C001}"), &stored); }

  static Json::Value Parse(const std::string& text) {
    Json::Value value;
    Json::CharReaderBuilder builder;
    std::string errors;
    std::istringstream in(text);
    EXPECT_TRUE(Json::parseFromStream(builder, in, &value, &errors)) << errors;
    return value;
  }

  Stored stored;
  Registry registry;
};

TEST_F(KdIdPairReading, FoundObjectReadsTheSecondEntry) {
  const Json::Value pair = Parse(R"(["{aeb86808-60e8-41f9-9b91-a991dda2c001}", {"name": "boundary"}])");
  EXPECT_EQ(ReadIdObjectPair(pair, registry), &stored);
  EXPECT_EQ(registry.lookups, 1);
  EXPECT_EQ(registry.lastId, L"{aeb86808-60e8-41f9-9b91-a991dda2c001}");
  EXPECT_EQ(stored.reads, 1);
  EXPECT_EQ(stored.name, "boundary");
}

TEST_F(KdIdPairReading, UnknownIdentifierIsLookedUpButNothingReads) {
  const Json::Value pair = Parse(R"(["{6A5AC8A7-16BE-4EEC-B29A-9D2E5860A907}", {"name": "x"}])");
  EXPECT_EQ(ReadIdObjectPair(pair, registry), nullptr);
  EXPECT_EQ(registry.lookups, 1);
  EXPECT_EQ(stored.reads, 0);
}

TEST_F(KdIdPairReading, OtherShapesNeverReachTheRegistry) {
  const char* const shapes[] = {
      R"(["{AEB86808-60E8-41F9-9B91-A991DDA2C001}"])",
      R"(["{AEB86808-60E8-41F9-9B91-A991DDA2C001}", {}, {}])",
      R"([null, {"name": "x"}])",
      R"([{"id": 1}, {"name": "x"}])",
      R"([["{AEB86808-60E8-41F9-9B91-A991DDA2C001}"], {}])",
      R"({"0": "{AEB86808-60E8-41F9-9B91-A991DDA2C001}", "1": {}})",
      R"("{AEB86808-60E8-41F9-9B91-A991DDA2C001}")",
      R"([])",
      R"(null)",
  };
  for (const char* shape : shapes) {
    EXPECT_EQ(ReadIdObjectPair(Parse(shape), registry), nullptr) << shape;
  }
  EXPECT_EQ(registry.lookups, 0);
  EXPECT_EQ(stored.reads, 0);
}

TEST_F(KdIdPairReading, SecondEntryMayBeAnyValue) {
  const Json::Value pair = Parse(R"(["{AEB86808-60E8-41F9-9B91-A991DDA2C001}", null])");
  EXPECT_EQ(ReadIdObjectPair(pair, registry), &stored);
  EXPECT_EQ(stored.reads, 1);
  EXPECT_EQ(stored.name, "");
}

TEST_F(KdIdPairReading, IdentifierTextIsDecodedFromUtf8) {
  const Json::Value pair = Parse("[\"{caf\xC3\xA9}\", {}]");
  EXPECT_EQ(ReadIdObjectPair(pair, registry), nullptr);
  EXPECT_EQ(registry.lastId, std::wstring(L"{caf") + wchar_t(0xE9) + L"}");
}

}  // namespace
