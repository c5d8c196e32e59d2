// Grows a corpus where libFuzzer is slow: explore_TARGET CORPUS SECONDS LONGEST FINDING SEEDS...
// libFuzzer prefers edges that are rare. This takes an edge that is known in some of the numbers of
// times that libFuzzer tells apart (1, 2, 3, 4, 8, 16, 32, 128), and changes the shortest inputs
// for them, or the one that takes it most often, until one takes it another number of times. Without
// sanitizers it is several times as fast; libFuzzer then goes on from what it stored. An input that
// aborts, or takes ten seconds, is written to FINDING.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <span>
#include <string>
#include <utility>
#include <vector>

extern "C" {
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                    unsigned seed);
std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* data, std::size_t size,
                                      const std::uint8_t* other, std::size_t otherSize,
                                      std::uint8_t* out, std::size_t maxSize, unsigned seed);
}

namespace {

using TBytes = std::vector<std::uint8_t>;

std::mt19937_64 Random(std::random_device{}());

std::size_t Below(std::size_t end) {
  return Random() % end;
}

// One for each program and library; a constructor of the compiler's adds them.
std::vector<std::span<std::uint8_t>>& Counters() {
  static std::vector<std::span<std::uint8_t>> counters;
  return counters;
}

const TBytes* Running = nullptr;
const char* Finding = nullptr;

void KeepFinding(int) {
  const int file = open(Finding, O_CREAT | O_WRONLY | O_TRUNC, 0644);
  const bool kept = write(file, Running->data(), Running->size()) >= 0;
  _exit(kept ? 1 : 2);
}

constexpr int kNumbers = 8;

int NumberOf(std::uint8_t count) {
  return count < 4 ? count - 1 : count < 32 ? std::bit_width(count) : count < 128 ? 6 : 7;
}

TBytes ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return TBytes(std::istreambuf_iterator<char>(file), {});
}

class TExplorer {
 public:
  TExplorer(std::filesystem::path corpus, std::size_t longest)
      : FCorpus(std::move(corpus)), FLongest(longest) {
    for (const auto counters : Counters()) FEdges += counters.size();
    FKnown.resize(FEdges);
    FShortest.resize(FEdges * kNumbers);
    FMost.resize(FEdges);
  }

