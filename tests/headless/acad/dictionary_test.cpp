// Extension dictionaries, dictionaries, Xrecords with their result-buffer chains, and groups.
#include <gtest/gtest.h>

#include <cstring>

#include "DrawingFixture.h"
#include "platform/acad/acutads.h"
#include "platform/acad/dbdict.h"
#include "platform/acad/dbents.h"
#include "platform/acad/dbgroup.h"
#include "platform/acad/dbxrecrd.h"

namespace {

using kdtest::NewDrawing;
using kdtest::Opened;
using kdtest::Take;

// Chains are released however a test ends.
struct Chain {
  explicit Chain(resbuf* head = nullptr) : rb(head) {}
  ~Chain() { acutRelRb(rb); }
  Chain(const Chain&) = delete;
  Chain& operator=(const Chain&) = delete;
  resbuf* rb;
};

class DrawingWithATaggedLine : public NewDrawing {
protected:
  void SetUp() override {
    NewDrawing::SetUp();
    line = Append(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0)));
    SetTag(L"first");
  }

  // What the module does to tag an entity: an Xrecord under "Tag" in its extension dictionary.
  void SetTag(const ACHAR* tag) {
    Opened<AcDbLine> l(line, AcDb::kForWrite);
    const Acad::ErrorStatus created = l->createExtensionDictionary();
    ASSERT_TRUE(created == Acad::eOk || created == Acad::eAlreadyInDb);
    Opened<AcDbDictionary> dict(l->extensionDictionary(), AcDb::kForWrite, true);
    ASSERT_TRUE(dict);
    if (dict->isErased()) {
      ASSERT_EQ(dict->erase(false), Acad::eOk);
    }
    auto* record = new AcDbXrecord;
    AcDbObjectId id;
    ASSERT_EQ(dict->setAt(L"Tag", record, id), Acad::eOk);
    Chain chain(acutBuildList(AcDb::kDxfText, tag, 0));
    ASSERT_EQ(record->setFromRbChain(*chain.rb), Acad::eOk);
    record->close();
  }

  std::wstring Tag() {
    Opened<AcDbLine> l(line, AcDb::kForRead);
    Opened<AcDbDictionary> dict(l->extensionDictionary(), AcDb::kForRead);
    if (!dict) return L"<no dictionary>";
    AcDbObject* object = nullptr;
    if (dict->getAt(L"Tag", object, AcDb::kForRead) != Acad::eOk) return L"<no tag>";
    resbuf* rb = nullptr;
    AcDbXrecord::cast(object)->rbChain(&rb);
    object->close();
    Chain chain(rb);
    return rb != nullptr && rb->restype == AcDb::kDxfText ? rb->resval.rstring : L"<not text>";
  }

  AcDbObjectId line;
};

TEST_F(DrawingWithATaggedLine, TheTagReadsBack) { EXPECT_EQ(Tag(), L"first"); }

TEST_F(DrawingWithATaggedLine, ASecondExtensionDictionaryIsRefused) {
  Opened<AcDbLine> l(line, AcDb::kForWrite);
  const AcDbObjectId dictionary = l->extensionDictionary();
  EXPECT_EQ(l->createExtensionDictionary(), Acad::eAlreadyInDb);
  EXPECT_EQ(l->extensionDictionary(), dictionary);
  Opened<AcDbDictionary> dict(dictionary, AcDb::kForRead);
  EXPECT_EQ(dict->ownerId(), line);
}

TEST_F(DrawingWithATaggedLine, CreatingTheDictionaryNeedsTheObjectOpenForWrite) {
  const AcDbObjectId other = Append(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(0, 1, 0)));
  Opened<AcDbLine> l(other, AcDb::kForRead);
  EXPECT_EQ(l->createExtensionDictionary(), Acad::eNotOpenForWrite);
  EXPECT_TRUE(l->extensionDictionary().isNull());
}

TEST_F(DrawingWithATaggedLine, ReplacingTheTagErasesTheOldRecord) {
  AcDbObjectId oldRecord;
  {
    Opened<AcDbLine> l(line, AcDb::kForRead);
    Opened<AcDbDictionary> dict(l->extensionDictionary(), AcDb::kForRead);
    dict->getAt(L"TAG", oldRecord);  // keys ignore case
  }
  SetTag(L"second");
  EXPECT_EQ(Tag(), L"second");
  EXPECT_TRUE(oldRecord.isErased());
  Opened<AcDbLine> l(line, AcDb::kForRead);
  Opened<AcDbDictionary> dict(l->extensionDictionary(), AcDb::kForRead);
  EXPECT_EQ(dict->numEntries(), 1u);
}

