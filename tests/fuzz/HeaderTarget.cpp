// The data header, and the body behind it.
#include "fuzz/Targets.h"
#include "storage/TestObjects.h"
#include "storage/rkDataBody.h"

namespace wrenfold {
namespace {

// What is no header at all has no place to tell.
constexpr std::string_view NoHeader = "Required label not found";

void LoadBody(std::string_view bytes, TMsgDlgBtn answer) {
  const TAnswers answers(answer);
  TSample sample;
  TStringStream stream{std::string(bytes)};
  Succeeds([&] { LoadObjectData({&sample}, stream); }, {"offset ", "Line ", "line ", NoHeader});
}

}  // namespace

void FuzzDataHeader(std::string_view bytes) {
  TStringStream stream{std::string(bytes)};
  TObjectStorageFormat format = osfBin;
  bool isResource = false;
  std::string description;
  const auto read = [&] { ReadDataHeader(stream, format, isResource, description); };
  if (!Succeeds(read, {"offset ", NoHeader})) return;
  Promise(format == osfBin || format == osfText, "a header announces binary or text");
  TStringStream again;
  if (format == osfBin) {
    WriteBinDataHeader(again, isResource, description);
    Promise(bytes.starts_with(again.DataString()), "a binary header comes back");
  }
  LoadBody(bytes, mbYes);
  LoadBody(bytes, mbNo);
}

}  // namespace wrenfold
