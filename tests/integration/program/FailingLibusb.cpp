// Preloaded before libusb: its beginning throws what the environment asks for. libusb itself never
// does; it stands for anything that the program's start may meet.
#include <cstdlib>
#include <new>
#include <stdexcept>
#include <string>

struct libusb_context;

extern "C" int libusb_init(libusb_context**) {
  const char* const failure = std::getenv("FAILURE");
  if (failure == nullptr) throw std::bad_alloc();
  throw std::runtime_error(failure);
}