TEST_F(DrawingWithATaggedLine, ErasingTheLineErasesItsDictionaryWhichStaysErasedAfterUnerase) {
  AcDbObjectId dictionary;
  {
    Opened<AcDbLine> l(line, AcDb::kForWrite);
    dictionary = l->extensionDictionary();
    ASSERT_EQ(l->erase(), Acad::eOk);
  }
  EXPECT_TRUE(dictionary.isErased());
  {
    Opened<AcDbLine> l(line, AcDb::kForWrite, true);
    ASSERT_EQ(l->erase(false), Acad::eOk);
  }
  EXPECT_TRUE(dictionary.isErased());
  AcDbDictionary* dict = nullptr;
  EXPECT_EQ(acdbOpenObject(dict, dictionary, AcDb::kForWrite), Acad::eWasErased);
  SetTag(L"revived");  // unerases the dictionary, as the module does
  EXPECT_FALSE(dictionary.isErased());
  EXPECT_EQ(Tag(), L"revived");
}

TEST_F(DrawingWithATaggedLine, AnErasedEntryLeavesItsDictionaryForGood) {
  Opened<AcDbLine> l(line, AcDb::kForRead);
  Opened<AcDbDictionary> dict(l->extensionDictionary(), AcDb::kForWrite);
  AcDbObjectId record;
  ASSERT_EQ(dict->getAt(L"Tag", record), Acad::eOk);
  {
    Opened<AcDbXrecord> xrecord(record, AcDb::kForWrite);
    ASSERT_EQ(xrecord->erase(), Acad::eOk);
    EXPECT_FALSE(dict->has(L"Tag"));
    ASSERT_EQ(xrecord->erase(false), Acad::eOk);
  }
  EXPECT_FALSE(dict->has(L"Tag"));
  EXPECT_EQ(dict->getAt(L"Tag", record), Acad::eKeyNotFound);
  EXPECT_TRUE(record.isNull());
}

TEST_F(DrawingWithATaggedLine, ADictionaryWithEntriesCannotBeReleased) {
  Opened<AcDbLine> l(line, AcDb::kForWrite);
  EXPECT_EQ(l->releaseExtensionDictionary(), Acad::eContainerNotEmpty);
  {
    Opened<AcDbDictionary> dict(l->extensionDictionary(), AcDb::kForWrite);
    AcDbObjectId removed;
    ASSERT_EQ(dict->remove(L"Tag", removed), Acad::eOk);
    Opened<AcDbXrecord> orphan(removed, AcDb::kForRead);
    EXPECT_TRUE(orphan->ownerId().isNull());
  }
  const AcDbObjectId dictionary = l->extensionDictionary();
  EXPECT_EQ(l->releaseExtensionDictionary(), Acad::eOk);
  EXPECT_TRUE(l->extensionDictionary().isNull());
  EXPECT_TRUE(dictionary.isErased());
  EXPECT_EQ(l->releaseExtensionDictionary(), Acad::eNotApplicable);
}

// --- Dictionaries -------------------------------------------------------------------------------

class DrawingWithADictionary : public NewDrawing {
protected:
  void SetUp() override {
    NewDrawing::SetUp();
    Opened<AcDbDictionary> root(db->namedObjectsDictionaryId(), AcDb::kForWrite);
    auto* dict = new AcDbDictionary;
    ASSERT_EQ(root->setAt(L"KD_TEST", dict, dictionary), Acad::eOk);
    dict->close();
  }
  AcDbObjectId Put(const ACHAR* key) {
    Opened<AcDbDictionary> dict(dictionary, AcDb::kForWrite);
    auto* record = new AcDbXrecord;
    AcDbObjectId id;
    EXPECT_EQ(dict->setAt(key, record, id), Acad::eOk);
    record->close();
    return id;
  }
  AcDbObjectId dictionary;
};

TEST_F(DrawingWithADictionary, KeysIgnoreCaseButKeepTheirSpellingAndIterateInOrder) {
  Put(L"beta");
  Put(L"Alpha");
  const AcDbObjectId gamma = Put(L"GAMMA");
  Opened<AcDbDictionary> dict(dictionary, AcDb::kForRead);
  EXPECT_TRUE(dict->has(L"ALPHA"));
  EXPECT_TRUE(dict->has(gamma));
  ACHAR* key = nullptr;
  ASSERT_EQ(dict->nameAt(gamma, key), Acad::eOk);
  EXPECT_EQ(Take(key), L"GAMMA");
  std::vector<std::wstring> keys;
  AcDbDictionaryIterator* it = dict->newIterator();
  for (; !it->done(); it->next()) keys.emplace_back(it->name());
  delete it;
  EXPECT_EQ(keys, (std::vector<std::wstring>{L"Alpha", L"beta", L"GAMMA"}));
}

