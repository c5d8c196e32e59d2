// How fast forms are converted, read and written, against a plain copy of the same text.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/core/stream/DesignComponent.h"
#include "platform/core/stream/FormText.h"
#include "platform/core/system/Files.h"

namespace wrenfold {
namespace {

// The forms of a folder, each as text with CR LF and as binary stream.
struct TForms {
  std::vector<std::string> Texts;
  std::vector<std::string> Streams;
  std::string AllText;
  std::size_t AllStreams = 0;
};

void AddForm(const std::string& bytes, TForms& forms) {
  TByteWriter stream;
  TByteWriter text;
  if (TestFormFormat(bytes) == TFormFormat::Text) {
    std::size_t position = 0;
    ObjectTextToBinary(bytes, position, stream);
    TByteReader reader(stream.View());
    ObjectBinaryToText(reader, text);
  } else {
    TByteReader resource(bytes);
    ObjectResourceToText(resource, text);
    std::size_t position = 0;
    ObjectTextToBinary(text.View(), position, stream);
  }
  forms.Texts.push_back(text.ToString());
  forms.Streams.push_back(stream.ToString());
  forms.AllText += text.View();
  forms.AllStreams += stream.Size();
}

TForms LoadForms() {
  const char* named = std::getenv("WRENFOLD_FORMS");
  const std::filesystem::path folder =
      named != nullptr ? named : WRENFOLD_SOURCE_DIR "/tests/data/forms";
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    if (entry.path().extension() == ".dfm") names.push_back(entry.path().string());
  std::sort(names.begin(), names.end());
  TForms forms;
  for (const std::string& name : names) AddForm(ReadWholeFile(name), forms);
  return forms;
}

const TForms& Forms() {
  static const TForms forms = LoadForms();
  return forms;
}

// All rates are bytes of form text, whatever is read and written.
void ReportTextBytes(benchmark::State& state) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * Forms().AllText.size()));
}

// The conversions and the copy go over the whole folder into one buffer of its size.
void TextToBinary(benchmark::State& state) {
  TByteWriter binary(Forms().AllStreams);
  for (auto _ : state) {
    binary.Clear();
    for (const std::string& text : Forms().Texts) {
      std::size_t position = 0;
      ObjectTextToBinary(text, position, binary);
    }
    benchmark::DoNotOptimize(binary.View().data());
  }
  ReportTextBytes(state);
}
BENCHMARK(TextToBinary);

void BinaryToText(benchmark::State& state) {
  TByteWriter text(Forms().AllText.size());
  for (auto _ : state) {
    text.Clear();
    for (const std::string& stream : Forms().Streams) {
      TByteReader reader(stream);
      ObjectBinaryToText(reader, text);
    }
    benchmark::DoNotOptimize(text.View().data());
  }
  ReportTextBytes(state);
}
BENCHMARK(BinaryToText);

void ReadBinary(benchmark::State& state) {
  for (auto _ : state)
    for (const std::string& stream : Forms().Streams)
      benchmark::DoNotOptimize(ReadDesignForm(stream));
  ReportTextBytes(state);
}
BENCHMARK(ReadBinary);

void WriteBinary(benchmark::State& state) {
  std::vector<std::unique_ptr<TDesignComponent>> roots;
  for (const std::string& stream : Forms().Streams) roots.push_back(ReadDesignForm(stream));
  for (auto _ : state)
    for (const auto& root : roots) benchmark::DoNotOptimize(WriteDesignForm(*root));
  ReportTextBytes(state);
}
BENCHMARK(WriteBinary);

// The yardstick: the same texts, file by file, into a buffer of their size.
void MemoryCopy(benchmark::State& state) {
  TByteWriter copy(Forms().AllText.size());
  for (auto _ : state) {
    copy.Clear();
    for (const std::string& text : Forms().Texts) copy.WriteBytes(text);
    benchmark::DoNotOptimize(copy.View().data());
    benchmark::ClobberMemory();
  }
  ReportTextBytes(state);
}
BENCHMARK(MemoryCopy);

}  // namespace
}  // namespace wrenfold

BENCHMARK_MAIN();
