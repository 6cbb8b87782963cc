#include <gtest/gtest.h>

#include <string>

#include "workerEvent.h"

namespace {

std::string eventIn(const std::string& line) {
  const auto event = workerEvent(line);
  return event ? event->dump() : "none";
}

TEST(WorkerEventTest, EventIsWhatTheWorkerSaid) {
  for (
      const std::string line :
      {R"({"schema":1,"time":"2026-01-02T03:04:05.006Z","event":"phase","phase":"connecting","bound_ms":0})",
       R"({"event":"progress","bytes":5000000000,"total":5000000001})",
       R"({"event":"versions","version_before":4294967295,"version_of_firmware":0})",
       R"({"event":"cause","cause":"It is open.","next_step":"","not_permitted":true,"in_use":false})",
       R"({"event":"version","version":199,"firmware":{"file":"a.bin","version":200}})",
       R"({"event":"of a later version","of":null,"by":-1.5})"}) {
    EXPECT_EQ(eventIn(line), line);
  }
}

TEST(WorkerEventTest, LineThatWasCutShortIsNoEvent) {
  for (const char* const line :
       {"", "{", "[]", "\"event\"", "7", "{}", R"({"event":"outcome","outcome":"upd)",
        R"({"phase":"connecting"})", "Aborted"}) {
    EXPECT_EQ(eventIn(line), "none") << line;
  }
}

// A member that is asked for as something else ends who asks.
TEST(WorkerEventTest, MemberOfAnotherTypeMakesItNoEvent) {
  for (const char* const members : {R"("event":7)",
                                    R"("event":null)",
                                    R"("event":"error","message":{})",
                                    R"("event":"error","message":1)",
                                    R"("event":"cause","cause":1)",
                                    R"("event":"cause","next_step":false)",
                                    R"("event":"cause","not_permitted":"yes")",
                                    R"("event":"cause","in_use":0)",
                                    R"("event":"outcome","outcome":["updated"])",
                                    R"("event":"outcome","outcome":0)",
                                    R"("event":"phase","phase":1)",
                                    R"("event":"phase","bound_ms":-1)",
                                    R"("event":"phase","bound_ms":4294967296)",
                                    R"("event":"versions","version_before":"199")",
                                    R"("event":"versions","version_of_firmware":1.5)",
                                    R"("event":"version","version":4294967296)",
                                    R"("event":"progress","bytes":1e300)",
                                    R"("event":"progress","total":-1)",
                                    R"("event":"version","firmware":"a.bin")",
                                    R"("event":"version","firmware":{"file":1})",
                                    R"("event":"version","firmware":{"version":"200"})",
                                    R"("event":"version","firmware":{"firmware":{}})",
                                    R"("event":"new","of":{})",
                                    R"("event":"new","of":[])"}) {
    EXPECT_EQ(eventIn("{" + std::string(members) + "}"), "none") << members;
  }
}

// Whoever writes it again, or copies it, goes as deep as it does.
TEST(WorkerEventTest, DeepLineIsNoEvent) {
  const std::string deep(30000, '[');
  EXPECT_EQ(eventIn("{\"event\":\"new\",\"of\":" + deep + std::string(30000, ']') + "}"), "none");
}

}  // namespace
