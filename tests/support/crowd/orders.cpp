#include "orders.h"

#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>

namespace crowd {
namespace {

struct Order {
  std::string word;
  unsigned first = 0;
  unsigned last = 0;
  unsigned number = 0;
  bool hasNumber = false;
};

// Nobody's whole office comes or goes in the same moment.
constexpr Time kBetweenMembers{1};

// `turn` is when this member's turn comes.
using Action =
    std::function<void(Responder& responder, Member& member, const Order& order, Time turn)>;

Action set(bool Member::*behaviour) {
  return [behaviour](Responder&, Member& member, const Order&, Time) { member.*behaviour = true; };
}

const std::map<std::string, Action>& actions() {
  static const std::map<std::string, Action> all{
      {"announce", [](Responder& responder, Member& member, const Order&,
                      Time turn) { responder.announce(member, turn); }},
      {"withdraw", [](Responder& responder, Member& member, const Order&,
                      Time turn) { responder.withdraw(member, turn); }},
      {"vanish", [](Responder&, Member& member, const Order&, Time) { member.present = false; }},
      {"move", [](Responder& responder, Member& member, const Order&,
                  Time turn) { responder.move(member, turn); }},
      {"silent", set(&Member::silent)},
      {"elsewhere", set(&Member::namesAnotherHost)},
      {"moving", set(&Member::movesWhenAsked)},
      {"long-text", set(&Member::hasLongText)},
      {"two", set(&Member::isTwo)},
      {"no-text", [](Responder&, Member& member, const Order&, Time) { member.hasText = false; }},
      {"late", [](Responder&, Member& member, const Order& order,
                  Time) { member.late = std::chrono::seconds(order.number); }},
      {"flap", [](Responder& responder, Member& member, const Order& order,
                  Time turn) { responder.flap(member, Time(500 / order.number), turn); }},
      {"steady", [](Responder& responder, Member& member, const Order&,
                    Time turn) { responder.flap(member, Time(0), turn); }},
  };
  return all;
}

Order parse(const std::string& line) {
  std::istringstream words(line);
  Order order;
  if (!(words >> order.word >> order.first)) throw std::invalid_argument("not an order: " + line);
  order.last = order.first;
  if (words.peek() == '-' && !(words.ignore() >> order.last)) {
    throw std::invalid_argument("not a range: " + line);
  }
  order.hasNumber = static_cast<bool>(words >> order.number);
  if (order.hasNumber != (order.word == "late" || order.word == "flap")) {
    throw std::invalid_argument("a number is missing, or one too many: " + line);
  }
  if (order.word == "flap" && (order.number < 1 || order.number > 500)) {
    throw std::invalid_argument("from 1 to 500 times a second: " + line);
  }
  return order;
}

}  // namespace

void obey(Responder& responder, const std::string& line, Time now) {
  const Order order = parse(line);
  const auto action = actions().find(order.word);
  if (action == actions().end()) throw std::invalid_argument("not an order: " + line);
  if (order.first < 1 || order.last < order.first || order.last > responder.count()) {
    throw std::invalid_argument("no such members: " + line);
  }
  for (unsigned number = order.first; number <= order.last; ++number) {
    const Time turn = now + (number - order.first) * kBetweenMembers;
    action->second(responder, responder.member(number), order, turn);
  }
}

}  // namespace crowd
