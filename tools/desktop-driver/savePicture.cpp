#include "savePicture.h"

#include <QImage>
#include <QString>

namespace desktop {

bool savePicture(const void* pixels, int width, int height, int bytesPerLine,
                 const std::filesystem::path& file) {
  const QImage picture(static_cast<const uchar*>(pixels), width, height, bytesPerLine,
                       QImage::Format_RGB32);
  return picture.save(QString::fromStdString(file.string()));
}

}  // namespace desktop
