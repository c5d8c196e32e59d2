#include "spec/rkSpcConst.h"

#include "locale/rkLocale.h"

namespace wrenfold {

std::string SBinExt() {
  return LocaleStr(sSpcBinExt);
}

std::string SResBinExt() {
  return LocaleStr(sSpcResBinExt);
}

std::string SExBinExt() {
  return LocaleStr(sSpcExBinExt);
}

std::string STextExt() {
  return LocaleStr(sSpcTextExt);
}

std::string SObjectFormCaption() {
  return LocaleStr(sObjectFormCaption);
}

std::string SEditorSection() {
  return LocaleStr(sEditorSection);
}

std::string SLabelCaption() {
  return LocaleStr(sLabelCaption);
}

std::string SPseudoNewLine() {
  return LocaleStr(sPseudoNewLine);
}

std::string SControlPostfix() {
  return LocaleStr(sControlPostfix);
}

std::string SpcFileFilter() {
  return LocaleFormat(sSpcFilter, SBinExt(), SBinExt(), STextExt(), STextExt());
}

}  // namespace wrenfold
