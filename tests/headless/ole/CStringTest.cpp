#include <gtest/gtest.h>

#include "platform/ole/atlstr.h"

namespace {

TEST(CString, FormatsWithMicrosoftConversions) {
  CString name(L"Ground");
  CString s;
  s.Format(L"%s_%d", name.GetString(), 12);
  EXPECT_EQ(s, L"Ground_12");
  LONG n = -7;
  LONGLONG big = 1LL << 40;
  s.Format(L"%ld|%I64d|%S|%hs|%c|%.3f|%5s", n, big, "narrow", "also", L'x', 2.5, L"ab");
  EXPECT_EQ(s, L"-7|1099511627776|narrow|also|x|2.500|   ab");
  s.AppendFormat(L"%%%02X", 10);
  EXPECT_EQ(s.Right(3), L"%0A");
}

TEST(CString, SearchesAndCutsWithClampedArguments) {
  CString s(L"alpha,beta,gamma");
  EXPECT_EQ(s.GetLength(), 16);
  EXPECT_EQ(s.Find(L','), 5);
  EXPECT_EQ(s.Find(L"gamma"), 11);
  EXPECT_EQ(s.Find(L',', 6), 10);
  EXPECT_EQ(s.Find(L"delta"), -1);
  EXPECT_EQ(s.ReverseFind(L'a'), 15);
  EXPECT_EQ(s.Left(5), L"alpha");
  EXPECT_EQ(s.Mid(6, 4), L"beta");
  EXPECT_EQ(s.Mid(11), L"gamma");
  EXPECT_EQ(s.Right(100), s);
  EXPECT_EQ(s.Mid(-3, 2), L"al");
  EXPECT_TRUE(s.Mid(40).IsEmpty());

  int position = 0;
  EXPECT_EQ(s.Tokenize(L",", position), L"alpha");
  EXPECT_EQ(s.Tokenize(L",", position), L"beta");
  EXPECT_EQ(s.Tokenize(L",", position), L"gamma");
  EXPECT_TRUE(s.Tokenize(L",", position).IsEmpty());
  EXPECT_EQ(position, -1);
}

TEST(CString, ComparesAndChangesCase) {
  CString a(L"Surface");
  EXPECT_EQ(a.CompareNoCase(L"SURFACE"), 0);
  EXPECT_LT(a.Compare(L"surface"), 0);  // ordinal: 'S' before 's'
  EXPECT_GT(a.CompareNoCase(L"surf"), 0);
  EXPECT_TRUE(a == CString(L"Surface"));
  EXPECT_TRUE(a != L"surface");
  EXPECT_TRUE(CString(L"A") < CString(L"B"));
  CString b = a;
  b.MakeUpper();
  EXPECT_EQ(b, L"SURFACE");
  EXPECT_EQ(b.MakeLower(), L"surface");
  EXPECT_EQ(a, L"Surface");  // copies are independent
  CString padded(L"  x y \t");
  EXPECT_EQ(padded.Trim(), L"x y");
  EXPECT_EQ(padded.Replace(L" ", L"--"), 1);
  EXPECT_EQ(padded, L"x--y");
}

TEST(CString, ConcatenatesAndHandsOutBstrs) {
  CString s = CString(L"a") + L"b" + L'c';
  s += L"d";
  s += CString(L"e");
  EXPECT_EQ(s, L"abcde");
  BSTR b = s.AllocSysString();
  EXPECT_EQ(SysStringLen(b), 5u);
  EXPECT_STREQ(b, L"abcde");
  SysFreeString(b);
  s.Empty();
  EXPECT_TRUE(s.IsEmpty());

  wchar_t* buffer = s.GetBuffer(16);
  wcscpy(buffer, L"written");
  s.ReleaseBuffer();
  EXPECT_EQ(s.GetLength(), 7);
  EXPECT_EQ(CString("caf\xC3\xA9").GetAt(3), L'\u00e9');  // narrow text is UTF-8
}

}  // namespace
