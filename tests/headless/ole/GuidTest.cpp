#include <gtest/gtest.h>

#include <cwctype>
#include <string>

#include "platform/ole/combaseapi.h"

namespace {

std::wstring Text(const GUID& g) {
  OLECHAR buffer[39];
  EXPECT_EQ(StringFromGUID2(g, buffer, 39), 39);
  return buffer;
}

TEST(Guid, NewGuidsAreRandomVersionFour) {
  GUID a{}, b{};
  ASSERT_EQ(CoCreateGuid(&a), S_OK);
  ASSERT_EQ(CoCreateGuid(&b), S_OK);
  EXPECT_FALSE(IsEqualGUID(a, b));
  for (const GUID& g : {a, b}) {
    EXPECT_EQ(g.Data3 >> 12, 4) << "version nibble";
    EXPECT_EQ(g.Data4[0] & 0xC0, 0x80) << "variant bits 10xx";
  }
  EXPECT_EQ(CoCreateGuid(nullptr), E_INVALIDARG);
}

TEST(Guid, TextIsTheUpperCaseRegistryForm) {
  const GUID g{0x0123abcd, 0x4567, 0x89ef, {0x01, 0x23, 0x45, 0x67, 0x89, 0xab, 0xcd, 0xef}};
  EXPECT_EQ(Text(g), L"{0123ABCD-4567-89EF-0123-456789ABCDEF}");
  OLECHAR small[38];
  EXPECT_EQ(StringFromGUID2(g, small, 38), 0);
  EXPECT_EQ(StringFromGUID2(g, nullptr, 39), 0);
}

TEST(Guid, TextRoundTripsWhateverTheCase) {
  GUID made{};
  ASSERT_EQ(CoCreateGuid(&made), S_OK);
  std::wstring text = Text(made);
  GUID parsed{};
  EXPECT_EQ(CLSIDFromString(text.c_str(), &parsed), S_OK);
  EXPECT_TRUE(IsEqualGUID(parsed, made));
  for (wchar_t& c : text) c = static_cast<wchar_t>(std::towlower(c));
  GUID lower{};
  EXPECT_EQ(IIDFromString(text.c_str(), &lower), S_OK);
  EXPECT_TRUE(IsEqualGUID(lower, made));
}

TEST(Guid, MalformedTextIsRefused) {
  const wchar_t* bad[] = {
      L"{0123ABCD-4567-89EF-0123-456789ABCDE}",    // one digit short
      L"{0123ABCD-4567-89EF-0123-456789ABCDEF0}",  // one too many
      L"{0123ABCD-4567-89EF-0123-456789ABCDEF}x",  // trailing text
      L"{0123ABCD_4567-89EF-0123-456789ABCDEF}",   // wrong separator
      L"{0123ABCG-4567-89EF-0123-456789ABCDEF}",   // not hexadecimal
      L"{",
  };
  for (const wchar_t* text : bad) {
    GUID g{1, 2, 3, {4}};
    EXPECT_EQ(CLSIDFromString(text, &g), CO_E_CLASSSTRING) << text;
    EXPECT_TRUE(IsEqualGUID(g, GUID_NULL));
    EXPECT_EQ(IIDFromString(text, &g), E_INVALIDARG) << text;
  }
  GUID g{};
  EXPECT_EQ(CLSIDFromString(L"No.Such.ProgId", &g), CO_E_CLASSSTRING);  // not braced: a ProgID
  EXPECT_EQ(IIDFromString(L"0123ABCD-4567-89EF-0123-456789ABCDEF", &g), E_INVALIDARG);
  EXPECT_EQ(CLSIDFromString(nullptr, &g), S_OK);  // documented: null text is GUID_NULL
  EXPECT_TRUE(IsEqualGUID(g, GUID_NULL));
  EXPECT_EQ(CLSIDFromString(L"{}", nullptr), E_INVALIDARG);
}

}  // namespace
