// CKdId: construction, the generator, case-insensitive comparison and order, GUID conversion,
// and uniqueness of new identifiers.
#include <gtest/gtest.h>

#include <cstdint>
#include <cwctype>
#include <set>
#include <string>
#include <vector>

#include "module/ids/KdId.h"
#include "module/ids/KdIdStub.h"
#include "platform/ole/combaseapi.h"

namespace {

const std::wstring kNull = L"{00000000-0000-0000-0000-000000000000}";

// Whether text is "{8-4-4-4-12}" with upper-case hexadecimal digits, as the platform writes it.
bool IsRegistryForm(const std::wstring& text) {
  if (text.size() != 38 || text.front() != L'{' || text.back() != L'}') return false;
  for (std::size_t i = 1; i < 37; ++i) {
    const bool hyphen = i == 9 || i == 14 || i == 19 || i == 24;
    const wchar_t c = text[i];
    if (hyphen ? c != L'-' : !((c >= L'0' && c <= L'9') || (c >= L'A' && c <= L'F'))) return false;
  }
  return true;
}

// A generator that hands out a fixed text and counts its calls.
class CountingStub : public IKdIdStub {
public:
  std::wstring NewId() override {
    ++calls;
    return L"{11111111-2222-3333-4444-555555555555}";
  }
  int calls = 0;
};

// Installs a counting generator for one test and puts the previous one back.
class CKdIdWithStub : public testing::Test {
protected:
  void SetUp() override { previous = CKdId::SetGenerator(&stub); }
  void TearDown() override { CKdId::SetGenerator(previous); }
  CountingStub stub;
  IKdIdStub* previous = nullptr;
};

TEST_F(CKdIdWithStub, NullIdentifierStillAsksTheGenerator) {
  const CKdId null(false);
  EXPECT_EQ(null.Text(), kNull);
  EXPECT_TRUE(null.IsNull());
  EXPECT_EQ(stub.calls, 1);
  const CKdId fresh(true);
  EXPECT_EQ(fresh.Text(), L"{11111111-2222-3333-4444-555555555555}");
  EXPECT_EQ(stub.calls, 2);
  // Copies and texts never ask.
  const CKdId copy(fresh);
  const CKdId fromText(L"{x}");
  EXPECT_EQ(stub.calls, 2);
}

TEST(CKdIdConstruction, TextIsTakenUnchangedWithoutValidation) {
  EXPECT_EQ(CKdId(L"not a guid").Text(), L"not a guid");
  EXPECT_EQ(CKdId(std::wstring(L"{aeb86808-60e8-41f9-9b91-a991dda2c001}")).Text(),
            L"{aeb86808-60e8-41f9-9b91-a991dda2c001}");
  const wchar_t* none = nullptr;
  EXPECT_EQ(CKdId(none).Text(), L"");
  // The pointer form stops at the terminator.
  const wchar_t buffer[] = {L'{', L'a', L'}', L'\0', L'x', L'\0'};
  EXPECT_EQ(CKdId(buffer).Text(), L"{a}");
}

TEST(CKdIdConstruction, AssignmentFromIdentifierAndText) {
  CKdId id(L"{a}");
  id = CKdId(L"{b}");
  EXPECT_EQ(id.Text(), L"{b}");
  id = std::wstring(L"{c}");
  EXPECT_EQ(id.Text(), L"{c}");
  id = L"{d}";
  EXPECT_EQ(id.Text(), L"{d}");
  const CKdId& self = id;
  id = self;
  EXPECT_EQ(id.Text(), L"{d}");
}

TEST(CKdIdConstruction, NewIdentifiersAreInRegistryFormAndDistinct) {
  const CKdId a(true), b(true);
  EXPECT_TRUE(IsRegistryForm(a.Text())) << a;
  EXPECT_NE(a, b);
  EXPECT_NE(a, CKdId(false));
  EXPECT_FALSE(a.IsNull());
  // Random (version 4, RFC 4122 variant) GUIDs.
  EXPECT_EQ(a.Text()[15], L'4');
  EXPECT_NE(std::wstring(L"89AB").find(a.Text()[20]), std::wstring::npos);
}

TEST(CKdIdCompare, LetterCaseDoesNotCount) {
  const CKdId upper(L"{AEB86808-60E8-41F9-9B91-A991DDA2C001}");
  const CKdId lower(L"{aeb86808-60e8-41f9-9b91-a991dda2c001}");
  EXPECT_TRUE(upper == lower);
  EXPECT_FALSE(upper != lower);
  EXPECT_FALSE(upper < lower);
  EXPECT_FALSE(upper > lower);
  EXPECT_EQ(std::hash<CKdId>{}(upper), std::hash<CKdId>{}(lower));
  EXPECT_NE(upper, CKdId(L"{AEB86808-60E8-41F9-9B91-A991DDA2C002}"));
  // The whole text counts, its length included.
  EXPECT_NE(upper, CKdId(L"{AEB86808-60E8-41F9-9B91-A991DDA2C001}x"));
  EXPECT_TRUE(CKdId(L"{00000000-0000-0000-0000-000000000000}").IsNull());
  EXPECT_FALSE(CKdId(L"{00000000-0000-0000-0000-00000000000}").IsNull());
}

TEST(CKdIdCompare, OrderIsCaseInsensitiveLexical) {
  const CKdId zero(L"{0FFFFFFF-0000-0000-0000-000000000000}");
  const CKdId letter(L"{A0000000-0000-0000-0000-000000000000}");
  EXPECT_TRUE(zero < letter);
  EXPECT_TRUE(letter > zero);
  EXPECT_FALSE(letter < zero);
  // Plain character order would put "{B" before "{a"; letter case must not.
  const CKdId a(L"{a0000000-0000-0000-0000-000000000000}");
  const CKdId B(L"{B0000000-0000-0000-0000-000000000000}");
  EXPECT_TRUE(a < B);
  EXPECT_TRUE(B > a);
  // A prefix orders first.
  EXPECT_TRUE(CKdId(L"{A") < CKdId(L"{a0"));
  std::set<CKdId> ordered{B, letter, a, zero, CKdId(L"{b0000000-0000-0000-0000-000000000000}")};
  ASSERT_EQ(ordered.size(), 3u);
  EXPECT_EQ(ordered.begin()->Text(), zero.Text());
  EXPECT_EQ(ordered.rbegin()->Text(), B.Text());
}

TEST(CKdIdFixed, FourConstantsKeepTheirValues) {
  EXPECT_EQ(kKdFixedId1.Text(), L"{AEB86808-60E8-41F9-9B91-A991DDA2C001}");
  EXPECT_EQ(kKdFixedId2.Text(), L"{6A5AC8A7-16BE-4EEC-B29A-9D2E5860A907}");
  EXPECT_EQ(kKdFixedId3.Text(), L"{90CCD41A-BA5A-40C6-B47A-439BA9F9705B}");
  EXPECT_EQ(kKdFixedId4.Text(), L"{6F0B068E-5D68-4934-93F8-EA0D4A04B199}");
  EXPECT_EQ(std::set<CKdId>({kKdFixedId1, kKdFixedId2, kKdFixedId3, kKdFixedId4}).size(), 4u);
}

TEST(CKdIdGuid, ConvertsThroughThePlatformParser) {
  const GUID guid = kKdFixedId1.ToGuid();
  EXPECT_EQ(guid.Data1, 0xAEB86808u);
  EXPECT_EQ(guid.Data2, 0x60E8u);
  EXPECT_EQ(guid.Data3, 0x41F9u);
  const BYTE tail[8] = {0x9B, 0x91, 0xA9, 0x91, 0xDD, 0xA2, 0xC0, 0x01};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(guid.Data4[i], tail[i]) << i;
  EXPECT_EQ(kKdFixedId1.ToData1(), 0xAEB86808u);
  EXPECT_EQ(kKdFixedId4.ToData1(), 0x6F0B068Eu);
  EXPECT_TRUE(IsEqualGUID(CKdId(L"{aeb86808-60e8-41f9-9b91-a991dda2c001}").ToGuid(), guid));
  // Through text and back.
  OLECHAR text[39];
  ASSERT_EQ(StringFromGUID2(guid, text, 39), 39);
  EXPECT_EQ(CKdId(text), kKdFixedId1);
}

TEST(CKdIdGuid, TextThatNamesNoGuidGivesTheNullGuid) {
  for (const wchar_t* text : {L"", L"{AEB86808-60E8-41F9-9B91-A991DDA2C0}", L"{AEB86808-60E8-41F9-9B91-A991DDA2C00G}",
                              L"AEB86808-60E8-41F9-9B91-A991DDA2C001", L"{AEB86808-60E8-41F9-9B91-A991DDA2C001}x"}) {
    EXPECT_TRUE(IsEqualGUID(CKdId(text).ToGuid(), GUID_NULL)) << CKdId(text);
    EXPECT_EQ(CKdId(text).ToData1(), 0u);
  }
}

// The million-identifier test's scaffolding runs uninstrumented: it checks the identifiers, it
// is not under test, and under the sanitizers it would cost more than making the identifiers.
#if defined(__GNUC__)
#  define KD_TEST_SCAFFOLDING __attribute__((no_sanitize("address", "undefined")))
#else
#  define KD_TEST_SCAFFOLDING
#endif

// The 128 bits of an upper-case registry-form text, read digit by digit (independently of the
// platform's parser); false when the text is not in that form.
KD_TEST_SCAFFOLDING bool ReadBits(const std::wstring& text, std::uint64_t (&bits)[2]) {
  if (text.size() != 38) return false;
  const wchar_t* c = text.data();
  if (c[0] != L'{' || c[37] != L'}') return false;
  bits[0] = bits[1] = 0;
  int digits = 0;
  for (int i = 1; i < 37; ++i) {
    const wchar_t ch = c[i];
    if (i == 9 || i == 14 || i == 19 || i == 24) {
      if (ch != L'-') return false;
      continue;
    }
    std::uint64_t v;
    if (ch >= L'0' && ch <= L'9') v = static_cast<std::uint64_t>(ch - L'0');
    else if (ch >= L'A' && ch <= L'F') v = static_cast<std::uint64_t>(ch - L'A' + 10);
    else return false;
    std::uint64_t& half = bits[digits++ >> 4];
    half = (half << 4) | v;
  }
  return true;
}

// A set of 128-bit values by open addressing in one flat table: a million inserts stay quick
// in an unoptimised, instrumented build, where node-based containers are several times slower.
class Set128 {
public:
  explicit Set128(std::size_t capacityLog2) : m_mask((std::size_t{1} << capacityLog2) - 1), m_slots(2 * (m_mask + 1)) {}

