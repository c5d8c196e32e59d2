// Lists of objects by their identifiers.
#include <gmock/gmock.h>

#include "foundation/rkClasses.h"
#include "locale/rkLocale.h"

namespace wrenfold {
namespace {

class TNamed : public TObject, public TInterfacedObject<IIdentIntf> {
 public:
  explicit TNamed(const std::string& ident, int* alive = nullptr) : FIdent(ident), FAlive(alive) {
    if (FAlive != nullptr) ++*FAlive;
  }
  ~TNamed() override {
    if (FAlive != nullptr) --*FAlive;
  }
  std::string GetIdent() override { return FIdent; }

 private:
  std::string FIdent;
  int* FAlive;
};

std::string AddError(TIdentList& list, TObject* object) {
  try {
    list.Add(object);
  } catch (const EIdentListError& error) {
    return error.Message();
  }
  return "no error";
}

TEST(IdentListTest, KeepsOrderWhateverTheOrderOfAdding) {
  TNamed beta("beta"), alpha("Alpha"), gamma("GAMMA"), under("_x");
  TIdentList list;
  for (TObject* object : std::initializer_list<TObject*>{&gamma, &under, &alpha, &beta})
    list.Add(object);
  std::vector<TObject*> items;
  for (int i = 0; i < list.Count(); ++i) items.push_back(list.Items(i));
  EXPECT_THAT(items, testing::ElementsAre(&under, &alpha, &beta, &gamma));

  int index = -1;
  EXPECT_TRUE(list.Find("gamma", index));
  EXPECT_EQ(index, 3);
  EXPECT_FALSE(list.Find("delta", index));
  EXPECT_EQ(index, 3) << "where it would be inserted";
  list.Remove(&alpha);
  list.Remove(&alpha);
  EXPECT_EQ(list.IndexOf(&beta), 1);
  EXPECT_THROW(list.Delete(3), EListError);
  EXPECT_THROW(list.Items(-1), EListError);
}

TEST(IdentListTest, RefusesWithTheReasonAndStaysAsItWas) {
  TNamed alpha("alpha"), same("Alpha"), digit("1a"), empty(""), blank("a b"), umlaut("\xC3\xA4");
  TObject plain;
  TIdentList list;
  list.Add(&alpha);
  EXPECT_EQ(AddError(list, &same), "Identifier value must be unique [Alpha]");
  EXPECT_EQ(AddError(list, &digit), "Unacceptable value for identifier [1a]");
  EXPECT_EQ(AddError(list, &empty), "Unacceptable value for identifier []");
  EXPECT_EQ(AddError(list, &blank), "Unacceptable value for identifier [a b]");
  EXPECT_EQ(AddError(list, &umlaut), "Unacceptable value for identifier [\xC3\xA4]");
  EXPECT_EQ(AddError(list, &plain), "Object should support interface IIdentIntf");
  EXPECT_EQ(AddError(list, nullptr), "Object should support interface IIdentIntf");
  EXPECT_EQ(list.Count(), 1);
}

TEST(IdentListTest, MessagesFollowTheLanguage) {
  LoadNewLanguage(std::string(WRENFOLD_BIN_DIR) + "/wren_ger.dll");
  TNamed digit("1a");
  TIdentList list;
  EXPECT_EQ(AddError(list, &digit), "Unzulässiger Wert für einen Bezeichner [1a]");
  FreeLocale();
}

TEST(IdentIntfListTest, HoldsAReferenceUntilTakenOut) {
  int alive = 0;
  TIdentIntfList list;
  list.Add(new TNamed("a", &alive));
  list.Add(new TNamed("b", &alive));
  EXPECT_EQ(alive, 2);
  EXPECT_THROW(list.Add(new TNamed("B", &alive)), EIdentListError);
  EXPECT_EQ(alive, 2) << "a refused object";
  EXPECT_THROW(list.Add(nullptr), EIdentListError);
  list.Delete(0);
  EXPECT_EQ(alive, 1);
  EXPECT_EQ(list.Items(0)->GetIdent(), "b");
  list.Clear();
  EXPECT_EQ(alive, 0);
}

}  // namespace
}  // namespace wrenfold
