#include "EngineFixture.h"

#include "DownloadEvents.h"

using namespace platform::literals;

namespace {

platform::OSStatus recordCommand(platform::EventHandlerCallRef, const platform::Event& event,
                                 void* record) {
  platform::HICommand command;
  EXPECT_EQ(event.getParameter("----"_4cc, command), platform::noErr);
  EXPECT_EQ(command.attributes, 0u);
  EXPECT_EQ(command.menu, 0u);
  EXPECT_EQ(command.menuItemIndex, 0u);
  static_cast<TransportRecord*>(record)->add(fourCharText(command.commandId));
  return platform::noErr;
}

}  // namespace

EngineFixture::EngineFixture() : mLog(surfaces()) { mFiles.addDirectory("/resources"); }

platform::Platform EngineFixture::surfaces() {
  platform::Platform platform;
  platform.events = &mEvents;
  platform.files = &mFiles;
  platform.bundle = &mBundle;
  platform.network = &mNetwork;
  return platform;
}

void EngineFixture::installFirmware(const std::string& image) {
  mFiles.addFile("/resources/product.brand.bin", image);
}

void EngineFixture::answerDownload(TransportRecord& record) {
  handleDownloadEvents(mEvents);
  const platform::EventSpec commands[] = {{"cmds"_4cc, 1}};
  platform::EventHandlerRef installed = 0;
  mEvents.installHandler(platform::kApplicationTarget, commands, &recordCommand, &record,
                         installed);
}
