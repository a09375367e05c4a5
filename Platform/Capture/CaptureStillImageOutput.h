#pragma once

#include "Platform/Capture/CaptureSession.h"

#include <QLatin1StringView>
#include <QString>

#include <memory>
#include <vector>

namespace Platform
{

// Media type of pictures in motion and of photos.
inline constexpr QLatin1StringView CaptureMediaTypeVideo("vide");

struct CaptureInputPort {
    QString mediaType;
};

// The path of one kind of media from a session's input to its output.
class CaptureConnection
{
public:
    explicit CaptureConnection(std::vector<CaptureInputPort> inputPorts);

    const std::vector<CaptureInputPort> &inputPorts() const { return m_inputPorts; }

private:
    std::vector<CaptureInputPort> m_inputPorts;
};

// Takes photos from the session that it has been added to.
class CaptureStillImageOutput
{
public:
    // One connection with a video port while the session has an input; else none. For the main thread only.
    std::vector<std::shared_ptr<CaptureConnection>> connections() const;

    // Takes one photo. The completion runs exactly once, on the capture queue, never on the main thread. It gets a null
    // buffer and the reason when the connection is null or not of this output, the session does not run, another photo
    // is under way, the camera fails, or it does not answer within ten seconds. From any thread.
    void captureStillImageAsynchronouslyFromConnection(const std::shared_ptr<CaptureConnection> &connection,
                                                       CaptureCompletion completion);

    // The photo as JPEG: the camera's own bytes unchanged where it has any, else encoded here; empty when there is
    // nothing to encode. Any thread, but better not the main one.
    static QByteArray jpegStillImageDataRepresentation(const std::shared_ptr<const CaptureSampleBuffer> &buffer);

private:
    friend class CaptureSession;

    std::weak_ptr<CaptureSession::Private> m_session;
    std::shared_ptr<CaptureConnection> m_connection;
};

} // namespace Platform
