#pragma once

#include <QImage>

namespace Platform::Luma
{

// The luma of ITU-R BT.601: what the Y of a JPEG holds already, so that a photo's grey is the camera's own. Of pixels
// that are partly transparent over black.
QImage of(const QImage &image);

// A grey bitmap of `size` pixels, each the mean of what lies under it, for sizes that are larger in neither direction.
// Qt shrinks in four components only.
QImage shrunk(const QImage &grey, const QSize &size);

} // namespace Platform::Luma
