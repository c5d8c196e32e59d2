// The source of a unit shown inside a window of the suite.
#pragma once

#include <Qsci/qsciscintilla.h>

#include <string>

#include "ide/rkOTAUtils.h"
#include "platform/source/Highlighting.h"

namespace wrenfold {

// A view with the colours of the language. Where the environment's editor can be written to and the
// user may, what is typed here goes into its text at once.
class TSourcePreview : public QsciScintilla {
 public:
  explicit TSourcePreview(QWidget* parent);

  void ShowSource(TIntf<IOTASourceEditor> editor, bool readOnly);
  void Clear();
  // The user changed the text since it was shown.
  bool Edited() const { return FEdited; }

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void TextModified(int position, int type, const char* text, int length);
  void SetText(const std::string& text);

  THighlighter FHighlighter;
  TIntf<IOTATextWriter> FWriter;
  bool FFilling = false, FEdited = false;
};

}  // namespace wrenfold
