#include "startDownload.h"

#include <new>
#include <ostream>
#include <stdexcept>

#include "Log.h"

bool startDownload(const std::function<void()>& start) {
  try {
    start();
    return true;
  } catch (const std::runtime_error& error) {
    logDownloadFailure(error);
  } catch (const std::out_of_range& error) {
    logDownloadFailure(error);
  } catch (const std::bad_alloc& error) {
    logDownloadFailure(error);
  }
  return false;
}

void logDownloadFailure(const std::exception& error) {
  Log<3>() << "Failed to download firmware: " << error.what() << std::flush;
}
