// What a program and a well-behaved printer say to each other in a download, and the firmware that
// is sent.
#pragma once

#include <cstddef>
#include <string>

// A text with zero bytes in it.
template <std::size_t N>
std::string bytes(const char (&literal)[N]) {
  return std::string(literal, N - 1);
}

// A firmware file of 28 bytes, version 200, checksum 0x7271.
inline const std::string kFirmware200 = bytes(
    "FIRMWARE"
    "ABC\0"
    "00000200XYZ\0"
    "Q\0"
    "\x03\x12");

inline const std::string kUelText = "\x1B%-12345X";
inline const std::string kUstatusOffText = "\x1B%-12345X@PJL USTATUSOFF\n\x1B%-12345X";
inline const std::string kDeviceIdRequest = bytes(
    "\x1B%-12345X@PJL ENTER LANGUAGE=ACL\r\n"
    "\x00\xAC\x00\x06"
    "\0\0\0\0\0\0\0\0\0\0\0\0"
    "\x1B%-12345X");
inline const std::string kBurnHeader200 = bytes(
    "\x1B%-12345X@PJL ENTER LANGUAGE=ACL\r\n"
    "\x00\xAC\x00\x0F"
    "\x04\x00\x72\x71\x00\x00\x00\x00\x00\x00\x00\x1C");

// The device ID of a printer with version 100, as it is sent: two bytes of length, then the text.
inline const std::string kDeviceId100 = bytes("\x00\x24MDL:KX350T;LIC:QT725013;FWVER:100;");

// Answers to the device-ID request and to the burn command.
inline const std::string kDeviceIdResponse =
    bytes("\x00\xAC\x00\x06\x00\x01\x00\x24\x00\x00\x00\x00\x00\x00\x00\x00");
inline const std::string kBurnResponse =
    bytes("\x00\xAC\x00\x0F\x00\x01\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00");
