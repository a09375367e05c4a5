// From the shutter to the ad screen.
#include "Brevanto/BrevantoCameraVC.h"

#include "Brevanto/BrevantoAdVC.h"
#include "Brevanto/BrevantoBundle.h"
#include "Brevanto/ServerManager/BrevantoServerManager.h"
#include "Brevanto/Utils/BrevantoReachabilityManager.h"
#include "Brevanto/Utils/UploadImage.h"
#include "Platform/Capture/CaptureStillImageOutput.h"
#include "Platform/Foundation/Clock.h"
#include "Platform/Foundation/Handover.h"
#include "Platform/Graphics/BitmapContext.h"
#include "Platform/Interface/AlertController.h"
#include "Platform/Interface/NavigationController.h"
#include "Platform/Interface/Window.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QThreadPool>

using namespace std::chrono_literals;
using namespace Platform;

namespace
{

constexpr auto uploadDelay = 100ms;
constexpr auto timeOutInterval = 10s;
constexpr int leftoverOverlayTag = 301;

std::unique_ptr<AlertController> captureAgainAlert(const QString &title, const QString &message,
                                                   std::function<void()> captureAgain)
{
    auto alert = std::make_unique<AlertController>(title, message);
    alert->addAction({QStringLiteral("Capture Again"), AlertActionStyle::Default, std::move(captureAgain)});
    return alert;
}

} // namespace

std::shared_ptr<CaptureConnection> BrevantoCameraVC::videoConnection() const
{
    if (!m_captureImageOutput)
        return nullptr;
    for (const auto &connection : m_captureImageOutput->connections()) {
        for (const CaptureInputPort &port : connection->inputPorts()) {
            if (port.mediaType == CaptureMediaTypeVideo)
                return connection;
        }
    }
    return nullptr;
}

void BrevantoCameraVC::captureButtonAction()
{
    const std::shared_ptr<CaptureConnection> connection = videoConnection();
    m_captureButton->setEnabled(connection != nullptr);
    if (!connection) {
        auto alert =
            std::make_unique<AlertController>(QStringLiteral("Camera Disabled"), QStringLiteral("Enable in Settings"));
        alert->addAction({QStringLiteral("Settings"), AlertActionStyle::Default, [] { Application::openSettings(); }});
        alert->addAction({QStringLiteral("Cancel"), AlertActionStyle::Cancel, {}});
        present(std::move(alert), true);
    }
    m_captureImageOutput->captureStillImageAsynchronouslyFromConnection(
        connection,
        [send = whileAlive([this](const Image &photo) { sendCapturePhoto(photo); }), session = m_captureSession,
         sessionQueue = m_sessionQueue](const auto &buffer, const QString &) {
            if (!buffer)
                return;
            sessionQueue->async([session] { session->stopRunning(); });
            const QByteArray jpeg = CaptureStillImageOutput::jpegStillImageDataRepresentation(buffer);
            if (!jpeg.isEmpty())
                DispatchQueue::mainAsync([send, photo = Image::withData(jpeg)] { send(photo); });
        });
}

void BrevantoCameraVC::sendCapturePhoto(const Image &photo)
{
    startInPool(*QThreadPool::globalInstance(),
                [photo, prepared = whileAlive([this](const QByteArray &jpeg) { photoPrepared(jpeg); })] {
                    DispatchQueue::mainAsync([prepared, jpeg = uploadData(photo)] { prepared(jpeg); });
                });
}

void BrevantoCameraVC::photoPrepared(const QByteArray &jpeg)
{
    if (jpeg.isEmpty()) {
        startCaptureSession();
        return;
    }
    // Lets the frozen preview be drawn first.
    Clock::current().after(uploadDelay, this, [this, jpeg] { sendCapturedData(jpeg); });
}

void BrevantoCameraVC::sendCapturedData(const QByteArray &data)
{
    BrevantoReachabilityManager *reachability = BrevantoReachabilityManager::instance();
    if (reachability->currentReachabilityStatus() == BrevantoReachabilityStatusNone) {
        reachability->animateNoInternetConnectionLabel();
        presentNotConnected();
        return;
    }

    DispatchQueue::mainAsync(whileAlive([this] { startAnimating(); }));
    *m_isRequestOnProcess = true;
    // Whoever clears the flag first decides what becomes of the request.
    BrevantoServerManager::sharedServerManager()->postCapturedImageData(
        data,
        [isOnProcess = m_isRequestOnProcess, complete = whileAlive([this](const auto &matchGroups) {
                                                 requestCompleted(matchGroups);
                                             })](const std::optional<BrevantoMatchGroupList> &matchGroups) {
            if (isOnProcess->exchange(false))
                DispatchQueue::mainAsync([complete, matchGroups] { complete(matchGroups); });
        },
        [isOnProcess = m_isRequestOnProcess,
         fail = whileAlive([this] { requestFailed(); })](const std::optional<URLError> &) {
            if (isOnProcess->exchange(false))
                DispatchQueue::mainAsync(fail);
        });
    scheduleTimeOut();
}

