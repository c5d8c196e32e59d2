#include "spec/rkSpcMng.h"

#include <cmath>

#include "locale/rkLocale.h"
#include "platform/core/model/Dialogs.h"
#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"
#include "storage/rkStorage.h"

namespace wrenfold {

namespace {

// "e_ver: " and "d_ver: ": a label and one character behind it.
constexpr std::string_view EditorLabel = "e_ver:";
constexpr std::string_view DelphiLabel = "d_ver:";
constexpr std::size_t LabelWidth = EditorLabel.size() + 1;

struct TVersions {
  TVersionNumber Editor = 0;
  TVersionNumber Delphi = 0;
};

double AsDecimal(TVersionNumber version) {
  return static_cast<double>(version) / 10000;
}

[[noreturn]] void RaiseIncorrect(const std::string& description) {
  throw ESpcMngError(LocaleFormat(sIncorrectVersionInfo, description));
}

TVersionNumber ParseVersion(std::string_view text) {
  const double version = StrToFloat(Trim(text)) * 10000;
  if (!(std::abs(version) < 9e18))
    throw EConvertError("Version out of range: " + std::string(text));
  return std::llround(version);
}

TVersions ParseBinary(const std::string& description) {
  const std::string_view text = description;
  const auto blank = text.find(' ');
  if (blank == text.npos) RaiseIncorrect(description);
  return {ParseVersion(text.substr(0, blank)), ParseVersion(text.substr(blank + 1))};
}

std::string_view Between(std::string_view text, std::size_t start, std::size_t end) {
  return start < end ? text.substr(start, end - start) : std::string_view();
}

TVersions ParseText(const std::string& description) {
  const std::string_view text = description;
  const auto editor = text.find(EditorLabel);
  const auto delphi = text.find(DelphiLabel);
  if (editor == text.npos || delphi == text.npos) RaiseIncorrect(description);
  return {ParseVersion(Between(text, editor + LabelWidth, delphi)),
          ParseVersion(Between(text, delphi + LabelWidth, text.size()))};
}

bool Refused(int question, const std::string& fileName, TVersionNumber own, TVersionNumber found) {
  const std::string text = LocaleFormat(question, fileName, AsDecimal(own), AsDecimal(found));
  return LocaleMessageDlg(text, mtWarning, {mbYes, mbNo}) != mbYes;
}

}  // namespace

TSaveSpcProc SaveSpcProc = SaveSpcInner;
TLoadSpcProc LoadSpcProc = LoadSpcInner;

void SaveSpc(TSpcObject& spc, const std::string& fileName, TObjectStorageFormat format) {
  SaveSpcProc(spc, fileName, format);
}

TObjectStorageFormat LoadSpc(std::unique_ptr<TSpcObject>& spc, const std::string& fileName,
                             bool askOnErrors, bool recreate) {
  return LoadSpcProc(spc, fileName, askOnErrors, recreate);
}

void SaveSpcInner(TSpcObject& spc, const std::string& fileName, TObjectStorageFormat format) {
  TObjectSaver saver;
  saver.OriginalFormat = format == osfText ? sofText : sofBinary;
  saver.SaveObjects({&spc}, {}, fileName);
}

TObjectStorageFormat LoadSpcInner(std::unique_ptr<TSpcObject>& spc, const std::string& fileName,
                                  bool askOnErrors, bool recreate) {
  if (!FileExists(fileName)) throw ESpcMngError(LocaleFormat(sSpcFileNotFound, fileName));
  if (spc == nullptr) throw ESpcMngError(LocaleStr(sSpcNotGiven));
  TObjectSaver saver;
  saver.RecognitionOn = true;
  saver.IgnoreErrors = !askOnErrors;
  if (RecognizeFormat(ReadWholeFile(fileName)) == sofUnknown)
    throw ESpcMngError(LocaleStr(sUnknownSpcFormat));
  if (recreate) RecreateSpc(spc);
  saver.LoadObjects({spc.get()}, fileName);
  return saver.OriginalFormat == sofText ? osfText : osfBin;
}

void RecreateSpc(std::unique_ptr<TSpcObject>& spc) {
  if (spc == nullptr) throw ESpcMngError(LocaleStr(sSpcNotGiven));
  const TTypeInfo& info = spc->GetClassInfo();
  std::unique_ptr<TPersistent> made = info.Make();
  auto* fresh = dynamic_cast<TSpcObject*>(made.get());
  if (fresh == nullptr) throw ESpcMngError("Objects of class " + info.Name() + " cannot be made");
  static_cast<void>(made.release());
  spc.reset(fresh);
}

std::string MakeVerInfo(TObjectStorageFormat format) {
  const double editor = AsDecimal(cEditorVersion);
  const double delphi = AsDecimal(cDelphiVersion);
  if (format == osfBin) return Format("%f %f", editor, delphi);
  if (format == osfText) return Format("%s %f %s %f", EditorLabel, editor, DelphiLabel, delphi);
  return {};
}

void CheckVer(const TObjDataDscr& dscr, const std::string& description, bool& cancel,
              const TSpecData& data) {
  cancel = false;
  TVersions found;
  if (dscr.Format == osfBin) found = ParseBinary(description);
  if (dscr.Format == osfText) found = ParseText(description);
  if (!data.CheckVersion) return;
  if (found.Editor > cEditorVersion)
    cancel = Refused(sLaterEditorVersion, data.FileName, cEditorVersion, found.Editor);
  if (found.Delphi == cQuestionableDelphiVersion)
    cancel = Refused(sLaterDelphiVersion, data.FileName, cDelphiVersion, found.Delphi);
}

void FillInitData(TInitData& initData) {
  initData.SaveSpc = SaveSpc;
  initData.LoadSpc = LoadSpc;
  initData.RecreateSpc = RecreateSpc;
  initData.GetProps = GetProps;
  initData.SetProps = SetProps;
  initData.GetInstanceID = ClassifyInstance;
}

}  // namespace wrenfold
