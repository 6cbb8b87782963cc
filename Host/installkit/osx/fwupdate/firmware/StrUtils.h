// Text in the manner of an IEEE 1284 device ID: a sequence of "KEY:value;" fields, keys with case,
// values verbatim. The firmware table and the loader find and match fields with these; all of it is
// stateless, and any text may be passed, whatever a printer sent.
#pragma once

#include <string>

namespace StrUtils {

// The text between the first "KEY:", wherever it stands, and the next ";". False, and `value`
// unchanged, when there is no such key or no ";" behind it.
bool GetIEEE1284KeyValue(const std::wstring& id, const std::wstring& key, std::wstring& value);

// False when the key is absent.
bool MatchIEEE1284Key(const std::wstring& id, const std::wstring& key, const std::wstring& pattern);

// Ignores case. "*" in the pattern matches any run of characters; what follows the last "*" need
// only occur in the rest of the text, not at its end. Both are compared up to their first zero
// character and over 1024 characters at most.
bool StrCmpWildcardNoCase(const std::wstring& pattern, const std::wstring& text);

// -1, 0 or 1: the order of the sequences of decimal numbers in the two texts. Everything that is
// not a digit separates numbers; the sequence that ends first is the smaller.
int CompareNumericFields(const wchar_t* a, const wchar_t* b);

// `out` becomes `format`, which holds one "%ls", with `arg` in its place, cut to one character less
// than both lengths together and filled up with zeros to that length.
void StrFmtSubst(std::wstring& out, const std::wstring& format, const std::wstring& arg);

}  // namespace StrUtils
