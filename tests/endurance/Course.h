// How what this process has of the machine goes with the number of events that it has seen. A test
// counts the events of one kind, and holds the course to what it may cost. Where a long form is run
// (see tests/endurance/run), there are more events, and table and plot are written.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Use.h"

// How many events there are to be: as many as usual, or as the long form wants.
std::size_t eventsWanted(std::size_t usual);

class Course {
 public:
  // `name` is that of table and plot, `title` and `events` are their texts.
  Course(std::string name, std::string title, std::string events, std::size_t count);

  // One more event is over, and what it took has been given back.
  void count();

  // What an event may add to the heap, in bytes, each. Descriptors and threads must be the same
  // from the first quarter on, and the resident memory may grow by a MiB more than what the heap
  // may. Writes the table and the plot if they are wanted.
  void expectToAdd(double heapBytesAnEvent) const;

 private:
  struct Sample {
    std::size_t events;
    Use use;
  };

  using Samples = std::vector<Sample>;

  // The samples of one of the four quarters, from 0.
  Samples quarter(std::size_t number) const;
  static std::size_t least(const Samples& samples, std::size_t Use::*figure);
  double growthAnEvent(std::size_t Use::*figure) const;
  void writeTable(const std::string& file) const;
  void writePlot(const std::string& file) const;

  const std::string mName;
  const std::string mTitle;
  const std::string mEvents;
  const std::size_t mStep;
  std::size_t mCount = 0;
  Samples mSamples;
};
