// CKdId: an identifier held as registry-form GUID text, compared without regard to letter case.
#pragma once

#include <compare>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

#include "platform/ole/wtypes.h"

class IKdIdStub;

class CKdId {
public:
  // Always asks the generator for a new identifier first; when makeNew is false the text then
  // becomes the null identifier. The wasted generator call is kept on purpose.
  explicit CKdId(bool makeNew);
  // The text is taken as it is, without validation; a null pointer gives an empty text.
  CKdId(const std::wstring& text);
  CKdId(const wchar_t* text);
  CKdId(const CKdId&) = default;
  CKdId& operator=(const CKdId&) = default;
  CKdId& operator=(const std::wstring& text);
  CKdId& operator=(const wchar_t* text);
  virtual ~CKdId() = default;

  const std::wstring& Text() const { return m_text; }
  // Whether the text names the null identifier (in any letter case).
  bool IsNull() const;
  // The GUID the text names, through the platform's parser; GUID_NULL when it names none.
  GUID ToGuid() const;
  // The first 32-bit field of ToGuid().
  ULONG ToData1() const;

  // Equal when the texts differ at most in letter case; ordered by the case-insensitive
  // lexical order of the texts.
  friend bool operator==(const CKdId& a, const CKdId& b);
  friend std::weak_ordering operator<=>(const CKdId& a, const CKdId& b);

  // Makes `generator` the source of new identifiers and returns the one it replaces; null
  // restores the platform's. The caller keeps ownership and keeps it alive while installed.
  // Like the lazy creation of the platform's generator, this is not synchronised.
  static IKdIdStub* SetGenerator(IKdIdStub* generator);

private:
  std::wstring m_text;
};

// The null identifier's text.
inline constexpr const wchar_t* kKdNullIdText = L"{00000000-0000-0000-0000-000000000000}";

// Four process-wide fixed identifiers; their values never change.
extern const CKdId kKdFixedId1;  // {AEB86808-60E8-41F9-9B91-A991DDA2C001}
extern const CKdId kKdFixedId2;  // {6A5AC8A7-16BE-4EEC-B29A-9D2E5860A907}
extern const CKdId kKdFixedId3;  // {90CCD41A-BA5A-40C6-B47A-439BA9F9705B}
extern const CKdId kKdFixedId4;  // {6F0B068E-5D68-4934-93F8-EA0D4A04B199}

// The text with its non-ASCII characters as '?', for test and log output.
std::ostream& operator<<(std::ostream& out, const CKdId& id);

namespace kdid {

// Wide text from UTF-8 (malformed sequences become U+FFFD), as JSON readers hand text over.
std::wstring WideFromUtf8(std::string_view utf8);

}  // namespace kdid

// Hashes agree with operator==: letter case does not count.
template <>
struct std::hash<CKdId> {
  std::size_t operator()(const CKdId& id) const noexcept;
};
