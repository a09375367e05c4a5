#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include <functional>
#include <memory>

namespace Platform
{

// One photo as a capture device delivers it: the device's own JPEG bytes or, from devices that have none, pixels.
// Nobody changes it once it is delivered, so that any thread may read it.
struct CaptureSampleBuffer {
    QByteArray jpeg; // as the camera made it; may be empty
    QImage pixels; // looked at only when `jpeg` is empty
};

// Receives a photo or, with a null buffer, the reason why there is none, for people.
using CaptureCompletion = std::function<void(std::shared_ptr<const CaptureSampleBuffer> buffer, const QString &error)>;

} // namespace Platform
