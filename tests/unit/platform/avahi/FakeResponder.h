// A responder that keeps what it is asked and answers when a test says so. Questions are written as
// "net2/4 for 4": interface, protocol and address family; "without TXT" follows when none is asked
// for. Browses are written by their domains.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/avahi/Responder.h"

class FakeResponder : public platform::Responder {
 public:
  using Place = platform::Place;
  using Lines = std::vector<std::string>;

  std::unique_ptr<Query> browse(const std::string& type, const std::string& domain,
                                platform::BrowseListener& listener) override {
    EXPECT_EQ(type, "_pdl-datastream._tcp");
    if (refuses) return nullptr;
    browses.push_back(domain);
    listeners[domain] = &listener;
    return std::make_unique<Ended>([this, domain] { std::erase(browses, domain); });
  }

  std::unique_ptr<Query> browseDomains(platform::DomainListener& listener) override {
    domains = &listener;
    return std::make_unique<Ended>([this] { domains = nullptr; });
  }

  std::unique_ptr<Query> resolve(const platform::ServiceName&, const platform::Question& question,
                                 ResolveCallback callback) override {
    asked.push_back(text(question));
    if (refuses) return nullptr;
    const auto number = mNextNumber++;
    mOpen.emplace(number, Open{text(question), std::move(callback)});
    return std::make_unique<Ended>([this, number] { mOpen.erase(number); });
  }

  std::string defaultDomain() const override { return "local"; }

  // What is asked at the moment.
  Lines questions() const {
    Lines lines;
    for (const auto& [number, open] : mOpen) lines.push_back(open.text);
    return lines;
  }

  void accept(const std::string& question) { tell(question, News::Accepted, {}); }
  void refuse(const std::string& question) { tell(question, News::Refused, {}); }
  void answer(const std::string& question, const platform::Resolved& resolved = {}) {
    tell(question, News::Answered, resolved);
  }

  bool refuses = false;
  Lines asked;  // since the start
  Lines browses;
  std::map<std::string, platform::BrowseListener*> listeners;
  platform::DomainListener* domains = nullptr;

 private:
  struct Open {
    std::string text;
    ResolveCallback callback;
  };

  class Ended : public Query {
   public:
    explicit Ended(std::function<void()> ended) : mEnded(std::move(ended)) {}
    ~Ended() override { mEnded(); }
    Ended(const Ended&) = delete;
    Ended& operator=(const Ended&) = delete;

   private:
    const std::function<void()> mEnded;
  };

  static std::string text(const platform::Question& question) {
    const auto shown = [](AvahiProtocol protocol) -> std::string {
      if (protocol == AVAHI_PROTO_UNSPEC) return "any";
      return protocol == AVAHI_PROTO_INET ? "4" : "6";
    };
    return "net" + std::to_string(question.place.interface) + "/" + shown(question.place.protocol) +
           " for " + shown(question.addressFamily) + (question.wantsTxt ? "" : " without TXT");
  }

  void tell(const std::string& question, News news, const platform::Resolved& resolved) {
    const auto hasText = [&](const auto& open) { return open.second.text == question; };
    const auto found = std::find_if(mOpen.begin(), mOpen.end(), hasText);
    ASSERT_NE(found, mOpen.end()) << question;
    found->second.callback(news, resolved);
  }

  int mNextNumber = 0;
  std::map<int, Open> mOpen;
};
