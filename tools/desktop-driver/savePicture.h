// Writes a picture file. Apart from VirtualDesktop.cpp because Qt's and X11's headers do not go
// together.
#pragma once

#include <filesystem>

namespace desktop {

// `pixels` are 32 bits each, blue in the lowest byte. The format follows the file's ending. False
// when the file cannot be written.
bool savePicture(const void* pixels, int width, int height, int bytesPerLine,
                 const std::filesystem::path& file);

}  // namespace desktop
