// AcDbXrecord (dbxrecrd.h): an object holding a chain of typed values (result buffers with DXF
// group codes), usually kept in an extension dictionary.
#pragma once

#if defined(_WIN32)
#  include <dbxrecrd.h>
#else

#include <vector>

#include "platform/acad/dbmain.h"

class KD_PLATFORM_API AcDbXrecord : public AcDbObject {
public:
  ACRX_DECLARE_MEMBERS(AcDbXrecord);
  AcDbXrecord();
  ~AcDbXrecord() override;

  // A new copy of the chain, which the caller releases with acutRelRb (null for an empty record).
  Acad::ErrorStatus rbChain(resbuf** ppRb, AcDbDatabase* auxDb = nullptr) const;
  // Replaces the chain with a copy of the one starting at pRb. Every link must carry a DXF group
  // code that Xrecords accept (not 0, 5, 105, 1001, nor an RT code): eInvalidResBuf otherwise,
  // and the record keeps its chain.
  Acad::ErrorStatus setFromRbChain(const resbuf& pRb, AcDbDatabase* auxDb = nullptr);
  bool isXlateReferences() const { return m_xlateReferences; }
  void setXlateReferences(bool translate);

  // One stored value: the group code and the value in the member its kind uses.
  struct Item {
    short restype;
    double point[3];
    double real;
    Adesk::Int64 integer;
    std::wstring text;
    std::vector<char> binary;
    AcDbObjectId id;
  };
  // The platform's own: the stored chain.
  const std::vector<Item>& items() const { return m_items; }

private:
  std::vector<Item> m_items;
  bool m_xlateReferences = true;
};

#endif  // !_WIN32
