// The names of hosts, as an administrator gives them where DNS-SD does not reach.
#pragma once

#include <string>

// Whether the resolver may be asked for it. What ends in a number would be an address of a form
// that nobody means ("10.0.5" is 10.0.0.5 there), so it is none.
bool isHostName(const std::string& text);

// The IPv4 address of "HOST:PORT", with the port: the first that the resolver knows. Blocks as long
// as the resolver does. Throws std::runtime_error, with a sentence for the user, when there is
// none.
std::string resolvedAddress(const std::string& address);
