#include "Platform/Capture/CaptureSessionPrivate.h"

#include "Platform/Capture/CaptureQueue.h"
#include "Platform/Foundation/Clock.h"
#include "Platform/Foundation/DispatchQueue.h"

#include <QGuiApplication>
#include <QThread>

namespace Platform
{

namespace
{

constexpr std::chrono::seconds photoTimeLimit{10};

bool isSuspended(Qt::ApplicationState state)
{
    return state == Qt::ApplicationSuspended;
}

} // namespace

DispatchQueue &captureQueue()
{
    static DispatchQueue queue(QStringLiteral("capture queue"), DispatchQueue::Kind::Serial);
    return queue;
}

PendingPhoto::PendingPhoto(CaptureCompletion completion)
    : m_completion(std::move(completion))
{
}

PendingPhoto::~PendingPhoto()
{
    fail(QStringLiteral("The capture session ended before the photo was taken"));
}

void PendingPhoto::answer(const std::shared_ptr<const CaptureSampleBuffer> &buffer, const QString &error)
{
    if (m_isAnswered.exchange(true))
        return;
    captureQueue().async([completion = std::exchange(m_completion, {}), buffer, error] {
        if (completion)
            completion(buffer, error);
    });
}

CaptureSession::Private::Private()
{
    auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    if (!application)
        return;
    m_isSuspended = isSuspended(QGuiApplication::applicationState());
    connect(application, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        m_isSuspended = isSuspended(state);
        update();
    });
}

CaptureSession::Private::~Private()
{
    if (input)
        input->device()->stop(this);
}

void CaptureSession::Private::setRunning(bool running)
{
    // Frames obey at once, the device as soon as the main thread is free.
    m_isRunning = running;
    relay->setOpen(running);
    onMainThread([this] { update(); });
}

void CaptureSession::Private::close()
{
    m_isRunning = false;
    relay->setOpen(false);
}

void CaptureSession::Private::update()
{
    if (!input)
        return;
    const std::shared_ptr<CaptureDevice> device = input->device();
    if (!m_isRunning || m_isSuspended)
        return device->stop(this);
    if (device->requiresAuthorization() && !hasAccess())
        return;
    device->start(this, preset, [target = std::weak_ptr(relay)](const QVideoFrame &frame) {
        if (const auto living = target.lock())
            living->push(frame);
    });
}

bool CaptureSession::Private::hasAccess()
{
    const CaptureAuthorizationStatus status = CaptureDevice::authorizationStatus();
    if (status == CaptureAuthorizationStatus::NotDetermined && !std::exchange(m_isAskingForAccess, true)) {
        CaptureDevice::requestAccess([session = QPointer<Private>(this)](bool granted) {
            if (!session)
                return;
            session->m_isAskingForAccess = false;
            if (granted)
                session->update();
            if (const auto handler = session->accessHandler)
                handler(granted);
        });
    }
    return status == CaptureAuthorizationStatus::Authorized;
}

void CaptureSession::Private::takePhoto(const std::shared_ptr<PendingPhoto> &photo)
{
    onMainThread([this, photo] { take(photo); });
}

void CaptureSession::Private::onMainThread(const std::function<void()> &block)
{
    if (QThread::currentThread() == thread())
        block();
    else
        DispatchQueue::mainAsync(this, block);
}

void CaptureSession::Private::take(const std::shared_ptr<PendingPhoto> &photo)
{
    if (const auto other = m_photo.lock(); other && !other->isAnswered())
        return photo->fail(QStringLiteral("Another photo is being taken"));
    if (!m_isRunning)
        return photo->fail(QStringLiteral("The capture session is not running"));
    update(); // the session may have been started a moment ago on another thread
    if (!input || !input->device()->isStartedBy(this))
        return photo->fail(QStringLiteral("The camera has not started"));

    m_photo = photo;
    Clock::current().after(photoTimeLimit, this, [late = std::weak_ptr(photo)] {
        if (const auto unanswered = late.lock())
            unanswered->fail(QStringLiteral("The camera does not answer"));
    });
    input->device()->captureStillImage([photo](const std::shared_ptr<const CaptureSampleBuffer> &buffer,
                                               const QString &error) { photo->answer(buffer, error); });
}

} // namespace Platform
