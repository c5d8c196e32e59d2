// The watch over accessible names itself: it must see what it is there for.
#include <gmock/gmock.h>

#include <QLabel>
#include <QLineEdit>

#include "AccessibleNames.h"
#include "platform/widgets/Application.h"

namespace wrenfold::test {
namespace {

class TNamelessForm : public TForm {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TNamelessForm>("TNamelessForm", TForm::ClassInfo());
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
};

TEST(AccessibleNames, AFieldWithoutNameOrLabelIsFoundAndALabelledOneIsNot) {
  TNamelessForm form;
  QLineEdit labelled(&form), named(&form);
  QLabel label("Name", &form);
  label.setBuddy(&labelled);
  named.setAccessibleName("Other");
  QComboBox nameless;
  nameless.addItem("its text is no name");
  nameless.setObjectName("box");
  TAccessibleNames watch;
  form.Show();
  QApplication::setActiveWindow(&form);
  EXPECT_THAT(watch.Nameless(), testing::IsEmpty());
  nameless.setParent(&form);
  nameless.show();
  watch.Look(&form);
  EXPECT_THAT(watch.Nameless(), testing::ElementsAre("TNamelessForm: QComboBox box"));
  nameless.setAccessibleName("Box");  // for the watch over all tests
}

}  // namespace
}  // namespace wrenfold::test
