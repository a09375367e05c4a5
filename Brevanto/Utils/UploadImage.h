#pragma once

#include "Platform/Graphics/Image.h"

#include <QByteArray>

// The photo as it is sent: as it was taken, however the device is held; 480 pixels wide (640 in landscape), grey, a
// JPEG of the lowest quality. Empty when it cannot be drawn or would be higher than 16384 pixels. For any thread.
QByteArray uploadData(const Platform::Image &photo);
