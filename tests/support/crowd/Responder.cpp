#include "Responder.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>
#include <utility>

namespace crowd {
namespace {

constexpr Time kPauseLeast{20};
constexpr Time kPauseMost{120};
constexpr Time kAnnounceAgain{1000};
constexpr Time kNotAgain{1000};
constexpr Time kMoreKnownAnswers{450};

// What fits into a packet of IPv6 on Ethernet; a record that alone needs more goes out in
// fragments.
constexpr std::size_t kPacketSize = 1452;
constexpr std::size_t kLargestSize = 8952;

constexpr std::uint16_t kAnswerFlags = dns::kFlagResponse | dns::kFlagAuthoritative;

// Who does not listen to multicast answers does not keep them long.
constexpr std::uint32_t kTimeToLiveForOne = 10;

constexpr Records kEach[kRecordCount] = {kPointer, kLocation, kText, kIPv4Address, kIPv6Address};

// Letter case does not count in names.
std::string key(const dns::Name& name) {
  std::string key;
  for (const std::string& label : name) {
    for (const char c : label) {
      key.push_back(static_cast<char>(std::tolower(static_cast<unsigned char>(c))));
    }
    key.push_back('\0');
  }
  return key;
}

unsigned recordOfType(std::uint16_t type) {
  switch (type) {
    case dns::kTypePtr:
      return kPointer;
    case dns::kTypeSrv:
      return kLocation;
    case dns::kTypeTxt:
      return kText;
    case dns::kTypeA:
      return kIPv4Address;
    case dns::kTypeAaaa:
      return kIPv6Address;
    case dns::kTypeAny:
      return kAllRecords;
    default:
      return 0;
  }
}

bool isSame(const dns::Record& one, const dns::Record& other) {
  return key(one.name) == key(other.name) && one.data == other.data &&
         key(one.target) == key(other.target);
}

}  // namespace

Responder::Responder(const Options& options)
    : mOptions(options), mTold(std::size_t{options.count} * options.places.size()) {
  for (unsigned number = 1; number <= options.count; ++number) {
    Member& added = mMembers.emplace_back(number, number <= options.ours);
    mNumbers[key(added.instance())] = number;
    for (const bool isTwo : {false, true}) {
      added.isTwo = isTwo;
      for (const std::size_t link : options.places) mNumbers[key(added.host(link))] = number;
    }
    added.isTwo = false;
  }
}

void Responder::heard(std::size_t place, const Asker& asker, std::span<const std::uint8_t> bytes,
                      Time now) {
  dns::Message message;
  try {
    message = dns::parse(bytes);
  } catch (const std::runtime_error&) {
    return;
  }
  if ((message.flags & dns::kFlagResponse) != 0) return;

  const auto from = std::make_pair(place, asker);
  const auto [unfinished, isFirst] = mUnfinished.try_emplace(from);
  dns::Message& whole = unfinished->second.message;
  if (isFirst) whole.id = message.id;
  whole.questions.insert(whole.questions.end(), message.questions.begin(), message.questions.end());
  whole.answers.insert(whole.answers.end(), message.answers.begin(), message.answers.end());
  unfinished->second.due = now + kMoreKnownAnswers;
  if ((message.flags & dns::kFlagTruncated) != 0) return;
  answer(place, asker, whole, now);
  mUnfinished.erase(unfinished);
}

void Responder::announce(Member& member, Time now) {
  member.present = true;
  for (const Time due : {now, now + kAnnounceAgain}) {
    sayEverywhere(Kind::Announcement, member, kAllRecords, due);
  }
}

void Responder::withdraw(Member& member, Time now) {
  member.present = false;
  std::erase_if(mFlaps, [&](const auto& flap) { return flap.second == member.number(); });
  sayEverywhere(Kind::Goodbye, member, kAllRecords, now);
}

void Responder::move(Member& member, Time now) {
  ++member.moves;
  sayEverywhere(Kind::Announcement, member, kAddresses, now);
}

void Responder::flap(Member& member, std::chrono::milliseconds pause, Time now) {
  member.flapsEvery = pause;
  std::erase_if(mFlaps, [&](const auto& flap) { return flap.second == member.number(); });
  if (pause > Time(0)) {
    mFlaps.emplace(now, member.number());
  } else {
    announce(member, now);
  }
}

std::optional<Time> Responder::nextDue() const {
  std::optional<Time> next;
  const auto consider = [&next](Time due) { next = next ? std::min(*next, due) : due; };
  if (!mStatements.empty()) consider(mStatements.begin()->first);
  if (!mFlaps.empty()) consider(mFlaps.begin()->first);
  for (const auto& [from, unfinished] : mUnfinished) consider(unfinished.due);
  return next;
}

std::vector<Datagram> Responder::takeDue(Time now) {
  finishQuestions(now);
  flapDue(now);
  std::vector<Datagram> datagrams;
  while (!mStatements.empty() && mStatements.begin()->first <= now) {
    const Statement statement = std::move(mStatements.begin()->second);
    mStatements.erase(mStatements.begin());
    say(statement, now, datagrams);
  }
  if (mOptions.isOneMachine) join(datagrams);
  return datagrams;
}

// The answers to everybody at each place, in as few packets as they fit into.
void Responder::join(std::vector<Datagram>& datagrams) const {
  std::vector<Datagram> joined;
  for (std::size_t place = 0; place < mOptions.places.size(); ++place) {
    dns::MessageWriter packet(0, kAnswerFlags);
    bool isEmpty = true;
    const auto finish = [&] {
      if (!isEmpty) joined.push_back({place, std::nullopt, packet.bytes()});
      packet = dns::MessageWriter(0, kAnswerFlags);
      isEmpty = true;
    };
    for (const Datagram& datagram : datagrams) {
      if (datagram.place != place || datagram.to) continue;
      for (const dns::Record& record : dns::parse(datagram.bytes).answers) {
        if (!packet.addRecordWithin(kPacketSize, dns::Section::Answers, record)) {
          finish();
          packet.addRecord(dns::Section::Answers, record);
        }
        isEmpty = false;
      }
    }
    finish();
  }
  std::erase_if(datagrams, [](const Datagram& datagram) { return !datagram.to; });
  datagrams.insert(datagrams.end(), joined.begin(), joined.end());
}

// The rest of the known answers got lost.
void Responder::finishQuestions(Time now) {
  std::erase_if(mUnfinished, [&](const auto& entry) {
    const auto& [from, unfinished] = entry;
    if (unfinished.due > now) return false;
    answer(from.first, from.second, unfinished.message, now);
    return true;
  });
}

void Responder::flapDue(Time now) {
  while (!mFlaps.empty() && mFlaps.begin()->first <= now) {
    Member& flapping = member(mFlaps.begin()->second);
    mFlaps.erase(mFlaps.begin());
    mFlaps.emplace(now + flapping.flapsEvery, flapping.number());
    flapping.present = !flapping.present;
    sayEverywhere(flapping.present ? Kind::Announcement : Kind::Goodbye, flapping, kAllRecords,
                  now);
  }
}

// Questions that want an answer for themselves and others may come in one message.
void Responder::answer(std::size_t place, const Asker& asker, const dns::Message& message,
                       Time now) {
  for (const bool forOne : {false, true}) {
    Statement statement;
    statement.place = place;
    if (forOne) statement.to = asker;
    Wanted wanted;
    for (const dns::Question& question : message.questions) {
      const bool wantsUnicast = (question.dnsClass & dns::kTopBit) != 0;
      if (forOne != (wantsUnicast || !asker.speaksMulticast)) continue;
      addWanted(place, question, wanted);
      if (!asker.speaksMulticast) statement.questions.push_back(question);
    }
    if (!asker.speaksMulticast) statement.id = message.id;
    dropKnown(place, message, wanted);
    for (const auto& [number, records] : wanted) {
      statement.number = number;
      statement.records = records;
      schedule(statement, now);
    }
  }
}

void Responder::addWanted(std::size_t place, const dns::Question& question, Wanted& wanted) const {
  const std::uint16_t dnsClass = question.dnsClass & ~dns::kTopBit;
  if (dnsClass != dns::kClassIn && dnsClass != dns::kClassAny) return;
  const unsigned records = recordOfType(question.type);
  if (key(question.name) == key(serviceType())) {
    if ((records & kPointer) == 0) return;
    for (const Member& member : mMembers) {
      if (member.present) wanted[member.number()] |= kPointer;
    }
  } else if (const auto number = memberCalled(question.name)) {
    const Member& member = mMembers[*number - 1];
    if (!member.present) return;
    const std::string name = key(question.name);
    if (name == key(member.instance())) wanted[*number] |= records & (kLocation | kText);
    if (name == key(member.host(linkOf(place)))) wanted[*number] |= records & kAddresses;
  }
}

// An answer that is known for less than half of its time is known well enough.
void Responder::dropKnown(std::size_t place, const dns::Message& message, Wanted& wanted) const {
  for (const dns::Record& known : message.answers) {
    const unsigned which = recordOfType(known.type);
    const auto number = memberCalled(which == kPointer ? known.target : known.name);
    if (!number || !wanted.contains(*number) || known.type == dns::kTypeAny) continue;
    const Member& member = mMembers[*number - 1];
    const std::size_t link = linkOf(place);
    const auto own = member.record(Records(which), link, anotherHost(member, link));
    if (own && isSame(*own, known) && known.timeToLive >= own->timeToLive / 2) {
      wanted[*number] &= ~which;
    }
  }
}

// The pause is there because many answer to a question for the service's type.
void Responder::schedule(const Statement& answer, Time now) {
  Member& asked = member(answer.number);
  Statement soon = answer;
  soon.records &= kPointer | (asked.silent ? 0u : kDetails);
  if (asked.late && (soon.records & kDetails) != 0) {
    if (!asked.tellsFrom) asked.tellsFrom = now + *asked.late;
    if (now < *asked.tellsFrom) {
      Statement later = soon;
      later.records &= kDetails;
      soon.records &= kPointer;
      scheduleFor(*asked.tellsFrom, later);
    }
  }
  std::uniform_int_distribution<Time::rep> pause(kPauseLeast.count(), kPauseMost.count());
  const Time drawn = mOptions.isOneMachine ? kPauseMost : Time(pause(mRandom));
  const Time wait = (soon.records & kPointer) != 0 ? drawn : Time(0);
  scheduleFor(now + wait, soon);
}

void Responder::scheduleFor(Time due, Statement statement) {
  if (statement.kind == Kind::Answer && !statement.to) {
    unsigned& scheduled = told(statement).scheduled;
    statement.records &= ~scheduled;
    scheduled |= statement.records;
  }
  if (statement.records != 0) mStatements.emplace(due, std::move(statement));
}

void Responder::sayEverywhere(Kind kind, const Member& member, unsigned records, Time due) {
  for (std::size_t place = 0; place < mOptions.places.size(); ++place) {
    scheduleFor(due, {kind, place, member.number(), records, {}, {}, {}});
  }
}

void Responder::say(const Statement& statement, Time now, std::vector<Datagram>& datagrams) {
  Member& member = this->member(statement.number);
  Statement said = statement;
  unsigned additional = 0;
  if (said.kind == Kind::Answer) {
    if (!said.to) told(said).scheduled &= ~said.records;
    said.records = withoutTold(said, said.records, now);
    if ((said.records & kPointer) != 0 && mOptions.tellsAllAtOnce) additional |= kDetails;
    if ((said.records & kLocation) != 0) additional |= kAddresses;
    if ((said.records & kAddresses) != 0) additional |= kAddresses;
    additional = withoutTold(said, additional & tells(member, now) & ~said.records, now);
    if (mOptions.isOneMachine && !said.to) said.records |= std::exchange(additional, 0u);
  } else {
    said.records &= tells(member, now);
  }
  if (member.present != (said.kind != Kind::Goodbye) || said.records == 0) return;

  if (member.movesWhenAsked && ((said.records | additional) & kAddresses) != 0) ++member.moves;
  for (std::size_t i = 0; i < kRecordCount; ++i) {
    if (!said.to && ((said.records | additional) & kEach[i]) != 0) told(said).when[i] = now;
  }
  pack(said, additional, datagrams);
}

unsigned Responder::withoutTold(const Statement& statement, unsigned records, Time now) {
  if (statement.to) return records;
  const Member& member = mMembers[statement.number - 1];
  for (std::size_t i = 0; i < kRecordCount; ++i) {
    const auto when = told(statement).when[i];
    const bool isNew = member.movesWhenAsked && (kEach[i] & kAddresses) != 0;
    if (when && now - *when < kNotAgain && !isNew) records &= ~kEach[i];
  }
  return records;
}

// An additional record that does not fit is left out, an answer goes into the next packet.
void Responder::pack(const Statement& statement, unsigned additional,
                     std::vector<Datagram>& datagrams) {
  const Member& member = mMembers[statement.number - 1];
  const std::size_t link = linkOf(statement.place);
  const auto begin = [&statement] {
    dns::MessageWriter packet(statement.id, kAnswerFlags);
    for (const dns::Question& question : statement.questions) packet.addQuestion(question);
    return packet;
  };
  const auto made = [&](Records which) {
    auto record = member.record(which, link, anotherHost(member, link));
    if (record && statement.kind == Kind::Goodbye) record->timeToLive = 0;
    if (record && !statement.questions.empty()) {
      record->dnsClass &= static_cast<std::uint16_t>(~dns::kTopBit);
      record->timeToLive = std::min(record->timeToLive, kTimeToLiveForOne);
    }
    return record;
  };

  dns::MessageWriter packet = begin();
  bool isEmpty = true;
  for (const Records which : kEach) {
    const auto record = (statement.records & which) != 0 ? made(which) : std::nullopt;
    if (!record) continue;
    if (!isEmpty && !packet.addRecordWithin(kPacketSize, dns::Section::Answers, *record)) {
      datagrams.push_back({statement.place, statement.to, packet.bytes()});
      packet = begin();
      isEmpty = true;
    }
    if (isEmpty) {
      isEmpty = !packet.addRecordWithin(kLargestSize, dns::Section::Answers, *record);
    }
  }
  if (isEmpty) return;
  for (std::size_t i = 0; i < kRecordCount; ++i) {
    const auto record = (additional & kEach[i]) != 0 ? made(kEach[i]) : std::nullopt;
    if (record && !packet.addRecordWithin(kPacketSize, dns::Section::Additional, *record)) {
      told(statement).when[i].reset();
    }
  }
  datagrams.push_back({statement.place, statement.to, packet.bytes()});
}

std::optional<unsigned> Responder::memberCalled(const dns::Name& name) const {
  const auto known = mNumbers.find(key(name));
  if (known == mNumbers.end()) return std::nullopt;
  return known->second;
}

dns::Name Responder::anotherHost(const Member& member, std::size_t link) const {
  return mMembers[member.number() % mMembers.size()].host(link);
}

unsigned Responder::tells(const Member& member, Time now) const {
  const bool waits = member.late && (!member.tellsFrom || now < *member.tellsFrom);
  return member.silent || waits ? kPointer : kAllRecords;
}

Responder::Told& Responder::told(const Statement& statement) {
  return mTold[(statement.number - 1) * mOptions.places.size() + statement.place];
}

}  // namespace crowd
