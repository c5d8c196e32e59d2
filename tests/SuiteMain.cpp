// Runs tests of the suite inside a real application, with settings of their own.
#include <gmock/gmock.h>

#include <QSettings>
#include <QTemporaryDir>
#include <cstdio>

#include "AccessibleNames.h"
#include "platform/widgets/Application.h"

namespace {

// The platform without a screen says so at every window that is to come to the front.
void PrintMessage(QtMsgType, const QMessageLogContext&, const QString& text) {
  if (!text.contains("does not support")) std::fprintf(stderr, "%s\n", qPrintable(text));
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  qInstallMessageHandler(PrintMessage);
  const QTemporaryDir settings;
  for (const auto format : {QSettings::NativeFormat, QSettings::IniFormat})
    QSettings::setPath(format, QSettings::UserScope, settings.path());
  wrenfold::TApplication application(argc, argv);
  // Owned by the test program, which ends before the application.
  auto* names = new wrenfold::test::TAccessibleNames;
  testing::UnitTest::GetInstance()->listeners().Append(names);
  const int result = RUN_ALL_TESTS();
  application.removeEventFilter(names);
  return result;
}
