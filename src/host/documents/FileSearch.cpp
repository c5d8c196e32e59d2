// The searching thread, and the changes in files that no editor shows.
#include "host/documents/FileSearch.h"

#include <fmt/format.h>

#include <QCoreApplication>
#include <algorithm>
#include <map>
#include <set>

#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

// Longer lines are shown cut; most of them are data.
constexpr std::size_t LongestLine = 500;

bool IsBinary(std::string_view text) {
  return text.substr(0, 4096).find('\0') != std::string_view::npos;
}

// Cut so that no character is torn.
std::size_t WholeCharacters(std::string_view text, std::size_t size) {
  if (size >= text.size()) return text.size();
  while (size > 0 && (text[size] & 0xC0) == 0x80) --size;
  return size;
}

// An edited text of the file in an editor, or null.
TUnitDocument* OpenDocument(const TWorkspace& workspace, const std::string& fileName) {
  TModule* module = workspace.Find(fileName);
  TSourceEditor* source = module != nullptr ? module->FindSource(fileName) : nullptr;
  return source != nullptr ? source->LoadedDocument() : nullptr;
}

void CheckPlaces(const std::string& fileName, std::string_view text,
                 const std::vector<const TFoundPlace*>& places) {
  for (const TFoundPlace* found : places) {
    const std::size_t line = found->Place.Offset - found->Column;
    if (found->Column > found->Place.Offset || found->Place.Offset > text.size() ||
        text.substr(line, found->LineText.size()) != found->LineText)
      throw Exception(
          fmt::format("{}({}): the text is another one than that searched; nothing was "
                      "replaced in this file",
                      fileName, found->Line));
  }
}

void ReplaceInFile(const TWorkspace& workspace, const std::string& fileName,
                   const std::vector<const TFoundPlace*>& places) {
  if (TUnitDocument* document = OpenDocument(workspace, fileName)) {
    CheckPlaces(fileName, document->Text(), places);
    std::vector<TSourceEdit> edits;
    for (const TFoundPlace* found : places)
      edits.push_back({found->Place.Offset, found->Place.Length, found->With});
    return document->ReplaceAll(edits);
  }
  TTextFile file = TTextFile::Load(fileName);
  CheckPlaces(fileName, file.Text(), places);
  std::string text = file.Text();
  for (auto found = places.rbegin(); found != places.rend(); ++found)
    text.replace((*found)->Place.Offset, (*found)->Place.Length, (*found)->With);
  file.SetText(std::move(text));
  file.Save();
}

}  // namespace

std::vector<TFoundPlace> FindPlaces(const TTextSearch& search, const std::string& fileName,
                                    std::string_view text, const std::string* with,
                                    std::size_t limit) {
  std::vector<TFoundPlace> places;
  TPlaceFinder lines(text);
  for (const TTextMatch& match : search.FindAll(text, limit)) {
    TFoundPlace& found = places.emplace_back();
    const TSourcePlace place = lines.At(match.Offset);
    found.FileName = fileName;
    found.Line = place.Line;
    found.Place = match;
    found.Column = static_cast<std::size_t>(place.Column - 1);
    const std::string_view rest = text.substr(match.Offset - found.Column);
    const std::string_view line = rest.substr(0, rest.find_first_of("\r\n"));
    found.LineText = line.substr(0, WholeCharacters(line, LongestLine));
    if (with != nullptr) found.With = search.Replacement(text, match, *with);
  }
  return places;
}

std::vector<TSearchedFile> FilesToSearch(const TWorkspace& workspace) {
  std::vector<TSearchedFile> files;
  std::set<std::string> known;
  const auto add = [&](const std::string& name) {
    if (!name.empty() && known.insert(name).second) files.push_back({name, {}});
  };
  if (TProjectHolder* holder = workspace.Project()) {
    const TProject& project = holder->Project();
    add(project.FileName());
    add(project.DescriptionName());
    for (const TProjectModule& module : project.Modules()) {
      if (module.State == TModuleState::Missing) continue;
      add(module.FileName);
      if (LanguageOfFile(module.FileName) == TSourceLanguage::Cpp) add(FindHeader(module.FileName));
      add(FindFormFile(module.FileName, project.Symbols()));
    }
    const std::string folder = ExtractFilePath(project.DescriptionName());
    for (const std::string& file : project.Description().OtherFiles)
      if (const std::string name = ResolveFileName(folder, file); FileExists(name)) add(name);
  }
  for (const TModule* module : workspace.Modules())
    for (const TIntf<TSourceEditor>& source : module->Sources()) {
      const TUnitDocument* document = source->LoadedDocument();
      if (document == nullptr) continue;
      add(document->FileName());
      if (document->Modified())
        std::find_if(files.begin(), files.end(), [&](const TSearchedFile& file) {
          return file.FileName == document->FileName();
        })->Text = document->Text();
    }
  return files;
}

void TFileSearch::Start(std::vector<TSearchedFile> files, const std::string& pattern,
                        const TSearchOptions& options, std::optional<std::string> with) {
  auto search = std::make_shared<TTextSearch>(pattern, options);
  Stop();
  FReceiver = std::make_unique<QObject>();
  FStop = false;
  FRunning = true;
  FThread = std::thread([this, files = std::move(files), search, with = std::move(with)] {
    Run(files, *search, with);
  });
}

void TFileSearch::Stop() {
  FStop = true;
  if (FThread.joinable()) FThread.join();
  FRunning = false;
  if (FReceiver == nullptr) return;
  // This may be called by what it receives.
  QCoreApplication::removePostedEvents(FReceiver.get());
  FReceiver.release()->deleteLater();
}

template <class Call>
void TFileSearch::Tell(Call call) {
  QMetaObject::invokeMethod(FReceiver.get(), std::move(call), Qt::QueuedConnection);
}

void TFileSearch::Run(const std::vector<TSearchedFile>& files, const TTextSearch& search,
                      const std::optional<std::string>& with) {
  const int all = static_cast<int>(files.size());
  std::size_t left = MostPlaces;
  for (int done = 0; done < all && left > 0 && !FStop; ++done) {
    const TSearchedFile& file = files[static_cast<std::size_t>(done)];
    std::vector<TFoundPlace> places;
    try {
      const std::string text = file.Text ? *file.Text : TTextFile::Load(file.FileName).Text();
      if (!IsBinary(text))
        places = FindPlaces(search, file.FileName, text, with ? &*with : nullptr, left);
    } catch (const Exception&) {
      // A file that cannot be read holds nothing that could be shown.
    }
    left -= places.size();
    if (!places.empty())
      Tell([this, places = std::move(places)] {
        if (OnFound) OnFound(places);
      });
    constexpr int Step = 16;
    if (done % Step == 0)
      Tell([this, done, all] {
        if (OnProgress) OnProgress(done, all);
      });
  }
  Tell([this, whole = left > 0] {
    FRunning = false;
    if (OnEnd) OnEnd(whole);
  });
}

std::vector<std::string> ReplaceInFiles(const TWorkspace& workspace,
                                        const std::vector<TFoundPlace>& places) {
  std::map<std::string, std::vector<const TFoundPlace*>> files;
  for (const TFoundPlace& found : places) files[found.FileName].push_back(&found);
  std::vector<std::string> troubles;
  for (auto& [name, found] : files) {
    std::sort(found.begin(), found.end(), [](const TFoundPlace* left, const TFoundPlace* right) {
      return left->Place.Offset < right->Place.Offset;
    });
    try {
      ReplaceInFile(workspace, name, found);
    } catch (const Exception& e) {
      troubles.push_back(e.Message());
    }
  }
  return troubles;
}

}  // namespace wrenfold
