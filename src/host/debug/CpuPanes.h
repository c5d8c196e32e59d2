// The panes of the CPU window. Packages find them by name and read their published properties.
#pragma once

#include <QTreeWidget>
#include <memory>
#include <string>
#include <vector>

#include "host/debug/CpuValues.h"
#include "host/debug/DebugSession.h"
#include "platform/widgets/Control.h"

namespace wrenfold {

// What all panes are: a list of lines in a fixed-width font, which copies as text.
class TCpuPane : public TControlOf<QTreeWidget> {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  // The selected lines, or all of them when at most one is selected; columns are parted by blanks.
  std::string CopyText() const;

 protected:
  TCpuPane(TComponent* owner, QWidget* parent, TDebugSession& session, const char* name,
           const QString& title, const QString& tip, const QStringList& columns);
  void keyPressEvent(QKeyEvent* event) override;

  TDebugSession& FSession;
};

// The code around the place where the program stopped. What was read stays while the program stays
// in it, so that stepping does not move the lines; reading goes on at both ends.
class TDisassemblyPane final : public TCpuPane {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TDisassemblyPane(TComponent* owner, QWidget* parent, TDebugSession& session);

  // The address of the selected line, 0 without one. Setting it inside an instruction selects the
  // next one. What is shown does not move; behind its end it is read on, which may take a moment:
  // a package that goes line by line waits for it here, a quarter of a second in all on its way.
  std::int64_t SelectedAddress() const;
  void SetSelectedAddress(std::int64_t address);
  // The line's parts; the text of the instruction begins with its address.
  std::string SelectedLabel() const;
  std::string SelectedSource() const;
  std::string SelectedDisassembly() const;

  // Shows the code at the address, whatever is shown now.
  void GoTo(std::uint64_t address);
  void Update();
  // Shows breakpoints and the program's place as they are now.
  void Mark();

 private:
  void Take(std::uint64_t address, const std::vector<TCodeLine>& lines);
  void Append(const std::vector<TCodeLine>& lines);
  void Prepend(std::vector<TCodeLine> lines);
  void ReadOn();
  void ReadBack();
  void WaitForMore();
  // The items of a line, the instruction's last.
  QList<QTreeWidgetItem*> MakeItems(const TCodeLine& line);
  void MarkLine(std::size_t index);
  const TCodeLine* SelectedLine() const;
  int IndexOf(std::uint64_t address) const;
  void ScrollTo(int index);
  void ReadMore(int scrollValue);
  std::string SourceText(const TCodePlace& place);

  std::vector<TCodeLine> FLines;
  std::vector<QTreeWidgetItem*> FItems;  // of the instructions, one for each line
  bool FReading = false;
  static constexpr int MaxPatience = 250;
  int FPatience = MaxPatience;  // milliseconds that a package may still wait for lines
  std::map<std::string, std::vector<std::string>> FSources;
};

// The registers, those that changed marked; a value is edited in place.
class TRegisterPane final : public TCpuPane {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TRegisterPane(TComponent* owner, QWidget* parent, TDebugSession& session);

  TPersistent* CurrentRegs() const { return FCurrent.get(); }
  void Update();

 private:
  void Edited(QTreeWidgetItem* item);

  std::unique_ptr<TCpuValues> FCurrent;
  TRegisterValues FLast;
  bool FFilling = false;
};

// The flags; a click on one that a program may change turns it.
class TFlagsPane final : public TCpuPane {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TFlagsPane(TComponent* owner, QWidget* parent, TDebugSession& session);

  TPersistent* CurrentFlags() const { return FCurrent.get(); }
  void Update();

 private:
  void Turn(int row);

  std::unique_ptr<TCpuValues> FCurrent;
  std::uint64_t FLast = 0;
};

// Memory as bytes and text, sixteen a line.
class TDumpPane final : public TCpuPane {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TDumpPane(TComponent* owner, QWidget* parent, TDebugSession& session);

  void GoTo(std::uint64_t address);
  void Update();

 private:
  void Take(const std::string& bytes);

  std::uint64_t FAddress = 0;
  std::string FBytes;
};

// The words on the stack, from the stack pointer up.
class TStackPane final : public TCpuPane {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TStackPane(TComponent* owner, QWidget* parent, TDebugSession& session);

  void Update();

 private:
  void Take(std::uint64_t address, std::size_t width, const std::string& bytes);
};

}  // namespace wrenfold
