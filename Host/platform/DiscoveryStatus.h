// Who searches the network for services, for whoever shows it. Kept up to date by the service
// discovery; main() owns it.
#pragma once

#include <functional>
#include <utility>

namespace platform {

class DiscoveryStatus {
 public:
  enum class Searcher {
    Nobody,   // not yet, or nobody can
    Daemon,   // of the host
    Program,  // by itself, since there is no daemon
  };

  Searcher searcher() const { return mSearcher; }

  void change(Searcher searcher) {
    if (std::exchange(mSearcher, searcher) != searcher && mChanged) mChanged();
  }

  // Called after each change.
  void whenChanged(std::function<void()> changed) { mChanged = std::move(changed); }

 private:
  Searcher mSearcher = Searcher::Nobody;
  std::function<void()> mChanged;
};

}  // namespace platform
