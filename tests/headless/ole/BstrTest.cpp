#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <cwchar>

#include "platform/ole/oleauto.h"

namespace {

std::uint32_t PrefixOf(BSTR b) {
  std::uint32_t bytes;
  std::memcpy(&bytes, reinterpret_cast<const char*>(b) - sizeof bytes, sizeof bytes);
  return bytes;
}

TEST(Bstr, LengthPrefixHoldsBytesAndTextIsTerminated) {
  BSTR b = SysAllocString(L"abc");
  ASSERT_NE(b, nullptr);
  EXPECT_EQ(SysStringLen(b), 3u);
  EXPECT_EQ(SysStringByteLen(b), 3 * sizeof(OLECHAR));
  EXPECT_EQ(PrefixOf(b), 3 * sizeof(OLECHAR));
  EXPECT_EQ(b[3], L'\0');
  EXPECT_STREQ(b, L"abc");
  SysFreeString(b);
}

TEST(Bstr, EmbeddedZerosCountInLengthButNotInWcslen) {
  const OLECHAR text[] = {L'a', L'\0', L'b'};
  BSTR b = SysAllocStringLen(text, 3);
  ASSERT_NE(b, nullptr);
  EXPECT_EQ(SysStringLen(b), 3u);
  EXPECT_EQ(std::wcslen(b), 1u);
  EXPECT_EQ(b[2], L'b');
  EXPECT_EQ(b[3], L'\0');
  SysFreeString(b);
}

TEST(Bstr, NullIsAnEmptyStringEverywhere) {
  EXPECT_EQ(SysAllocString(nullptr), nullptr);
  EXPECT_EQ(SysStringLen(nullptr), 0u);
  EXPECT_EQ(SysStringByteLen(nullptr), 0u);
  SysFreeString(nullptr);  // harmless
}

TEST(Bstr, LengthWithoutTextGivesZeroedRoom) {
  BSTR b = SysAllocStringLen(nullptr, 4);
  ASSERT_NE(b, nullptr);
  EXPECT_EQ(SysStringLen(b), 4u);
  for (int i = 0; i <= 4; ++i) EXPECT_EQ(b[i], L'\0') << i;
  SysFreeString(b);

  BSTR empty = SysAllocString(L"");
  ASSERT_NE(empty, nullptr);  // an empty BSTR is not a null one
  EXPECT_EQ(SysStringLen(empty), 0u);
  SysFreeString(empty);
}

TEST(Bstr, ByteLengthStringsKeepOddByteCounts) {
  BSTR b = SysAllocStringByteLen("abc", 3);
  ASSERT_NE(b, nullptr);
  EXPECT_EQ(SysStringByteLen(b), 3u);
  EXPECT_EQ(SysStringLen(b), 3u / sizeof(OLECHAR));
  EXPECT_EQ(std::memcmp(b, "abc", 3), 0);
  SysFreeString(b);
}

TEST(Bstr, ReallocationMayReadFromTheOldString) {
  BSTR b = SysAllocString(L"hello");
  ASSERT_EQ(SysReAllocString(&b, b + 2), TRUE);
  EXPECT_STREQ(b, L"llo");
  ASSERT_EQ(SysReAllocStringLen(&b, b, 2), TRUE);
  EXPECT_EQ(SysStringLen(b), 2u);
  EXPECT_STREQ(b, L"ll");
  EXPECT_EQ(SysReAllocString(nullptr, L"x"), FALSE);
  SysFreeString(b);
}

}  // namespace
