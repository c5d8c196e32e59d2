// Runs the tests of the widgets' layer inside a real application.
#include <gmock/gmock.h>

#include <cstdio>

#include "platform/widgets/Application.h"

namespace {

// The platform without a screen says so at every window that is to come to the front.
void PrintMessage(QtMsgType, const QMessageLogContext&, const QString& text) {
  if (!text.contains("does not support raise()")) std::fprintf(stderr, "%s\n", qPrintable(text));
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  qInstallMessageHandler(PrintMessage);
  wrenfold::TApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
