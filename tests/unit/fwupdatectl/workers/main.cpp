// The workers of these tests: the processes that the tool starts as itself do what the name of
// their printer says, as a script of the shell. Its first argument is the work, "update" or
// "version".
#include <gmock/gmock.h>
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

int main(int argc, char** argv) {
  if (argc == 3 && std::string_view(argv[1]) == "--worker") {
    const auto order = nlohmann::json::parse(argv[2]);
    const std::string script = order.at("name");
    const std::string work = order.at("work");
    execl("/bin/sh", "sh", "-c", script.c_str(), "sh", work.c_str(), nullptr);
    return 127;
  }
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
