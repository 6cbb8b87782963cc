// The log of a download as a list of lines, "PRIORITY TEXT", in the order of the tasks; and the
// bytes of the messages that the printer receives, in hexadecimal. All of it for the printer and
// the firmware file of DownloadFixture.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

using Lines = std::vector<std::string>;

inline Lines operator+(Lines first, const Lines& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

inline Lines arriving(std::size_t bytes) {
  return {"5 Network data arriving [" + std::to_string(bytes) + " bytes]."};
}

inline const Lines kReady{"5 Network ready for write."};

// What the tasks log, each up to where it waits.
inline const Lines kConnecting{"5 Connecting to I/O transport..."};
inline const Lines kStatusOff{"5 Clearing unsolicited status updates...",
                              "5 Async write request for 34 bytes."};
inline const Lines kRequest{"5 Requesting IEEE 1284 device ID from the printer...",
                            "5 Async write request for 59 bytes."};
inline const Lines kAwaitResponse{
    "5 IEEE 1284 device ID request sent to printer, waiting for response...",
    "5 Async read request for 16 bytes."};
inline const Lines kAwaitingDeviceId{
    "7 ACL Response: prefix=00ac; cmd ID=0006; cmdStatus=1",
    "7 ACL Response raw: 00 ac 00 06 00 01 00 24 00 00 00 00 00 00 00 00 ",
    "5 Reading IEEE 1284 device ID...", "5 Async read request for 36 bytes."};
inline const Lines kDeviceIdHandled{"5 Validating IEEE 1284 device ID...",
                                    "5 IEEE 1284 device ID is MDL:KX350T;LIC:QT725013;FWVER:100;",
                                    "5 Choosing and loading a firmware file...",
                                    "5 Firmware version in IEEE 1284 string: 100"};
inline const Lines kHeader{"5 Firmware version in file: 00000200",
                           "5 Async write request for 50 bytes."};
inline const Lines kImageBegin{"5 Writing new firmware to printer..."};
inline const Lines kImage = kImageBegin + Lines{"5 Async write request for 28 bytes."};
inline const Lines kUel{"5 Finalising the firmware download...",
                        "5 Async write request for 9 bytes."};
inline const Lines kAwaitBurn{
    "5 New firmware sent to printer, waiting for the printer to burn it to flash and send "
    "response.",
    "5 This will take some time; using a timeout of 3000ms.", "5 Async read request for 16 bytes."};

// From the start up to there.
inline const Lines kConnected = kConnecting + Lines{"5 Network socket connected."};
inline const Lines kStatusOffWritten = kConnected + kStatusOff;
inline const Lines kRequestWritten = kStatusOffWritten + kReady + kRequest;
inline const Lines kAwaitingResponse = kRequestWritten + kReady + kAwaitResponse;

// From the device ID's arrival up to there.
inline const Lines kHeaderWritten = kDeviceIdHandled + kHeader;
inline const Lines kImageWriting = kHeaderWritten + kReady + kImageBegin;
inline const Lines kImageWritten = kHeaderWritten + kReady + kImage;
inline const Lines kUelWritten = kImageWritten + kReady + kUel;
inline const Lines kAwaitingBurn = kUelWritten + kReady + kAwaitBurn;

// Response and device ID in one piece, 52 bytes.
inline const Lines kMergedReplies = kAwaitingResponse + arriving(52) + kAwaitingDeviceId;

// After the burn reply has arrived.
inline const Lines kBurned{"7 ACL Response: prefix=00ac; cmd ID=000f; cmdStatus=1",
                           "7 ACL Response raw: 00 ac 00 0f 00 01 00 00 00 00 00 00 00 00 00 00 ",
                           "5 Firmware download is complete, the printer will restart."};

inline const Lines kWriteFailed{
    "3 General runtime error occurred during async task: Unable to write data"};
inline const Lines kTransportGone{"5 Cleaning up network transport."};
inline const Lines kDropped{"5 Cleaning up firmware downloader.",
                            "5 Cleaning up network transport."};

// What the printer receives.
inline const std::string kReceivedStatusOff =
    "status-off "
    "1b252d31323334355840504a4c20555354415455534f46460a1b252d313233343558";
inline const std::string kReceivedIdRequest =
    "id-request "
    "1b252d31323334355840504a4c20454e544552204c414e47554147453d41434c0d0a"
    "00ac0006000000000000000000000000"
    "1b252d313233343558";
inline const std::string kReceivedBurnHeader =
    "burn-header "
    "1b252d31323334355840504a4c20454e544552204c414e47554147453d41434c0d0a"
    "00ac000f0400727100000000"
    "0000001c";
inline const std::string kReceivedImage = "image 28";
inline const std::string kReceivedUel = "uel 1b252d313233343558";

inline const Lines kReceivedQuery{kReceivedStatusOff, kReceivedIdRequest};
inline const Lines kReceivedUpdate =
    kReceivedQuery + Lines{kReceivedBurnHeader, kReceivedImage, kReceivedUel};
