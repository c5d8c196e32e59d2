// The local menus of rows: lines of a list, and pictures.
#pragma once

#include <vector>

#include "platform/widgets/Menus.h"

namespace wrenfold {

class ILines;
class TSpcImage;

// Adds, inserts, deletes and edits lines of the control that it was opened for, which is an ILines.
class TLinesMenu : public TPopupMenu {
 public:
  explicit TLinesMenu(TComponent* owner);
  // Sets which items can be chosen; the menu does so itself when it opens.
  void UpdateItems();

 private:
  using TCommand = void (TLinesMenu::*)(ILines& lines, QWidget* widget);
  struct TItem;
  static const TItem Commands[];
  void Opening(TObject*) { UpdateItems(); }
  void ItemClick(TObject* sender);
  ILines* Lines() const;

  void AddLine(ILines& lines, QWidget* widget);
  void InsertLine(ILines& lines, QWidget* widget);
  void DeleteLine(ILines& lines, QWidget* widget);
  void ClearLines(ILines& lines, QWidget* widget);
  void EditLine(ILines& lines, QWidget* widget);
  void LoadLines(ILines& lines, QWidget* widget);
  void SaveLines(ILines& lines, QWidget* widget);
};

// The commands of the image that it was opened for.
class TPictureMenu : public TPopupMenu {
 public:
  explicit TPictureMenu(TComponent* owner);
  void UpdateItems();

 private:
  struct TItem;
  static const TItem Commands[];
  void Opening(TObject*) { UpdateItems(); }
  void ItemClick(TObject* sender);
  TSpcImage* Image() const;
};

}  // namespace wrenfold
