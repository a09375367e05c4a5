#include "Brevanto/BrevantoCameraVC.h"

#include "Brevanto/BrevantoBundle.h"
#include "Brevanto/BrevantoConstants.h"
#include "Brevanto/Utils/BrevantoHotspotView.h"
#include "Brevanto/Utils/BrevantoReachabilityManager.h"
#include "Brevanto/Utils/BrevantoUtils.h"
#include "Platform/Capture/CaptureStillImageOutput.h"
#include "Platform/Capture/CaptureVideoPreviewLayer.h"
#include "Platform/Foundation/Clock.h"
#include "Platform/Foundation/Handover.h"
#include "Platform/Interface/AlertController.h"
#include "Platform/Interface/ImageView.h"
#include "Platform/Interface/NavigationController.h"
#include "Platform/Interface/ShapeLayer.h"
#include "Platform/Interface/Window.h"

#include <QScopeGuard>
#include <QThreadPool>

using namespace std::chrono_literals;
using namespace Platform;

namespace
{

constexpr qreal maximumZoom = 6.0;
constexpr qreal zoomRate = 3.0;
constexpr qreal zoomStep = 1.25; // of a key
constexpr int splashMarkTag = 302;

std::shared_ptr<CaptureDevice> firstDevice(CaptureDevicePosition position)
{
    for (const auto &device : CaptureDevice::devices()) {
        if (device->position() == position)
            return device;
    }
    return nullptr;
}

// Runs `change` while the device may be configured; without a lock the device stays as it is.
template <typename Change>
void configure(CaptureDevice &device, Change change)
{
    if (!device.lockForConfiguration())
        return;
    const auto unlock = qScopeGuard([&device] { device.unlockForConfiguration(); });
    change(device);
}

} // namespace

BrevantoCameraVC::BrevantoCameraVC() = default;

BrevantoCameraVC::~BrevantoCameraVC()
{
    if (!m_sessionQueue)
        return;
    m_sessionQueue->async([session = m_captureSession] { session->stopRunning(); });
    // A queue's end waits for its blocks, which must not hold up this thread.
    startInPool(*QThreadPool::globalInstance(), [queue = std::move(m_sessionQueue)] {});
}

void BrevantoCameraVC::connectOutlets()
{
    m_previewView = outlet<View>(QStringLiteral("previewView"));
    m_blurView = outlet<View>(QStringLiteral("blurView"));
    m_captureButton = outlet(QStringLiteral("captureButton"));
    m_flashButton = outlet(QStringLiteral("flashButton"));
    m_infoButton = outlet(QStringLiteral("infoButton"));
    m_closeButton = outlet(QStringLiteral("closeButton"));
    m_dashedView = outlet<View>(QStringLiteral("dashedView"));
    m_spinnerView = outlet<View>(QStringLiteral("spinnerView"));
}

void BrevantoCameraVC::viewDidLoad()
{
    ViewController::viewDidLoad();
    stopAnimating();

    const QRectF bounds = Screen::mainBounds();
    kScreenHeight = bounds.height();
    kScreenWidth = bounds.width();

    Application::setStatusBarStyle(Application::StatusBarStyle::LightContent);
    BrevantoUtils::customizeNavBarThroughOutApp();
    Application::setStatusBarHidden(true);

    m_sessionQueue = std::make_shared<DispatchQueue>(QStringLiteral("session queue"), DispatchQueue::Kind::Serial);
    m_backCamera = getBackCam();
    m_frontCamera = getFrontCam();
    createCaptureSession();

    m_layoutCount = 0;
    m_blurView->setHidden(true);
}

void BrevantoCameraVC::createCaptureSession()
{
    m_captureSession = std::make_shared<CaptureSession>();
    // A camera that waited for the user's permission could not be configured before.
    m_captureSession->setAccessHandler(whileAlive([this](bool) {
        configureFlashAndFocus();
        checkForAccessPermissions();
    }));
    m_captureDeviceInput = CaptureDeviceInput::deviceInputWithDevice(m_backCamera);
    configureFlashAndFocus();
    if (m_captureSession->canAddInput(m_captureDeviceInput))
        m_captureSession->addInput(m_captureDeviceInput);
    m_captureImageOutput = std::make_shared<CaptureStillImageOutput>();
    if (m_captureSession->canAddOutput(m_captureImageOutput))
        m_captureSession->addOutput(m_captureImageOutput);
}

void BrevantoCameraVC::configureFlashAndFocus()
{
    if (!m_captureDeviceInput)
        return;
    CaptureDevice &device = *m_captureDeviceInput->device();
    if (!device.hasFlash() || !device.isFocusModeSupported(CaptureFocusMode::ContinuousAutoFocus))
        return;
    configure(device, [](CaptureDevice &locked) {
        locked.setFlashMode(CaptureFlashMode::Off);
        locked.setFocusMode(CaptureFocusMode::ContinuousAutoFocus);
    });
}

