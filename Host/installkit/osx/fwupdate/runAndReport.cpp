#include "runAndReport.h"

#include <cstdlib>
#include <exception>
#include <new>
#include <ostream>
#include <stdexcept>

#include "IoKitException.h"
#include "Log.h"

namespace {

int failure(const char* prefix, const std::exception& error) {
  Log<3>() << prefix << error.what() << std::flush;
  return EXIT_FAILURE;
}

}  // namespace

int runAndReport(const std::function<void()>& program) {
  try {
    program();
  } catch (const IoKitException& error) {
    return failure("I/O Kit error occurred: ", error);
  } catch (const std::runtime_error& error) {
    return failure("General runtime error occurred: ", error);
  } catch (const std::bad_alloc& error) {
    return failure("Allocation error occurred: ", error);
  }
  return EXIT_SUCCESS;
}
