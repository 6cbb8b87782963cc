// Makes a character classification that of the global locale for its own lifetime. The locale has
// no name, so that the C library keeps its own.
#pragma once

#include <locale>

class GlobalLocale {
 public:
  // The locale owns `classification`.
  explicit GlobalLocale(std::ctype<wchar_t>* classification)
      : mPrevious(std::locale::global(std::locale(std::locale::classic(), classification))) {}
  ~GlobalLocale() { std::locale::global(mPrevious); }
  GlobalLocale(const GlobalLocale&) = delete;
  GlobalLocale& operator=(const GlobalLocale&) = delete;

 private:
  const std::locale mPrevious;
};
