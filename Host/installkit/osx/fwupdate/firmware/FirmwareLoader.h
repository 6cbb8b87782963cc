// Chooses the firmware file for a printer by its IEEE 1284 device ID, reads it from the program's
// resources into memory, and tells the firmware versions of the file and of the printer. Used by
// the firmware write task; keeps no state.
#pragma once

#include <filesystem>
#include <set>
#include <string>

#include "platform/FileBytes.h"

// True when the file was chosen and read whole: `image` then holds all its bytes and `fileVersion`
// its version, 0 when its platform ID block is malformed. False after logging the reason:
// `fileVersion` is unchanged, `image` too or emptied.
bool getFirmware(const std::wstring& deviceId, platform::FileBytes& image,
                 unsigned int& fileVersion);

// The same for the file `name` in `directory`, whichever printers it is for.
bool loadFirmwareFile(const std::filesystem::path& directory, const std::wstring& name,
                      platform::FileBytes& image, unsigned int& fileVersion);

// The name of the file that getFirmware() would read; empty, after logging why, when there is none
// for this printer.
std::wstring chooseFirmwareFile(const std::wstring& deviceId);

// All names that it may be.
std::set<std::wstring> firmwareFileNames();

// The version that the printer reports in FWVER; 0 when the field is absent.
unsigned int extractVersionFromIeee1284Id(const std::wstring& deviceId);
