#include "Platform/Capture/PhotoTaker.h"

#include "Platform/Capture/CaptureQueue.h"

#include <QFile>

#include <utility>

namespace Platform
{

PhotoTaker::PhotoTaker(Shutter shutter)
    : m_shutter(std::move(shutter))
{
}

void PhotoTaker::take(CaptureCompletion completion)
{
    fail(QStringLiteral("A newer photo has taken its place"));
    if (!m_folder)
        m_folder = std::make_shared<QTemporaryDir>();
    if (!m_folder->isValid()) {
        const auto folder = std::exchange(m_folder, nullptr);
        return completion(nullptr, folder->errorString());
    }
    m_completion = std::move(completion);
    becameReady();
}

void PhotoTaker::becameReady()
{
    if (!m_completion || m_photo >= 0)
        return;
    // Of its own name: an earlier photo may still be on its way into its file.
    m_photo = m_shutter(m_folder->filePath(QStringLiteral("photo-%1.jpg").arg(++m_fileCount)));
}

void PhotoTaker::saved(int photo, const QString &file)
{
    if (!m_completion || photo != m_photo) {
        QFile::remove(file);
        return;
    }
    m_photo = -1;
    captureQueue().async([path = file, folder = m_folder, completion = std::exchange(m_completion, {})] {
        QFile saved(path);
        auto buffer = std::make_shared<CaptureSampleBuffer>();
        if (saved.open(QIODevice::ReadOnly))
            buffer->jpeg = saved.readAll();
        const QString error = saved.errorString();
        saved.remove();
        if (buffer->jpeg.isEmpty())
            completion(nullptr, error);
        else
            completion(buffer, {});
    });
}

void PhotoTaker::failed(int photo, const QString &error)
{
    if (photo < 0 || photo == m_photo)
        fail(error);
}

void PhotoTaker::fail(const QString &error)
{
    m_photo = -1;
    if (const CaptureCompletion completion = std::exchange(m_completion, {}))
        completion(nullptr, error);
}

} // namespace Platform
