// The assertions that end the program when a printer answers what no printer may, as they appear on
// standard error.
#pragma once

#include <string>

inline const std::string kEmptyId =
    "Assertion failed: (expectLen > 0), function operator(), file "
    "Host/installkit/osx/fwupdate/AsyncTaskQueue, line 443.\n";
inline const std::string kShortId =
    "Assertion failed: (len > IEEE_1284_HEADER_SIZE), function operator(), file "
    "Host/installkit/osx/fwupdate/AsyncTaskQueue, line 463.\n";
inline const std::string kNoText =
    "Assertion failed: (cfData), function constructFromCStr, file "
    "Host/installkit/osx/fwupdate/wcharStub, line 67.\n";
