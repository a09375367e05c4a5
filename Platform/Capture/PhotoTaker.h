#pragma once

#include "Platform/Capture/CaptureSampleBuffer.h"

#include <QTemporaryDir>

#include <memory>

namespace Platform
{

// Takes one photo at a time with a camera that hands out its JPEG as files only. No file stays: one that nobody waits
// for any more is removed when it comes. For the main thread only.
class PhotoTaker
{
public:
    // Has the camera take a photo into that file and answers the photo's number; negative while it is not ready.
    using Shutter = std::function<int(const QString &file)>;

    explicit PhotoTaker(Shutter shutter);

    // Takes a photo as soon as the camera is ready; one under way fails. The completion runs on any thread.
    void take(CaptureCompletion completion);
    void fail(const QString &error);

    // What the camera reports. An error with a negative number is about the camera as a whole.
    void becameReady();
    void saved(int photo, const QString &file);
    void failed(int photo, const QString &error);

private:
    Q_DISABLE_COPY_MOVE(PhotoTaker)

    Shutter m_shutter;
    std::shared_ptr<QTemporaryDir> m_folder;
    int m_fileCount = 0;
    CaptureCompletion m_completion; // of the photo under way
    int m_photo = -1; // its number; negative while the camera is not ready
};

} // namespace Platform
