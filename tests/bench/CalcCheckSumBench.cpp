// The image's checksum beside a plain read of the same memory: the sum of its 64-bit words.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "CalcCheckSum.h"

namespace {

std::vector<std::uint64_t> imageOf(const benchmark::State& state) {
  std::vector<std::uint64_t> image(static_cast<std::size_t>(state.range(0)) / 8);
  std::mt19937_64 random;
  for (std::uint64_t& word : image) word = random();
  return image;
}

void setThroughput(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void CheckSum(benchmark::State& state) {
  const std::vector<std::uint64_t> image = imageOf(state);
  const void* const start = image.data();
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(
        CalcCheckSum(static_cast<const unsigned short*>(start), image.size() * 8));
  }
  setThroughput(state);
}

void PlainRead(benchmark::State& state) {
  const std::vector<std::uint64_t> image = imageOf(state);
  for ([[maybe_unused]] auto _ : state) {
    std::uint64_t sum = 0;
    for (const std::uint64_t word : image) sum += word;
    benchmark::DoNotOptimize(sum);
  }
  setThroughput(state);
}

BENCHMARK(CheckSum)->Arg(64 << 10)->Arg(1 << 20)->Arg(32 << 20);
BENCHMARK(PlainRead)->Arg(64 << 10)->Arg(1 << 20)->Arg(32 << 20);

}  // namespace
