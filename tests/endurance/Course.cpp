#include "Course.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <utility>

#include "Plot.h"

namespace {

constexpr std::size_t kSamples = 40;
constexpr std::size_t kSamplesAtLeast = 8;  // two in each quarter
constexpr double kMiB = 1048576;

}  // namespace

std::size_t eventsWanted(std::size_t usual) {
  const char* const wanted = std::getenv("ENDURANCE_EVENTS");
  return wanted == nullptr ? usual : std::stoul(wanted);
}

// What keeps the samples is there before the first of them.
Course::Course(std::string name, std::string title, std::string events, std::size_t count)
    : mName(std::move(name)),
      mTitle(std::move(title)),
      mEvents(std::move(events)),
      mStep(std::max<std::size_t>(1, count / kSamples)) {
  mSamples.reserve(count / mStep + 1);
  mSamples.push_back({0, Use::now()});
}

void Course::count() {
  if (++mCount % mStep == 0) mSamples.push_back({mCount, Use::now()});
}

void Course::expectToAdd(double heapBytesAnEvent) const {
  ASSERT_GE(mSamples.size(), kSamplesAtLeast);
  const Use expected = quarter(1).front().use;
  for (const Sample& sample : mSamples) {
    if (sample.events < quarter(1).front().events) continue;
    EXPECT_EQ(sample.use.descriptors, expected.descriptors) << "after " << sample.events;
    EXPECT_EQ(sample.use.threads, expected.threads) << "after " << sample.events;
  }
  EXPECT_LE(growthAnEvent(&Use::heap), heapBytesAnEvent);
  EXPECT_LE(growthAnEvent(&Use::resident),
            heapBytesAnEvent + kMiB / (static_cast<double>(mCount) / 2));
  if (const char* const results = std::getenv("ENDURANCE_RESULTS")) {
    writeTable(std::string(results) + "/" + mName + ".csv");
    writePlot(std::string(results) + "/" + mName + ".svg");
  }
}

Course::Samples Course::quarter(std::size_t number) const {
  const std::size_t size = mSamples.size() / 4;
  const auto begin = mSamples.begin() + static_cast<std::ptrdiff_t>(number * size);
  return {begin, begin + static_cast<std::ptrdiff_t>(size)};
}

// Whatever is in use for a while only adds to a figure.
std::size_t Course::least(const Samples& samples, std::size_t Use::*figure) {
  std::size_t found = samples.front().use.*figure;
  for (const Sample& sample : samples) found = std::min(found, sample.use.*figure);
  return found;
}

// From the second quarter to the last: what comes in the first only makes itself at home.
double Course::growthAnEvent(std::size_t Use::*figure) const {
  const Samples before = quarter(1);
  const Samples after = quarter(3);
  const auto events = static_cast<double>(after.front().events - before.front().events);
  return (static_cast<double>(least(after, figure)) - static_cast<double>(least(before, figure))) /
         events;
}

void Course::writeTable(const std::string& file) const {
  std::ofstream out(file);
  out << mEvents << ",heap in use (bytes),resident (bytes),descriptors,threads,CPU (s)\n";
  for (const auto& [events, use] : mSamples) {
    out << events << ',' << use.heap << ',' << use.resident << ',' << use.descriptors << ','
        << use.threads << ',' << use.cpuSeconds << '\n';
  }
  if (!out.flush()) throw std::runtime_error("cannot write " + file);
}

void Course::writePlot(const std::string& file) const {
  const auto line = [this](const std::string& name,
                           const std::function<double(const Use&)>& figure) {
    bench::Line drawn{name, {}};
    for (const auto& [events, use] : mSamples) {
      drawn.points.push_back({static_cast<double>(events), figure(use), false});
    }
    return drawn;
  };
  const auto of = [](std::size_t Use::*figure, double unit) {
    return [figure, unit](const Use& use) { return static_cast<double>(use.*figure) / unit; };
  };
  bench::writePlots(
      file,
      {{mTitle + ": memory (MiB)",
        mEvents,
        {line("resident", of(&Use::resident, kMiB)), line("heap", of(&Use::heap, kMiB))}},
       {mTitle + ": descriptors and threads",
        mEvents,
        {line("descriptors", of(&Use::descriptors, 1)), line("threads", of(&Use::threads, 1))}},
       {mTitle + ": CPU time (s)", mEvents, {line("CPU time", [](const Use& use) {
          return use.cpuSeconds;
        })}}});
}
