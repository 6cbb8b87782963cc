// The checksum that the firmware burn command carries; the printer refuses an image that does not
// match it. Close to the Internet checksum, but not the same: a last odd byte is added as it is,
// and the sum is folded as a signed number.
#pragma once

// Of `length` bytes at `data`, which need not be aligned.
unsigned short CalcCheckSum(const unsigned short* data, unsigned long length);
