// What the crowd says: it is told what was heard and what time it is, and answers what is to be
// sent. As each printer of a crowd would, each member answers for itself: in a packet of its own,
// after the pause that multicast DNS wants before an answer of which there are many, without what
// the asker knows already, and not again within a second what it has told everybody.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "DnsMessage.h"
#include "Member.h"

namespace crowd {

// Who asked. The address is whatever the sockets need to send to it.
struct Asker {
  std::string address;
  bool speaksMulticast = true;  // asks from the multicast port, so that it hears answers to all

  bool operator<(const Asker& other) const { return address < other.address; }
};

struct Datagram {
  std::size_t place = 0;
  std::optional<Asker> to;  // nobody: everybody
  dns::Bytes bytes;
};

class Responder {
 public:
  struct Options {
    unsigned count = 1;
    unsigned ours = 1;
    // Whether an answer with a service's name has its other records, too.
    bool tellsAllAtOnce = true;
    // Whether one machine shares them all: its answers with names fill packets together.
    bool isOneMachine = false;
    // Of each place, that is link and protocol, the number of the link.
    std::vector<std::size_t> places{0};
  };

  explicit Responder(const Options& options);

  unsigned count() const { return static_cast<unsigned>(mMembers.size()); }
  // Numbers from 1.
  Member& member(unsigned number) { return mMembers.at(number - 1); }

  // Nothing comes of bytes that are no question.
  void heard(std::size_t place, const Asker& asker, std::span<const std::uint8_t> bytes, Time now);

  // Says in all places what has come, twice, or what has gone.
  void announce(Member& member, Time now);
  void withdraw(Member& member, Time now);
  // Tells its new address.
  void move(Member& member, Time now);
  // From now on it comes and goes. A pause of 0 ends that.
  void flap(Member& member, std::chrono::milliseconds pause, Time now);

  // When takeDue() has something, if ever.
  std::optional<Time> nextDue() const;
  std::vector<Datagram> takeDue(Time now);

 private:
  enum class Kind { Answer, Announcement, Goodbye };

  // What a member is going to say in one place.
  struct Statement {
    Kind kind = Kind::Answer;
    std::size_t place = 0;
    unsigned number = 0;
    unsigned records = 0;
    std::optional<Asker> to;
    std::uint16_t id = 0;  // of a question that did not come from the multicast port
    std::vector<dns::Question> questions;  // likewise
  };

  // Of each member that is asked, the records.
  using Wanted = std::map<unsigned, unsigned>;

  // A question whose known answers take several packets.
  struct Unfinished {
    dns::Message message;
    Time due{0};
  };

  // What everybody has been told of a member in one place.
  struct Told {
    std::array<std::optional<Time>, kRecordCount> when;
    unsigned scheduled = 0;
  };

  void answer(std::size_t place, const Asker& asker, const dns::Message& message, Time now);
  void addWanted(std::size_t place, const dns::Question& question, Wanted& wanted) const;
  void dropKnown(std::size_t place, const dns::Message& message, Wanted& wanted) const;
  void schedule(const Statement& answer, Time now);
  void scheduleFor(Time due, Statement statement);
  void sayEverywhere(Kind kind, const Member& member, unsigned records, Time due);
  void say(const Statement& statement, Time now, std::vector<Datagram>& datagrams);
  void join(std::vector<Datagram>& datagrams) const;
  unsigned withoutTold(const Statement& statement, unsigned records, Time now);
  void pack(const Statement& statement, unsigned additional, std::vector<Datagram>& datagrams);
  void finishQuestions(Time now);
  void flapDue(Time now);

  std::size_t linkOf(std::size_t place) const { return mOptions.places[place]; }
  std::optional<unsigned> memberCalled(const dns::Name& name) const;
  dns::Name anotherHost(const Member& member, std::size_t link) const;
  unsigned tells(const Member& member, Time now) const;
  Told& told(const Statement& statement);

  const Options mOptions;
  std::vector<Member> mMembers;
  std::unordered_map<std::string, unsigned> mNumbers;  // by instance and host names
  std::vector<Told> mTold;                             // of each member in each place
  std::multimap<Time, Statement> mStatements;
  std::multimap<Time, unsigned> mFlaps;
  std::map<std::pair<std::size_t, Asker>, Unfinished> mUnfinished;
  std::minstd_rand mRandom;  // the same in each run
};

}  // namespace crowd
