#include "Platform/Capture/CaptureStillImageOutput.h"

#include "Platform/Capture/CaptureSessionPrivate.h"
#include "Platform/Graphics/Image.h"

namespace Platform
{

namespace
{

// Hardly visible losses at a third of the size of the highest quality.
constexpr qreal jpegQuality = 0.92;

} // namespace

CaptureConnection::CaptureConnection(std::vector<CaptureInputPort> inputPorts)
    : m_inputPorts(std::move(inputPorts))
{
}

std::vector<std::shared_ptr<CaptureConnection>> CaptureStillImageOutput::connections() const
{
    const auto session = m_session.lock();
    if (!session || !session->input)
        return {};
    return {m_connection};
}

void CaptureStillImageOutput::captureStillImageAsynchronouslyFromConnection(
    const std::shared_ptr<CaptureConnection> &connection, CaptureCompletion completion)
{
    const auto photo = std::make_shared<PendingPhoto>(std::move(completion));
    const auto session = m_session.lock();
    if (!connection || connection != m_connection)
        photo->fail(QStringLiteral("There is no connection to a camera"));
    else if (session)
        session->takePhoto(photo);
}

QByteArray
CaptureStillImageOutput::jpegStillImageDataRepresentation(const std::shared_ptr<const CaptureSampleBuffer> &buffer)
{
    if (!buffer)
        return {};
    return buffer->jpeg.isEmpty() ? Image(buffer->pixels).jpegData(jpegQuality) : buffer->jpeg;
}

} // namespace Platform
