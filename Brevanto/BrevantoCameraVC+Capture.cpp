// From the shutter to the ad screen.
#include "Brevanto/BrevantoCameraVC.h"

#include "Brevanto/BrevantoAdVC.h"
#include "Brevanto/BrevantoBundle.h"
#include "Brevanto/Reachability/BrevantoReachability.h"
#include "Brevanto/ServerManager/BrevantoServerManager.h"
#include "Brevanto/Utils/BrevantoReachabilityManager.h"
#include "Brevanto/Utils/ImageScale.h"
#include "Platform/Capture/CaptureStillImageOutput.h"
#include "Platform/Foundation/Clock.h"
#include "Platform/Interface/AlertController.h"
#include "Platform/Interface/NavigationController.h"
#include "Platform/Interface/Window.h"

#include <QGuiApplication>
#include <QQuickWindow>

using namespace std::chrono_literals;
using namespace Platform;

namespace
{

constexpr qreal portraitUploadWidth = 480;
constexpr qreal landscapeUploadWidth = 640;
constexpr qreal uploadQuality = 0.0;
constexpr auto uploadDelay = 100ms;
constexpr auto timeOutInterval = 10s;
constexpr int leftoverOverlayTag = 301;

QSizeF uploadSize(const QSizeF &photo)
{
    const qreal width = photo.width() > photo.height() ? landscapeUploadWidth : portraitUploadWidth;
    return {width, std::trunc(photo.height() * width / photo.width())};
}

std::unique_ptr<AlertController> captureAgainAlert(const QString &title, const QString &message,
                                                   std::function<void()> captureAgain)
{
    auto alert = std::make_unique<AlertController>(title, message);
    alert->addAction({QStringLiteral("Capture Again"), AlertActionStyle::Default, std::move(captureAgain)});
    return alert;
}

} // namespace

// The screen as blocks on other threads hold it, which may outlive it.
class BrevantoCameraVC::Reference
{
public:
    explicit Reference(BrevantoCameraVC *screen)
        : m_owner(screen)
        , m_screen(screen)
    {
    }

    // Runs `block` on the main thread unless the screen is gone by then.
    void mainAsync(std::function<void(BrevantoCameraVC &screen)> block) const
    {
        DispatchQueue::mainAsync(m_owner, [screen = m_screen, block = std::move(block)] { block(*screen); });
    }

private:
    QPointer<QObject> m_owner;
    BrevantoCameraVC *m_screen;
};

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
    if (!m_captureImageOutput)
        return;

    m_captureImageOutput->captureStillImageAsynchronouslyFromConnection(
        connection,
        [screen = Reference(this), session = m_captureSession, sessionQueue = m_sessionQueue](const auto &buffer,
                                                                                              const QString &) {
            if (!buffer)
                return;
            sessionQueue->async([session] { session->stopRunning(); });
            const QByteArray jpeg = CaptureStillImageOutput::jpegStillImageDataRepresentation(buffer);
            if (!jpeg.isEmpty())
                sendCapturePhoto(screen, Image::withData(jpeg));
        });
}

// Runs on the capture queue. The photo is sent as it was taken: how the device is held does not turn it. From one that
// is damaged or a mere line the user goes back to the live preview.
void BrevantoCameraVC::sendCapturePhoto(const Reference &screen, const Image &photo)
{
    const Image scaled = scale::scaleToSize(photo, uploadSize(photo.size()));
    const QByteArray data = scale::convertImageToGrayScale(scaled).jpegData(uploadQuality);
    screen.mainAsync([data](BrevantoCameraVC &self) {
        if (data.isEmpty()) {
            self.startCaptureSession();
            return;
        }
        // Lets the frozen preview be drawn first.
        Clock::current().after(uploadDelay, &self, [&self, data] { self.sendCapturedData(data); });
    });
}

void BrevantoCameraVC::sendCapturedData(const QByteArray &data)
{
    BrevantoReachabilityManager *reachability = BrevantoReachabilityManager::instance();
    if (reachability->reachabilty()->currentReachabilityStatus() == BrevantoReachabilityStatusNone) {
        reachability->animateNoInternetConnectionLabel();
        presentNotConnected();
        return;
    }

    const Reference reference(this);
    reference.mainAsync([](BrevantoCameraVC &self) { self.startAnimating(); });
    *m_isRequestOnProcess = true;
    // Whoever clears the flag first decides what becomes of the request.
    BrevantoServerManager::sharedServerManager()->postCapturedImageData(
        data,
        [reference, isOnProcess = m_isRequestOnProcess](const std::optional<BrevantoMatchGroupList> &matchGroups) {
            if (isOnProcess->exchange(false))
                reference.mainAsync([matchGroups](BrevantoCameraVC &self) { self.requestCompleted(matchGroups); });
        },
        [reference, isOnProcess = m_isRequestOnProcess](const std::optional<URLError> &) {
            if (isOnProcess->exchange(false))
                reference.mainAsync([](BrevantoCameraVC &self) { self.requestFailed(); });
        });
    scheduleTimeOut();
}

bool BrevantoCameraVC::isLeaving() const
{
    const ViewController *root = this;
    while (root->parentViewController())
        root = root->parentViewController();
    const ViewController *presenter = presentingViewController();
    return presenter && presenter->presentedViewController() != root;
}

void BrevantoCameraVC::requestCompleted(const std::optional<BrevantoMatchGroupList> &matchGroups)
{
    if (isLeaving())
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
    presented->dismiss(true, [self = QPointer(this), makeAlert] {
        if (self)
            self->present(makeAlert(), true);
    });
}

void BrevantoCameraVC::scheduleTimeOut()
{
    Clock::current().after(timeOutInterval, this, [this] { timedOut(); });
}

void BrevantoCameraVC::timedOut()
{
    NavigationController *navigation = navigationController();
    if (!*m_isRequestOnProcess || !navigation || navigation->topViewController() != this || isLeaving())
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
    return Image(image.upright((size * scale).toSize()), scale);
}