  // False when the value was there already. The all-zero value marks an empty slot and cannot
  // be stored.
  KD_TEST_SCAFFOLDING bool Insert(std::uint64_t hi, std::uint64_t lo) {
    std::uint64_t* slots = m_slots.data();
    for (std::size_t i = static_cast<std::size_t>((hi ^ lo) * 0x9E3779B97F4A7C15ull >> 20) & m_mask;;
         i = (i + 1) & m_mask) {
      std::uint64_t* slot = slots + 2 * i;
      if (slot[0] == 0 && slot[1] == 0) {
        slot[0] = hi;
        slot[1] = lo;
        ++m_size;
        return true;
      }
      if (slot[0] == hi && slot[1] == lo) return false;
    }
  }
  std::size_t Size() const { return m_size; }

private:
  std::size_t m_mask;
  std::vector<std::uint64_t> m_slots;
  std::size_t m_size = 0;
};

TEST(CKdIdUniqueness, AMillionNewIdentifiersAreDistinctInRegistryForm) {
  constexpr int kCount = 1'000'000;
  Set128 seen(21);  // 2M slots: at most half full
  int malformed = 0, repeated = 0;
  for (int i = 0; i < kCount; ++i) {
    const CKdId id(true);
    std::uint64_t bits[2];
    if (!ReadBits(id.Text(), bits) || (bits[0] == 0 && bits[1] == 0)) {
      if (++malformed <= 3) ADD_FAILURE() << "not a new identifier in registry form: " << id;
    } else if (!seen.Insert(bits[0], bits[1]) && ++repeated <= 3) {
      ADD_FAILURE() << "made twice: " << id;
    }
  }
  EXPECT_EQ(malformed, 0);
  EXPECT_EQ(repeated, 0);
  EXPECT_EQ(seen.Size(), static_cast<std::size_t>(kCount));
}

TEST(KdIdUtf8, DecodesAndReplacesMalformedSequences) {
  EXPECT_EQ(kdid::WideFromUtf8("{ab}"), L"{ab}");
  EXPECT_EQ(kdid::WideFromUtf8("\xC3\xA9"), std::wstring(1, wchar_t(0xE9)));
  EXPECT_EQ(kdid::WideFromUtf8("\xE2\x82\xAC"), std::wstring(1, wchar_t(0x20AC)));
  const std::wstring clef = kdid::WideFromUtf8("\xF0\x9D\x84\x9E");
  if constexpr (sizeof(wchar_t) == 4) {
    EXPECT_EQ(clef, std::wstring(1, wchar_t(0x1D11E)));
  } else {
    EXPECT_EQ(clef.size(), 2u);
  }
  const std::wstring bad(1, wchar_t(0xFFFD));
  EXPECT_EQ(kdid::WideFromUtf8("\xFF"), bad);
  EXPECT_EQ(kdid::WideFromUtf8("\xC3"), bad);             // cut short
  EXPECT_EQ(kdid::WideFromUtf8("\xC0\xAF"), bad);         // overlong
  EXPECT_EQ(kdid::WideFromUtf8("\xED\xA0\x80"), bad);     // a surrogate
  EXPECT_EQ(kdid::WideFromUtf8("\xC3x"), bad + L"x");     // the next character survives
}

}  // namespace
