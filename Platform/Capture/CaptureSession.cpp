#include "Platform/Capture/CaptureSession.h"

#include "Platform/Capture/CaptureSessionPrivate.h"
#include "Platform/Capture/CaptureStillImageOutput.h"
#include "Platform/Foundation/Exception.h"

#include <QThread>

namespace Platform
{

namespace
{

// The private part is a main-thread object; sessions may end anywhere.
template <typename Object>
void deleteOnItsThread(Object *object)
{
    if (QThread::currentThread() == object->thread())
        delete object;
    else
        object->deleteLater();
}

} // namespace

CaptureDeviceInput::CaptureDeviceInput(std::shared_ptr<CaptureDevice> device)
    : m_device(std::move(device))
{
}

std::shared_ptr<CaptureDeviceInput>
CaptureDeviceInput::deviceInputWithDevice(const std::shared_ptr<CaptureDevice> &device)
{
    if (!device)
        return nullptr;
    const CaptureAuthorizationStatus status =
        device->requiresAuthorization() ? CaptureDevice::authorizationStatus() : CaptureAuthorizationStatus::Authorized;
    if (status == CaptureAuthorizationStatus::Denied || status == CaptureAuthorizationStatus::Restricted)
        return nullptr;
    if (status == CaptureAuthorizationStatus::Authorized)
        device->open();
    return std::shared_ptr<CaptureDeviceInput>(new CaptureDeviceInput(device));
}

CaptureSession::CaptureSession()
    : d(new Private, deleteOnItsThread<Private>)
{
}

CaptureSession::~CaptureSession()
{
    d->close();
}

bool CaptureSession::canAddInput(const std::shared_ptr<CaptureDeviceInput> &input) const
{
    return input && !d->input;
}

bool CaptureSession::canAddOutput(const std::shared_ptr<CaptureStillImageOutput> &output) const
{
    return output && !d->output && output->m_session.expired();
}

void CaptureSession::addInput(const std::shared_ptr<CaptureDeviceInput> &input)
{
    if (!canAddInput(input))
        throw Exception(Exception::Name::InvalidArgument, QStringLiteral("The input cannot be added to the session"));
    d->input = input;
    d->update();
}

void CaptureSession::addOutput(const std::shared_ptr<CaptureStillImageOutput> &output)
{
    if (!canAddOutput(output))
        throw Exception(Exception::Name::InvalidArgument, QStringLiteral("The output cannot be added to the session"));
    d->output = output;
    output->m_session = d;
    output->m_connection =
        std::make_shared<CaptureConnection>(std::vector<CaptureInputPort>{{.mediaType = CaptureMediaTypeVideo}});
}

void CaptureSession::setSessionPreset(CaptureSessionPreset preset)
{
    d->preset = preset;
}

void CaptureSession::setAccessHandler(std::function<void(bool)> handler)
{
    d->accessHandler = std::move(handler);
}

void CaptureSession::startRunning()
{
    d->setRunning(true);
}

void CaptureSession::stopRunning()
{
    d->setRunning(false);
}

bool CaptureSession::isRunning() const
{
    return d->isRunning();
}

} // namespace Platform