TEST_F(DrawingWithADictionary, AStarKeyGetsTheNextAnonymousName) {
  const AcDbObjectId first = Put(L"*");
  const AcDbObjectId second = Put(L"*A");
  Opened<AcDbDictionary> dict(dictionary, AcDb::kForRead);
  ACHAR* key = nullptr;
  dict->nameAt(first, key);
  EXPECT_EQ(Take(key), L"*A1");
  dict->nameAt(second, key);
  EXPECT_EQ(Take(key), L"*A2");
}

TEST_F(DrawingWithADictionary, SetAtRefusesWhatItCannotTake) {
  Opened<AcDbDictionary> dict(dictionary, AcDb::kForWrite);
  AcDbObjectId id;
  auto* record = new AcDbXrecord;
  EXPECT_EQ(dict->setAt(L"", record, id), Acad::eInvalidKey);
  EXPECT_EQ(dict->setAt(L"x", nullptr, id), Acad::eNullObjectPointer);
  delete record;
  {
    Opened<AcDbDictionary> root(db->namedObjectsDictionaryId(), AcDb::kForRead);
    EXPECT_EQ(dict->setAt(L"x", root.object, id), Acad::eAlreadyInDb);
  }
  EXPECT_EQ(dict->getAt(L"missing", id), Acad::eKeyNotFound);
  EXPECT_TRUE(dict->setName(L"nothing", L"else") == false);
}

TEST_F(DrawingWithADictionary, ADictionaryOpenForReadTakesNothing) {
  Opened<AcDbDictionary> dict(dictionary, AcDb::kForRead);
  auto* record = new AcDbXrecord;
  AcDbObjectId id;
  EXPECT_EQ(dict->setAt(L"x", record, id), Acad::eNotOpenForWrite);
  delete record;
}

// --- Result buffers and Xrecords ------------------------------------------------------------------

TEST_F(DrawingWithADictionary, AnXrecordKeepsEveryKindOfValue) {
  const AcDbObjectId id = Put(L"values");
  const ads_point where = {1.5, -2.5, 3.25};
  ads_name name;
  acdbGetAdsName(name, dictionary);
  char bytes[3] = {'\x01', '\x00', '\x7f'};
  ads_binary chunk{3, bytes};
  Chain input(acutBuildList(AcDb::kDxfText, L"tag", 10, where, 40, 2.75, 70, 7, 90, -123456, 160,
                            Adesk::Int64(1) << 40, 290, 1, 330, name, 310, &chunk, 1000, L"extra", 0));
  ASSERT_NE(input.rb, nullptr);
  {
    Opened<AcDbXrecord> record(id, AcDb::kForWrite);
    ASSERT_EQ(record->setFromRbChain(*input.rb), Acad::eOk);
  }
  resbuf* out = nullptr;
  {
    Opened<AcDbXrecord> record(id, AcDb::kForRead);
    ASSERT_EQ(record->rbChain(&out), Acad::eOk);
  }
  Chain chain(out);
  std::vector<short> codes;
  for (resbuf* rb = out; rb != nullptr; rb = rb->rbnext) codes.push_back(rb->restype);
  ASSERT_EQ(codes, (std::vector<short>{1, 10, 40, 70, 90, 160, 290, 330, 310, 1000}));
  resbuf* rb = out;
  EXPECT_STREQ(rb->resval.rstring, L"tag");
  rb = rb->rbnext;
  EXPECT_EQ(rb->resval.rpoint[0], 1.5);
  EXPECT_EQ(rb->resval.rpoint[2], 3.25);
  rb = rb->rbnext;
  EXPECT_EQ(rb->resval.rreal, 2.75);
  rb = rb->rbnext;
  EXPECT_EQ(rb->resval.rint, 7);
  rb = rb->rbnext;
  EXPECT_EQ(rb->resval.rlong, -123456);
  rb = rb->rbnext;
  EXPECT_EQ(rb->resval.mnInt64, Adesk::Int64(1) << 40);
  rb = rb->rbnext;
  EXPECT_EQ(rb->resval.rint, 1);
  rb = rb->rbnext;
  AcDbObjectId named;
  ASSERT_EQ(acdbGetObjectId(named, rb->resval.rlname), Acad::eOk);
  EXPECT_EQ(named, dictionary);
  rb = rb->rbnext;
  ASSERT_EQ(rb->resval.rbinary.clen, 3);
  EXPECT_EQ(std::memcmp(rb->resval.rbinary.buf, bytes, 3), 0);
  EXPECT_NE(rb->resval.rbinary.buf, bytes);
  EXPECT_STREQ(rb->rbnext->resval.rstring, L"extra");
}

