// What the engine's tests stand on: doubles of every surface that the engine reaches.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "FakeBundle.h"
#include "FakeEvents.h"
#include "FakeFiles.h"
#include "FakeNetwork.h"
#include "LogRecorder.h"
#include "PrinterMessages.h"
#include "RecordingTransport.h"

class EngineFixture : public testing::Test {
 protected:
  EngineFixture();

  // Makes `image` the firmware file for the printers whose LIC is QT725013.
  void installFirmware(const std::string& image);

  // From now on the events of a download are answered as by the application, and the commands that
  // tell its outcome are added to `record`: "DlOk".
  void answerDownload(TransportRecord& record);

  platform::Platform surfaces();

  FakeEvents mEvents;
  FakeFiles mFiles;
  FakeBundle mBundle;
  FakeNetwork mNetwork;
  LogRecorder mLog;
};
