// What the tests of the workbench share: a workbench with files of its own and scripted answers.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "host/shell/Workbench.h"
#include "platform/core/model/Dialogs.h"
#include "platform/widgets/Application.h"
#include "project/TestSupport.h"

namespace wrenfold {

// A workbench without a screen. Questions are answered from Answers, in order, and kept in Asked; a
// question that no answer was put down for fails the test.
class HostTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // A program of two forms and a unit, written to Folder.
  std::string WriteProject();
  // The name of the file of a unit of that project.
  std::string FileOf(const std::string& unit) const { return Folder.Path() + "/" + unit + ".pas"; }
  TEditPage& OpenPage(const std::string& fileName);
  // As its menu item or button does.
  void Run(const char* command) { Workbench->Commands().Find(command)->Execute(); }
  // As the user types, at the beginning of the active page.
  void Type(const std::string& text);
  TUnitDocument& Document(const std::string& fileName);
  bool HasMessage(const std::string& part) const;
  void Restart();

  TTemporaryFolder Folder;
  std::unique_ptr<TWorkbench> Workbench;
  std::deque<TMsgDlgBtn> Answers;
  std::vector<std::string> Asked;

 private:
  TMessageDlgProc FDialogs;
};

}  // namespace wrenfold
