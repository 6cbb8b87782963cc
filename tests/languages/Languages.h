// The languages that the program speaks, by the names of their files, and how many forms a noun has
// beside a number in each.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>

struct Language {
  const char* name;
  const char* locale;  // of somebody who reads it
  int pluralForms;
};

inline constexpr Language kLanguages[] = {
    {"ar", "ar_EG", 6}, {"cs", "cs_CZ", 3}, {"de", "de_DE", 2}, {"en", "en_US", 2},
    {"es", "es_ES", 2}, {"fr", "fr_FR", 2}, {"it", "it_IT", 2}, {"ja", "ja_JP", 1},
    {"ko", "ko_KR", 1}, {"nl", "nl_NL", 2}, {"pl", "pl_PL", 3}, {"pt", "pt_BR", 2},
    {"sv", "sv_SE", 2}, {"tr", "tr_TR", 1}, {"uk", "uk_UA", 3}, {"zh_Hans", "zh_CN", 1}};

inline std::ostream& operator<<(std::ostream& stream, const Language& language) {
  return stream << language.name;
}

// What the tests of a language are called by.
inline std::string inTestNames(const testing::TestParamInfo<Language>& info) {
  return info.param.name;
}