TEST_F(DrawingWithADictionary, AnXrecordRefusesCodesItCannotHoldAndKeepsItsChain) {
  const AcDbObjectId id = Put(L"values");
  Opened<AcDbXrecord> record(id, AcDb::kForWrite);
  Chain good(acutBuildList(AcDb::kDxfText, L"kept", 0));
  ASSERT_EQ(record->setFromRbChain(*good.rb), Acad::eOk);
  for (int code : {5, 105, 1001, RTSTR, RTDXF0}) {
    Chain bad(acutBuildList(AcDb::kDxfText, L"ok", code, L"x", 0));
    ASSERT_NE(bad.rb, nullptr) << code;
    EXPECT_EQ(record->setFromRbChain(*bad.rb), Acad::eInvalidResBuf) << code;
  }
  resbuf* out = nullptr;
  record->rbChain(&out);
  Chain chain(out);
  ASSERT_NE(out, nullptr);
  EXPECT_STREQ(out->resval.rstring, L"kept");
  EXPECT_EQ(out->rbnext, nullptr);
}

TEST(ResultBuffers, AnUnknownTypeGivesNoChainAtAll) {
  EXPECT_EQ(acutBuildList(AcDb::kDxfText, L"a", 20, 1.0, 0), nullptr);  // 20 is half a point
  EXPECT_EQ(acutBuildList(4999, 0), nullptr);
  Chain list(acutBuildList(RTLB, RTSHORT, 3, RTSTR, L"s", RTLE, 0));
  ASSERT_NE(list.rb, nullptr);
  EXPECT_EQ(list.rb->restype, RTLB);
  EXPECT_EQ(list.rb->rbnext->resval.rint, 3);
  EXPECT_STREQ(list.rb->rbnext->rbnext->resval.rstring, L"s");
  EXPECT_EQ(list.rb->rbnext->rbnext->rbnext->restype, RTLE);
  EXPECT_EQ(acutRelRb(nullptr), RTNORM);
}

// --- Groups -------------------------------------------------------------------------------------

class DrawingWithAGroup : public NewDrawing {
protected:
  void SetUp() override {
    NewDrawing::SetUp();
    a = Append(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0)));
    b = Append(new AcDbCircle(AcGePoint3d(0, 0, 0), AcGeVector3d::kZAxis, 1.0));
    Opened<AcDbDictionary> groups(db->groupDictionaryId(), AcDb::kForWrite);
    auto* g = new AcDbGroup(L"two things");
    ASSERT_EQ(groups->setAt(L"PAIR", g, group), Acad::eOk);
    EXPECT_EQ(g->append(a), Acad::eOk);
    EXPECT_EQ(g->append(b), Acad::eOk);
    g->close();
  }
  std::vector<AcDbObjectId> Members() {
    Opened<AcDbGroup> g(group, AcDb::kForWrite);
    std::vector<AcDbObjectId> ids;
    AcDbGroupIterator* it = g->newIterator();
    for (; !it->done(); it->next()) ids.push_back(it->objectId());
    delete it;
    return ids;
  }
  AcDbObjectId a, b, group;
};

TEST_F(DrawingWithAGroup, ItsMembersAndNameComeBack) {
  EXPECT_EQ(Members(), (std::vector<AcDbObjectId>{a, b}));
  Opened<AcDbGroup> g(group, AcDb::kForRead);
  EXPECT_STREQ(g->name(), L"PAIR");
  EXPECT_STREQ(g->description(), L"two things");
  EXPECT_EQ(g->numEntities(), 2u);
}

TEST_F(DrawingWithAGroup, AnErasedMemberDropsOut) {
  {
    Opened<AcDbEntity> e(a, AcDb::kForWrite);
    e->erase();
  }
  EXPECT_EQ(Members(), (std::vector<AcDbObjectId>{b}));
}

TEST_F(DrawingWithAGroup, AppendRefusesWhatCannotBeAMember) {
  Opened<AcDbGroup> g(group, AcDb::kForWrite);
  EXPECT_EQ(g->append(a), Acad::eAlreadyInDb);
  EXPECT_EQ(g->append(db->clayer()), Acad::eNotAnEntity);
  EXPECT_EQ(g->append(AcDbObjectId::kNull), Acad::eNullObjectId);
  auto* side = new AcDbDatabase;
  EXPECT_EQ(g->append(side->currentSpaceId()), Acad::eWrongDatabase);
  delete side;
  EXPECT_EQ(g->remove(db->clayer()), Acad::eKeyNotFound);
  auto* loose = new AcDbGroup;
  EXPECT_EQ(loose->append(a), Acad::eNotInDatabase);
  delete loose;
}

TEST_F(DrawingWithAGroup, RenamingChangesItsKey) {
  Opened<AcDbGroup> g(group, AcDb::kForWrite);
  EXPECT_EQ(g->setName(L"COUPLE"), Acad::eOk);
  EXPECT_STREQ(g->name(), L"COUPLE");
  Opened<AcDbDictionary> groups(db->groupDictionaryId(), AcDb::kForRead);
  EXPECT_TRUE(groups->has(L"couple"));
  EXPECT_FALSE(groups->has(L"PAIR"));
}

}  // namespace
