// What ties the program to one printer product: how it is found on USB and on the network, whether
// to ask before a USB download, and which firmware file is for which printer. Compiled in; the
// finders, the printer records and the firmware loader read it.
#pragma once

#include <cstdint>
#include <deque>
#include <string>

#include "platform/Text.h"

class Branding {
 public:
  // One line of the firmware table: the file for the printers whose device ID has these values.
  struct FirmwareSpec {
    FirmwareSpec(const std::wstring& model, const std::wstring& lic, const std::wstring& file)
        : modelPattern(model), licPattern(lic), fileName(file) {}

    std::wstring modelPattern;  // for the value of MDL; may hold the wildcard "*"
    std::wstring licPattern;    // for the value of LIC; the empty pattern matches only no value
    std::wstring fileName;      // in the resources directory
  };

  // Appending to a deque leaves its records where they are.
  using FirmwareSpecList = std::deque<FirmwareSpec>;

  Branding() = delete;

  static const std::uint16_t sUsbVendorId;
  static const std::uint16_t sUsbProductId;
  static const platform::Text sManufacturerStr;
  static const platform::Text sModelStr;

  // Decides whether a USB printer is confirmed like a network printer; the program never sets it.
  static bool sPromptBeforeUsbDownload;

  // In the order of priority; empty until the first search. Records are only ever appended.
  static FirmwareSpecList sFirmwareSpecList;

  // Appends the records of the product's table to the list.
  static void buildFirmwareSpecList();

  // A table's text is pairs of a selector and a file name, all separated by ",". A selector is
  // device-ID text with MDL and LIC, or "*" for every printer.
  static FirmwareSpecList parseFirmwareSpecs(const std::wstring& table);

  // The file of the first record that matches both values, or an empty name when none does. The
  // reference stays valid for the life of the process.
  static const std::wstring& getMatchingFirmwareFile(const std::wstring& model,
                                                     const std::wstring& lic);
};
