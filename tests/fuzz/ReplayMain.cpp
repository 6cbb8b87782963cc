// Feeds a fuzzer without libFuzzer: every file of the corpus directories that are given, then a
// fixed number of inputs made from them, in the fuzzer's own way where it has one. An input that
// ends the program is shown first.
#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned seed)
    __attribute__((weak));
extern "C" void __sanitizer_set_death_callback(void (*callback)()) __attribute__((weak));

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int kMadeInputs = FUZZ_MADE_INPUTS;
constexpr std::size_t kLargestInput = FUZZ_LARGEST_INPUT;

Bytes sCurrent;

void showCurrentInput() {
  std::fputs("The input:", stderr);
  for (const std::uint8_t byte : sCurrent) std::fprintf(stderr, " %02x", byte);
  std::fputc('\n', stderr);
}

void showCurrentInputOnAbort(int) {
  showCurrentInput();
  std::signal(SIGABRT, SIG_DFL);
  std::abort();
}

void run(Bytes input) {
  sCurrent = std::move(input);
  LLVMFuzzerTestOneInput(sCurrent.data(), sCurrent.size());
}

std::vector<Bytes> readCorpus(int count, char** directories) {
  std::vector<std::filesystem::path> files;
  for (int i = 0; i < count; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(directories[i])) {
      files.push_back(entry.path());
    }
  }
  std::sort(files.begin(), files.end());

  std::vector<Bytes> corpus;
  for (const auto& file : files) {
    std::ifstream stream(file, std::ios::binary);
    corpus.emplace_back(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
  }
  return corpus;
}

class Maker {
 public:
  Bytes make(const std::vector<Bytes>& corpus) {
    Bytes input = corpus[below(corpus.size())];
    for (std::size_t changes = 1 + below(8); changes > 0; --changes) {
      if (LLVMFuzzerCustomMutator == nullptr) {
        change(input);
      } else {
        changeInItsOwnWay(input);
      }
    }
    if (input.size() > kLargestInput) input.resize(kLargestInput);
    return input;
  }

  void change(Bytes& input) {
    const auto position = static_cast<std::ptrdiff_t>(below(input.size() + 1));
    const auto at = input.begin() + position;
    switch (below(5)) {
      case 0:
        input.insert(at, anyByte());
        break;
      case 1:
        input.insert(at, below(64), anyByte());
        break;
      case 2:
        input.erase(at, at + static_cast<std::ptrdiff_t>(
                                 below(static_cast<std::size_t>(input.end() - at) + 1)));
        break;
      case 3:
        if (at != input.end()) *at = anyByte();
        break;
      default:
        if (at != input.end()) *at = static_cast<std::uint8_t>(*at ^ (1u << below(8)));
    }
  }

 private:
  std::size_t below(std::size_t limit) { return mRandom() % limit; }
  std::uint8_t anyByte() { return static_cast<std::uint8_t>(mRandom()); }

  void changeInItsOwnWay(Bytes& input) {
    const std::size_t size = std::min(input.size(), kLargestInput);
    input.resize(kLargestInput);
    input.resize(LLVMFuzzerCustomMutator(input.data(), size, input.size(),
                                         static_cast<unsigned>(mRandom())));
  }

  std::mt19937 mRandom{20050829};
};

Maker sMaker;

}  // namespace

// What a fuzzer's own way of making inputs changes bytes with.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most) {
  Bytes bytes(data, data + size);
  sMaker.change(bytes);
  bytes.resize(std::min(bytes.size(), most));
  std::copy(bytes.begin(), bytes.end(), data);
  return bytes.size();
}

int main(int argc, char** argv) {
  std::signal(SIGABRT, showCurrentInputOnAbort);
  if (__sanitizer_set_death_callback != nullptr) __sanitizer_set_death_callback(showCurrentInput);

  std::vector<Bytes> corpus = readCorpus(argc - 1, argv + 1);
  if (corpus.empty()) {
    std::fputs("There is no corpus.\n", stderr);
    return 1;
  }
  for (const Bytes& input : corpus) run(input);
  run({});
  for (int i = 0; i < kMadeInputs; ++i) run(sMaker.make(corpus));
  std::printf("%zu inputs of the corpus, %d made from them\n", corpus.size(), kMadeInputs);
}
