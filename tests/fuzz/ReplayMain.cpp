// Feeds a fuzzer without libFuzzer: every file of a corpus, then a fixed number of inputs made from
// them, in the fuzzer's own way where it has one. An input that ends the program is shown first.
// Arguments: the size of the largest input, how many are made, the directory of the corpus.
#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <utility>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned seed)
    __attribute__((weak));
extern "C" void __sanitizer_set_death_callback(void (*callback)()) __attribute__((weak));

namespace {

using Bytes = std::vector<std::uint8_t>;

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

std::vector<Bytes> readCorpus(const std::filesystem::path& directory) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(directory)) {
    files.push_back(entry.path());
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
  void setLargestInput(std::size_t size) { mLargest = size; }

  Bytes make(const std::vector<Bytes>& corpus) {
    Bytes input = corpus[below(corpus.size())];
    for (std::size_t changes = 1 + below(8); changes > 0; --changes) {
      if (LLVMFuzzerCustomMutator == nullptr) {
        change(input);
      } else {
        changeInItsOwnWay(input);
      }
    }
    if (input.size() > mLargest) input.resize(mLargest);
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
    const std::size_t size = std::min(input.size(), mLargest);
    input.resize(mLargest);
    input.resize(LLVMFuzzerCustomMutator(input.data(), size, input.size(),
                                         static_cast<unsigned>(mRandom())));
  }

  std::mt19937 mRandom{20050829};
  std::size_t mLargest = 0;
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

  if (argc != 4) {
    std::fputs("Usage: FUZZER LARGEST MADE CORPUS\n", stderr);
    return 2;
  }
  sMaker.setLargestInput(std::stoul(argv[1]));
  const int made = std::stoi(argv[2]);
  const std::vector<Bytes> corpus = readCorpus(argv[3]);
  if (corpus.empty()) {
    std::fputs("There is no corpus.\n", stderr);
    return 1;
  }
  for (const Bytes& input : corpus) run(input);
  run({});
  for (int i = 0; i < made; ++i) run(sMaker.make(corpus));
  std::printf("%zu inputs of the corpus, %d made from them\n", corpus.size(), made);
}
