// Packages: what is no package is refused in words, what is one is ended in order.
#include "host/HostTest.h"

namespace wrenfold {
namespace {

std::string PackageFile(const std::string& name) {
  return std::string(WRENFOLD_BIN_DIR) + "/" + name;
}

enum TDamage { None, CutTo64, CutTo2000, CutInTheMiddle, CutNearTheEnd, Text, Gone, Noise };
struct TPackageCase {
  const char* Name;
  const char* Library;
  TDamage Damage;
  const char* Expected;
};
class Package : public HostTest, public testing::WithParamInterface<TPackageCase> {
 protected:
  std::string Prepare() {
    std::string bytes = Folder.Read(PackageFile(GetParam().Library));
    switch (GetParam().Damage) {
      case CutTo64:
        bytes.resize(64);
        break;
      case CutTo2000:
        bytes.resize(2000);
        break;
      case CutInTheMiddle:
        bytes.resize(bytes.size() / 2);
        break;
      // The section headers at the end are not needed; what is loaded ends before.
      case CutNearTheEnd:
        bytes.resize(bytes.size() * 2 / 3);
        break;
      case Text:
        bytes = "this is no library\n";
        break;
      case Noise:
        bytes.replace(64, 512, std::string(512, '\xA5'));
        break;
      case Gone:
        return Folder.Path() + "/Package.so";
      default:
        break;
    }
    return Folder.Write("Package.so", bytes);
  }
};

TEST_P(Package, ThatCannotBeLoadedIsNamedAndTheWorkbenchGoesOn) {
  const std::string file = Prepare();
  EXPECT_FALSE(Workbench->Packages().Load(file));
  EXPECT_TRUE(HasMessage(file)) << Workbench->Messages().Text(0);
  EXPECT_TRUE(HasMessage(GetParam().Expected)) << Workbench->Messages().Text(0);
  EXPECT_EQ(Workbench->Services().WizardCount(), 0);
  EXPECT_TRUE(Workbench->Documents().OpenProject(WriteProject()));
}
const TPackageCase PackageCases[] = {
    {"NoRegister", "test_package_plain.so", None, "with the entry \"Register\""},
    {"RegisterFails", "test_package_failing.so", None, "no luck today"},
    {"Missing", "test_package_plain.so", Gone, "there is no such file"},
    {"Text", "test_package_plain.so", Text, "it cannot be read, or is too short"},
    {"CutInTheHeader", "test_package_wizard.so", CutTo64, "list of segments"},
    {"CutBehindTheHeader", "test_package_wizard.so", CutTo2000, "it was cut off"},
    {"CutInTheMiddle", "test_package_wizard.so", CutInTheMiddle, "it was cut off"},
    {"NoiseForSegments", "test_package_wizard.so", Noise, "it was cut off"},
};
INSTANTIATE_TEST_SUITE_P(Host, Package, testing::ValuesIn(PackageCases), CaseName);

class Packages : public HostTest {};

TEST_F(Packages, WizardEndsBeforeTheMenusDo) {
  ASSERT_TRUE(Workbench->Packages().Load(PackageFile("test_package_wizard.so")));
  EXPECT_EQ(Workbench->Services().WizardCount(), 1);
  EXPECT_NE(Workbench->Commands().Menu().Items()->Find("Sample"), nullptr);
  Workbench->Packages().Unload();
  EXPECT_EQ(Workbench->Caption(), "ended in order");
  EXPECT_EQ(Workbench->Commands().Menu().Items()->Find("Sample"), nullptr);
}

}  // namespace
}  // namespace wrenfold