std::shared_ptr<CaptureDevice> BrevantoCameraVC::getBackCam()
{
    return firstDevice(CaptureDevicePosition::Back);
}

std::shared_ptr<CaptureDevice> BrevantoCameraVC::getFrontCam()
{
    return firstDevice(CaptureDevicePosition::Front);
}

void BrevantoCameraVC::viewWillAppear(bool animated)
{
    ViewController::viewWillAppear(animated);
    Application::setStatusBarHidden(true);
    BrevantoReachabilityManager::instance()->addObserverForReachability(this);
    view()->bringSubviewToFront(m_infoButton);
    view()->bringSubviewToFront(m_closeButton);
    if (m_capturePreviewLayer && !m_captureSession->isRunning())
        startRunning();
    if (NavigationController *navigation = navigationController())
        navigation->setNavigationBarHidden(true);
}

void BrevantoCameraVC::viewDidAppear(bool animated)
{
    ViewController::viewDidAppear(animated);
    checkForAccessPermissions();
}

void BrevantoCameraVC::viewWillDisappear(bool animated)
{
    ViewController::viewWillDisappear(animated);
    BrevantoReachabilityManager::instance()->removeObserverForReachability();
}

void BrevantoCameraVC::viewDidLayoutSubviews()
{
    ViewController::viewDidLayoutSubviews();
    ++m_layoutCount;
    if (m_layoutCount == 1) {
        createPreviewLayer();
        startRunning();
        setUpTheDashedView();
        m_dashedView->setHidden(true);
    } else if (m_shapeLayer && m_shapeLayer->bounds().size() != m_dashedView->frame().size()) {
        // A desktop window changes its size without turning; and when it turns, the scene may move the guide once more
        // after the call that announced it.
        placePreviewAndGuide();
    }
    view()->layoutIfNeeded();
}

void BrevantoCameraVC::createPreviewLayer()
{
    auto layer = std::make_unique<CaptureVideoPreviewLayer>(m_captureSession);
    layer->setFrame(m_previewView->bounds());
    layer->setVideoGravity(CaptureVideoGravity::ResizeAspectFill);
    m_capturePreviewLayer = layer.release();
    m_previewView->addSubview(m_capturePreviewLayer);
    m_captureSession->setSessionPreset(CaptureSessionPreset::Photo);
}

void BrevantoCameraVC::willAnimateRotation(std::chrono::milliseconds duration)
{
    ViewController::willAnimateRotation(duration);
    placePreviewAndGuide();
}

void BrevantoCameraVC::placePreviewAndGuide()
{
    if (m_capturePreviewLayer)
        m_capturePreviewLayer->setFrame(m_previewView->bounds());
    setUpTheDashedView();
}

void BrevantoCameraVC::setUpTheDashedView()
{
    if (m_shapeLayer)
        m_shapeLayer->removeFromSuperlayer();
    else
        m_shapeLayer = new ShapeLayer(m_dashedView);

    const QRectF bounds(QPointF(0, 0), m_dashedView->frame().size());
    m_shapeLayer->setBounds(bounds);
    m_shapeLayer->setPosition(bounds.center());
    m_shapeLayer->setFillColor(Qt::transparent);
    m_shapeLayer->setStrokeColor(Qt::white);
    m_shapeLayer->setLineWidth(2.0);
    m_shapeLayer->setLineJoin(Qt::RoundJoin);
    m_shapeLayer->setLineDashPattern({10, 5});
    QPainterPath path;
    path.addRoundedRect(bounds, 5.0, 5.0);
    m_shapeLayer->setPath(path);
    m_dashedView->addSubview(m_shapeLayer);
}

void BrevantoCameraVC::checkForAccessPermissions()
{
    const auto leave = whileAlive([this] { dismiss(true); });
    const CaptureAuthorizationStatus status = CaptureDevice::authorizationStatus();
    const bool isUsable =
        status == CaptureAuthorizationStatus::NotDetermined || status == CaptureAuthorizationStatus::Authorized;
    m_captureButton->setEnabled(isUsable);
    m_flashButton->setEnabled(isUsable);

    if (status == CaptureAuthorizationStatus::Restricted) {
        auto alert = std::make_unique<AlertController>(QStringLiteral("Zovra"),
                                                       QStringLiteral("Access for Camera is restricted"));
        alert->addAction({QStringLiteral("Ok"), AlertActionStyle::Default, leave});
        present(std::move(alert), true);
    } else if (status == CaptureAuthorizationStatus::Denied) {
        auto alert =
            std::make_unique<AlertController>(QStringLiteral("Camera Disabled"), QStringLiteral("Enable in Settings"));
        alert->addAction({QStringLiteral("Cancel"), AlertActionStyle::Cancel, leave});
        alert->addAction({QStringLiteral("Settings"), AlertActionStyle::Default, [leave] {
                              Application::openSettings();
                              leave();
                          }});
        present(std::move(alert), true);
    }
}