void BrevantoCameraVC::requestCompleted(const std::optional<BrevantoMatchGroupList> &matchGroups)
{
    if (isOnItsWayOut())
        return;
    if (ViewController *presented = presentedViewController())
        presented->dismiss(true);
    stopAnimating();
    removeLeftoverOverlay();
    responseReceivedWithMatchGroups(matchGroups);
}

void BrevantoCameraVC::requestFailed()
{
    stopAnimating();
    replacePresented([this] {
        return captureAgainAlert(QStringLiteral("Brevanto"), QStringLiteral("Something went wrong!!"),
                                 whileAlive([this] { returnToCamera(); }));
    });
}

void BrevantoCameraVC::presentNotConnected()
{
    replacePresented([this] {
        auto alert =
            std::make_unique<AlertController>(QStringLiteral("Please check you internet connection"), QString());
        alert->addAction({QStringLiteral("OK"), AlertActionStyle::Default, whileAlive([this] { returnToCamera(); })});
        return alert;
    });
}

void BrevantoCameraVC::replacePresented(const std::function<std::unique_ptr<AlertController>()> &makeAlert)
{
    ViewController *presented = presentedViewController();
    if (!presented)
        return;
    presented->dismiss(true, whileAlive([this, makeAlert] { present(makeAlert(), true); }));
}

void BrevantoCameraVC::scheduleTimeOut()
{
    Clock::current().after(timeOutInterval, this, [this] { timedOut(); });
}

void BrevantoCameraVC::timedOut()
{
    NavigationController *navigation = navigationController();
    if (!*m_isRequestOnProcess || !navigation || navigation->topViewController() != this || isOnItsWayOut())
        return;
    auto alert = std::make_unique<AlertController>(QStringLiteral("Getting response might take more time"), QString());
    alert->addAction({QStringLiteral("OK"), AlertActionStyle::Cancel, whileAlive([this] { scheduleTimeOut(); })});
    alert->addAction({QStringLiteral("Capture Again"), AlertActionStyle::Default, whileAlive([this] {
                          *m_isRequestOnProcess = false;
                          returnToCamera();
                      })});
    present(std::move(alert), true);
}

void BrevantoCameraVC::responseReceivedWithMatchGroups(const std::optional<BrevantoMatchGroupList> &matchGroups)
{
    if (!matchGroups || matchGroups->empty()) {
        present(captureAgainAlert(QStringLiteral("No matches found. Please retry by capturing a new image."), QString(),
                                  whileAlive([this] { startCaptureSession(); })),
                true);
        return;
    }
    auto ad = brevantoStoryboard().instantiate<BrevantoAdVC>(QStringLiteral("BrevantoAdVC"));
    ad->setMatchGroup(matchGroups->front());
    if (NavigationController *navigation = navigationController())
        navigation->pushViewController(std::move(ad), true);
}

void BrevantoCameraVC::recentsButtonAction()
{
    auto recents = brevantoStoryboard().instantiate(QStringLiteral("BrevantoRecentProductsVC"));
    if (NavigationController *navigation = navigationController())
        navigation->pushViewController(std::move(recents), true);
}

void BrevantoCameraVC::returnToCamera()
{
    stopAnimating();
    removeLeftoverOverlay();
    startCaptureSession();
}

void BrevantoCameraVC::removeLeftoverOverlay()
{
    if (QQuickItem *overlay = view()->viewWithTag(leftoverOverlayTag))
        overlay->setParentItem(nullptr);
}

Image BrevantoCameraVC::imageWithImage(const Image &image, const QSizeF &size)
{
    const QQuickWindow *window = view()->window();
    const qreal scale = window ? window->effectiveDevicePixelRatio() : qGuiApp->devicePixelRatio();
    BitmapContext context = BitmapContext::imageContext(size, false, scale);
    context.drawImage(image, QRectF(QPointF(0, 0), size));
    return context.image();
}
