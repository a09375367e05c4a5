#include "Platform/Capture/ImageFileCamera.h"

#include "Platform/Capture/CaptureQueue.h"
#include "Platform/Foundation/Log.h"
#include "Platform/Graphics/Image.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>

#include <cstring>
#include <mutex>

namespace Platform
{

namespace
{

constexpr int previewSide = 1280; // pixels: what a camera's preview has
constexpr qreal maximumZoom = 8.0;

DispatchQueue &previewQueue()
{
    static DispatchQueue queue(QStringLiteral("image file preview"), DispatchQueue::Kind::Serial);
    return queue;
}

QStringList pictureFiles(const QString &path)
{
    if (!QFileInfo(path).isDir())
        return QFileInfo(path).isFile() ? QStringList(path) : QStringList();
    const QDir folder(path);
    QStringList files;
    for (const QString &name : folder.entryList(
             {QStringLiteral("*.jpg"), QStringLiteral("*.jpeg"), QStringLiteral("*.png")}, QDir::Files, QDir::Name))
        files += folder.filePath(name);
    return files;
}

QRect middle(const QSize &size, qreal zoom)
{
    const QSize part = (QSizeF(size) / zoom).toSize().expandedTo({1, 1});
    return {QPoint((size.width() - part.width()) / 2, (size.height() - part.height()) / 2), part};
}

QImage previewPicture(const QString &file)
{
    const Image image = Image::withContentsOfFile(file);
    const QSize size = image.size().toSize();
    return image.upright(size.scaled(size.boundedTo({previewSide, previewSide}), Qt::KeepAspectRatio))
        .convertToFormat(QImage::Format_RGB32);
}

QVideoFrame frameOf(const QImage &image)
{
    QVideoFrame frame(QVideoFrameFormat(image.size(), QVideoFrameFormat::pixelFormatFromImageFormat(image.format())));
    if (!frame.map(QVideoFrame::WriteOnly))
        return {};
    const size_t lineLength = size_t(image.width()) * size_t(image.depth()) / 8;
    for (int y = 0; y < image.height(); ++y)
        std::memcpy(frame.bits(0) + qsizetype(y) * frame.bytesPerLine(0), image.constScanLine(y), lineLength);
    frame.unmap();
    return frame;
}

// The photo, or nothing when the file is no picture.
std::shared_ptr<const CaptureSampleBuffer> photograph(const QString &file, qreal zoom)
{
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        return nullptr;
    const QByteArray bytes = source.readAll();
    const Image image = Image::withData(bytes);
    if (image.isNull())
        return nullptr;

    auto buffer = std::make_shared<CaptureSampleBuffer>();
    QBuffer device;
    device.setData(bytes);
    QImageReader reader(&device);
    if (zoom == 1.0 && reader.format() == "jpeg") {
        buffer->jpeg = bytes;
        return buffer;
    }
    reader.setAutoTransform(true);
    if (zoom != 1.0)
        reader.setClipRect(middle(image.bitmapSize(), zoom));
    buffer->pixels = reader.read();
    return buffer->pixels.isNull() ? nullptr : buffer;
}

} // namespace

// Makes the preview's frames off the main thread, one at a time; what changes meanwhile is caught up with afterwards.
class ImageFileCamera::Preview : public std::enable_shared_from_this<Preview>
{
public:
    explicit Preview(FrameHandler handler)
        : m_handler(std::move(handler))
    {
    }

    void show(const QString &file, qreal zoom)
    {
        const std::lock_guard lock(m_mutex);
        m_file = file;
        m_zoom = zoom;
        m_isOutdated = true;
        if (std::exchange(m_isBusy, true))
            return;
        previewQueue().async([preview = shared_from_this()] { preview->catchUp(); });
    }

    void stop()
    {
        const std::lock_guard lock(m_mutex);
        m_handler = {};
    }

private:
    void catchUp()
    {
        std::unique_lock lock(m_mutex);
        while (m_handler && std::exchange(m_isOutdated, false)) {
            const QString file = m_file;
            const qreal zoom = m_zoom;
            lock.unlock();
            if (std::exchange(m_pictureFile, file) != file || m_picture.isNull())
                m_picture = previewPicture(file);
            const QVideoFrame frame =
                m_picture.isNull() ? QVideoFrame() : frameOf(m_picture.copy(middle(m_picture.size(), zoom)));
            lock.lock();
            const FrameHandler handler = m_handler;
            if (!handler || !frame.isValid())
                continue;
            // Without the lock: whoever gets the frame may wait for a thread that stops this preview.
            lock.unlock();
            handler(frame);
            lock.lock();
        }
        m_isBusy = false;
    }

    std::mutex m_mutex;
    FrameHandler m_handler; // null once stopped
    QString m_file;
    qreal m_zoom = 1.0;
    bool m_isOutdated = false;
    bool m_isBusy = false;

    // Only while busy.
    QString m_pictureFile;
    QImage m_picture;
};

ImageFileCamera::ImageFileCamera(const QString &path)
    : m_files(pictureFiles(path))
{
    if (m_files.isEmpty())
        log(QStringLiteral("There are no pictures for a camera at %1").arg(QFileInfo(path).absoluteFilePath()));
}

ImageFileCamera::~ImageFileCamera()
{
    if (m_preview)
        m_preview->stop();
}

QString ImageFileCamera::currentFile() const
{
    return m_files.value(m_index);
}

qreal ImageFileCamera::activeFormatVideoMaxZoomFactor() const
{
    return maximumZoom;
}

void ImageFileCamera::applyZoom(qreal factor, qreal rate)
{
    Q_UNUSED(rate)
    m_zoom = factor;
    showCurrent();
}

void ImageFileCamera::startDelivering(CaptureSessionPreset preset, FrameHandler handler)
{
    Q_UNUSED(preset)
    moveOnAfterPhoto();
    m_preview = std::make_shared<Preview>(std::move(handler));
    showCurrent();
}

void ImageFileCamera::stopDelivering()
{
    if (const auto preview = std::exchange(m_preview, nullptr))
        preview->stop();
}

void ImageFileCamera::captureStillImage(CaptureCompletion completion)
{
    if (m_files.isEmpty())
        return completion(nullptr, QStringLiteral("There is no picture file"));
    if (m_isPhotographed) {
        moveOnAfterPhoto();
        showCurrent();
    }
    // Only the next photo moves on: the preview is to freeze on what has been photographed.
    m_isPhotographed = true;
    captureQueue().async([file = currentFile(), zoom = m_zoom, completion = std::move(completion)] {
        const auto buffer = photograph(file, zoom);
        completion(buffer, buffer ? QString() : QStringLiteral("%1 cannot be read").arg(file));
    });
}

void ImageFileCamera::moveOnAfterPhoto()
{
    if (std::exchange(m_isPhotographed, false))
        m_index = (m_index + 1) % m_files.size();
}

void ImageFileCamera::showCurrent()
{
    if (m_preview && !m_files.isEmpty())
        m_preview->show(currentFile(), m_zoom);
}

} // namespace Platform