void BrevantoCameraVC::updateFlashButtonVisibility()
{
    m_flashButton->setVisible(m_captureDeviceInput && m_captureDeviceInput->device()->hasFlash());
}

void BrevantoCameraVC::flashButtonAction()
{
    if (!m_captureDeviceInput || !m_captureDeviceInput->device()->hasFlash())
        return;
    CaptureDevice &device = *m_captureDeviceInput->device();
    const bool isOn = !device.isFlashActive();
    m_flashButton->setProperty("selected", isOn);
    configure(device, [isOn](CaptureDevice &locked) {
        locked.setFlashMode(isOn ? CaptureFlashMode::On : CaptureFlashMode::Off);
    });
}

void BrevantoCameraVC::pinched(GestureState state, qreal scale)
{
    if (!m_captureDeviceInput)
        return;
    CaptureDevice &device = *m_captureDeviceInput->device();
    if (state == Began) {
        m_baseScale = device.videoZoomFactor();
        return;
    }
    if (state == Changed)
        zoomTo(m_baseScale * scale);
}

void BrevantoCameraVC::zoomIn()
{
    if (m_captureDeviceInput)
        zoomTo(m_captureDeviceInput->device()->videoZoomFactor() * zoomStep);
}

void BrevantoCameraVC::zoomOut()
{
    // The last step leads all the way back, wherever a pinch left the zoom.
    if (m_captureDeviceInput)
        zoomTo(std::max(1.0, m_captureDeviceInput->device()->videoZoomFactor() / zoomStep));
}

void BrevantoCameraVC::zoomTo(qreal zoom)
{
    CaptureDevice &device = *m_captureDeviceInput->device();
    if (zoom < 1.0 || zoom >= std::min(device.activeFormatVideoMaxZoomFactor(), maximumZoom))
        return;
    configure(device, [zoom](CaptureDevice &locked) { locked.rampToVideoZoomFactor(zoom, zoomRate); });
}

void BrevantoCameraVC::infoButtonAction()
{
    View::animate({.duration = 500ms}, [this] { m_dashedView->setHidden(!m_dashedView->isHidden()); });
}

void BrevantoCameraVC::closeButtonAction()
{
    dismiss(true);
}

bool BrevantoCameraVC::goBack()
{
    closeButtonAction();
    return true;
}

void BrevantoCameraVC::startRunning()
{
    m_sessionQueue->async([session = m_captureSession] { session->startRunning(); });
}

void BrevantoCameraVC::startCaptureSession()
{
    m_captureButton->setEnabled(true);
    startRunning();
}

void BrevantoCameraVC::startAnimating()
{
    m_spinnerView->setProperty("running", true);
    m_spinnerView->setHidden(false);
}

void BrevantoCameraVC::stopAnimating()
{
    m_spinnerView->setProperty("running", false);
    m_spinnerView->setHidden(true);
}

void BrevantoCameraVC::addCustomBrevantoView()
{
    m_customLaunchView = new View(view()->bounds());
    m_customLaunchView->setParent(this);
    m_customLaunchView->setBackgroundColor(Qt::black);
    auto *logo = new ImageView(QRectF(0, 0, 175, 24));
    logo->setImage(brevantoBundle().imageNamed(QStringLiteral("ic_logo")));
    logo->setCenter(m_customLaunchView->bounds().center());
    m_customLaunchView->addSubview(logo);
    auto *mark = new BrevantoHotspotView(QRectF(logo->frame().right() - 48, logo->frame().y(), 24, 24));
    mark->setTag(splashMarkTag);
    m_customLaunchView->addSubview(mark);
    mark->startAnimating();
    if (NavigationController *navigation = navigationController())
        navigation->view()->addSubview(m_customLaunchView);

    auto delay = 2s;
    if (!BrevantoUtils::isAppLoadedOnce()) {
        delay = 5s;
        BrevantoUtils::setIsAppLoadedOnce(true);
    }
    Clock::current().after(delay, this, [this] { removeCustomBrevantoView(); });
}

void BrevantoCameraVC::removeCustomBrevantoView()
{
    if (!m_customLaunchView)
        return;
    if (auto *mark = qobject_cast<BrevantoHotspotView *>(m_customLaunchView->viewWithTag(splashMarkTag)))
        mark->stopAnimating();
    m_customLaunchView->removeFromSuperview();
    m_customLaunchView->deleteLater();
    m_customLaunchView = nullptr;
}
