// The program's texts in the user's language, from the translations that the application has
// loaded.
#pragma once

#include <memory>

#include "platform/Bundle.h"

namespace platform {

// Needs the QCoreApplication.
std::unique_ptr<LocalizedStrings> makeQtStrings();

}  // namespace platform