  // The shortest ones first, so that fewer of the others stay.
  void Load(std::span<char*> folders) {
    std::vector<TBytes> inputs;
    for (const std::filesystem::path folder : folders)
      for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.is_regular_file() && entry.file_size() <= FLongest)
          inputs.push_back(ReadFile(entry.path()));
    std::sort(inputs.begin(), inputs.end(), [](const TBytes& a, const TBytes& b) {
      return a.size() != b.size() ? a.size() < b.size() : a < b;
    });
    for (const TBytes& input : inputs) Execute(input);
  }

  void Explore(std::chrono::seconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    const std::string prefix = "explored-" + std::to_string(Random()) + '-';
    while (std::chrono::steady_clock::now() < end) {
      const std::size_t edge = Below(FEdges);
      const bool isOnce = FKnown[edge] == 1;  // most likely for good
      if (FKnown[edge] == 0 || FKnown[edge] == 0xFF || (isOnce && Below(8) != 0)) continue;
      for (int i = 0; i < 16; ++i) {
        const TBytes input = Changed(edge);
        if (!Execute(input)) continue;
        std::ofstream(FCorpus / (prefix + std::to_string(FExecutions)), std::ios::binary)
            .write(reinterpret_cast<const char*>(input.data()), std::ssize(input));
      }
    }
  }

  void Print() const {
    int known = 0;
    for (const std::uint8_t numbers : FKnown) known += std::popcount(numbers);
    std::printf("%ld executions, %d paths\n", FExecutions, known);
  }

 private:
  struct TMost {
    std::uint8_t Count = 0;
    std::size_t Input = 0;
  };

  // Whether the input takes an edge a new number of times.
  bool Execute(const TBytes& input) {
    for (const auto counters : Counters()) std::memset(counters.data(), 0, counters.size());
    Running = &input;
    alarm(10);
    LLVMFuzzerTestOneInput(input.data(), input.size());
    ++FExecutions;
    bool isNew = false;
    bool isKept = false;
    std::size_t first = 0;
    for (const auto counters : Counters()) {
      const auto isTaken = [](std::uint8_t count) { return count != 0; };
      auto taken = std::find_if(counters.begin(), counters.end(), isTaken);
      for (; taken != counters.end(); taken = std::find_if(taken + 1, counters.end(), isTaken)) {
        const std::size_t edge = first + (taken - counters.begin());
        const int number = NumberOf(*taken);
        if (*taken > FMost[edge].Count) {
          FMost[edge] = {*taken, FInputs.size()};
          isKept = true;
        }
        std::size_t& shortest = FShortest[edge * kNumbers + number];
        const bool isKnown = (FKnown[edge] & 1 << number) != 0;
        if (isKnown && FInputs[shortest].size() <= input.size()) continue;
        shortest = FInputs.size();
        FKnown[edge] |= 1 << number;
        isKept = true;
        isNew |= !isKnown;
      }
      first += counters.size();
    }
    if (isKept) FInputs.push_back(input);
    return isNew;
  }

  // One of the inputs that take the edge.
  const TBytes& InputOf(std::size_t edge) const {
    if (Below(4) == 0) return FInputs[FMost[edge].Input];
    int number = static_cast<int>(Below(kNumbers));
    while ((FKnown[edge] & 1 << number) == 0) number = (number + 1) % kNumbers;
    return FInputs[FShortest[edge * kNumbers + number]];
  }

  TBytes Changed(std::size_t edge) const {
    TBytes input = InputOf(edge);
    std::size_t size = input.size();
    input.resize(FLongest);
    for (std::size_t changes = 1 + Below(4); changes > 0; --changes) {
      const TBytes& other = Below(2) == 0 ? InputOf(edge) : FInputs[Below(FInputs.size())];
      if (size == 0 || other.empty() || Below(3) != 0) {
        size = LLVMFuzzerCustomMutator(input.data(), size, FLongest, Random());
        continue;
      }
      TBytes crossed(FLongest);
      const std::size_t length = LLVMFuzzerCustomCrossOver(
          input.data(), size, other.data(), other.size(), crossed.data(), FLongest, Random());
      if (length == 0) continue;
      input = std::move(crossed);
      size = length;
    }
    input.resize(size);
    return input;
  }

  std::filesystem::path FCorpus;
  std::size_t FLongest;
  std::size_t FEdges = 0;
  std::vector<std::uint8_t> FKnown;    // for each edge, a bit for each number
  std::vector<std::size_t> FShortest;  // for each edge and number, the input
  std::vector<TMost> FMost;            // for each edge
  std::vector<TBytes> FInputs;
  long FExecutions = 0;
};

}  // namespace

extern "C" void __sanitizer_cov_8bit_counters_init(std::uint8_t* begin, std::uint8_t* end) {
  for (const auto counters : Counters())
    if (counters.data() == begin) return;
  Counters().emplace_back(begin, end);
}

// Changes single bytes; the custom mutator calls it.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize) {
  std::uint8_t* at = data + Below(size + 1);
  const std::size_t rest = data + size - at;
  const std::size_t length = rest == 0 ? 0 : 1 + Below(std::min<std::size_t>(rest, 32));
  switch (rest == 0 ? 0 : Below(5)) {
    case 0:
      if (size == maxSize) return size;
      std::memmove(at + 1, at, rest);
      *at = Random();
      return size + 1;
    case 1:
      std::memmove(at, at + length, rest - length);
      return size - length;
    case 2:
      *at = Random();
      return size;
    case 3:
      *at ^= 1 << Below(8);
      return size;
    default:
      *at += Below(2) == 0 ? 1 : -1;
      return size;
  }
}

int main(int count, char** arguments) {
  if (count < 5) {
    std::fprintf(stderr, "usage: %s CORPUS SECONDS LONGEST FINDING SEEDS...\n", arguments[0]);
    return 2;
  }
  Finding = arguments[4];
  for (const int number : {SIGABRT, SIGSEGV, SIGFPE, SIGALRM}) std::signal(number, KeepFinding);
  TExplorer explorer(arguments[1], std::strtoul(arguments[3], nullptr, 10));
  std::vector<char*> folders(arguments + 5, arguments + count);
  folders.push_back(arguments[1]);
  explorer.Load(folders);
  explorer.Print();
  explorer.Explore(std::chrono::seconds(std::strtol(arguments[2], nullptr, 10)));
  explorer.Print();
}
