// The PJL texts that go to the printer, byte for byte. Some lines end in CR LF and one in LF alone:
// the printers want them so.
#pragma once

#include <array>
#include <cstddef>

template <std::size_t N>
constexpr std::array<char, N - 1> pjlBytes(const char (&text)[N]) {
  std::array<char, N - 1> bytes{};
  for (std::size_t i = 0; i < N - 1; ++i) bytes[i] = text[i];
  return bytes;
}

// Universal Exit Language: leaves whatever interpreter runs, and enters PJL.
inline constexpr std::array<char, 9> kUel = pjlBytes("\x1B%-12345X");

inline constexpr std::array<char, 25> kEnterAcl = pjlBytes("@PJL ENTER LANGUAGE=ACL\r\n");

// Ends unsolicited status messages, which would be taken for replies.
inline constexpr std::array<char, 34> kUstatusOff =
    pjlBytes("\x1B%-12345X@PJL USTATUSOFF\n\x1B%-12345X");
