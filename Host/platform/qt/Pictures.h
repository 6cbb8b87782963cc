// The program's own pictures: a file for each size, NAME-SIZE.png in a directory. Each picture is
// there in the size in which it is shown, and in twice that for screens of double scale.
#pragma once

#include <QIcon>
#include <QString>

namespace platform {

// In all its sizes, each read when it is first drawn; empty when there is no such picture.
QIcon pictureNamed(const QString& name, const QString& directory);

}  // namespace platform
