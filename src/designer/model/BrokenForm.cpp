#include "designer/model/BrokenForm.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "platform/core/stream/Bytes.h"
#include "platform/core/stream/FormText.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";

bool Opens(std::string_view line) {
  for (const std::string_view word : {"object ", "inherited ", "inline "})
    if (line.size() > word.size() && EqualText(line.substr(0, word.size()), word)) return true;
  return false;
}

bool OpensItem(std::string_view line) {
  return EqualText(line, "item") || (line.size() > 5 && EqualText(line.substr(0, 5), "item "));
}

bool Closes(std::string_view line) {
  return EqualText(line, "end") || EqualText(line, "end>");
}

// A place in the text where a component begins or ended, and how many are open there.
struct TCut {
  std::size_t Position = 0;
  int Open = 0;
};

// All such places, in order; those inside of collections are left out.
std::vector<TCut> FindCuts(std::string_view text) {
  std::vector<TCut> cuts;
  int open = 0, items = 0;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    const std::string_view line = Trim(text.substr(start, end - start));
    if (items == 0 && Opens(line)) {
      cuts.push_back({start, open++});
    } else if (OpensItem(line)) {
      ++items;
    } else if (Closes(line)) {
      if (items > 0) --items;
      else --open;
    }
    start = end + 1;
  }
  return cuts;
}

std::unique_ptr<TDesignComponent> ReadText(const std::string& text) {
  try {
    std::size_t position = 0;
    TByteWriter binary;
    ObjectTextToBinary(text, position, binary);
    return ReadDesignForm(binary.ToString());
  } catch (const Exception&) {
    return nullptr;
  }
}

// The longest beginning that is a form when what is open is closed. Halving finds it: what breaks a
// text breaks all that is longer.
std::unique_ptr<TDesignComponent> SalvageText(std::string_view text) {
  if (auto whole = ReadText(std::string(text))) return whole;  // more follows its end
  const auto cuts = FindCuts(text);
  std::unique_ptr<TDesignComponent> best;
  std::size_t least = 1, most = cuts.size();
  while (least < most) {
    const std::size_t middle = least + (most - least) / 2;
    std::string part(text.substr(0, cuts[middle].Position));
    for (int i = 0; i < cuts[middle].Open; ++i) part += "\nend";
    auto form = ReadText(part + "\n");
    if (form != nullptr) {
      best = std::move(form);
      least = middle + 1;
    } else {
      most = middle;
    }
  }
  return best;
}

// Copies a stream property by property and closes what is open where it breaks.
class TStreamSalvage {
 public:
  explicit TStreamSalvage(std::string_view stream) : FReader(stream) {}

  std::string Salvage() {
    try {
      FReader.ReadSignature();
      FWhole.WriteSignature();
      CopyHead();
      while (FOpen > 0) {
        if (FReader.SkipEndOfList("a component")) {
          FWhole.WriteEndOfList();
          --FOpen;
        } else {
          CopyHead();
        }
      }
    } catch (const EReadError&) {
      if (FInProperties) FWhole.WriteEndOfList();
    }
    for (; FOpen > 0; --FOpen) FWhole.WriteEndOfList();
    return FWhole.ToString();
  }

 private:
  // Prefix, names and properties, each whole or not at all.
  void CopyHead() {
    const std::size_t start = FReader.Position();
    if ((FReader.ReadFilerFlags() & ffChildPos) != 0) FReader.ReadIntegerValue();
    FReader.ReadShortString("a class name");
    FReader.ReadShortString("a component name");
    FWhole.WriteBytes(FReader.Since(start));
    ++FOpen;
    FInProperties = true;
    while (!FReader.SkipEndOfList("a property")) {
      const std::size_t property = FReader.Position();
      FReader.ReadShortString("a property name");
      FReader.SkipValue();
      FWhole.WriteBytes(FReader.Since(property));
    }
    FWhole.WriteEndOfList();
    FInProperties = false;
  }

  TByteReader FReader;
  TByteWriter FWhole;
  std::size_t FOpen = 0;
  bool FInProperties = false;
};

std::unique_ptr<TDesignComponent> SalvageStream(std::string_view stream) {
  try {
    return ReadDesignForm(TStreamSalvage(stream).Salvage());
  } catch (const Exception&) {
    return nullptr;
  }
}

}  // namespace

std::unique_ptr<TDesignComponent> SalvageForm(const std::string& bytes) {
  std::string_view form = bytes;
  if (form.starts_with(Utf8Mark)) form.remove_prefix(Utf8Mark.size());
  switch (TestFormFormat(form)) {
    case TFormFormat::Text:
      return SalvageText(form);
    case TFormFormat::Binary:
      return SalvageStream(form);
    case TFormFormat::Resource: {
      const std::size_t start = form.find(FilerSignature);
      return start != form.npos ? SalvageStream(form.substr(start)) : nullptr;
    }
    default:
      return nullptr;
  }
}

}  // namespace wrenfold
