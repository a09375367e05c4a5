#pragma once

#include "Brevanto/Model/BrevantoMatchGroup.h"
#include "Platform/Capture/CaptureSession.h"
#include "Platform/Foundation/DispatchQueue.h"
#include "Platform/Graphics/Image.h"
#include "Platform/Interface/ViewController.h"

#include <atomic>
#include <optional>

namespace Platform
{
class AlertController;
class CaptureConnection;
class CaptureStillImageOutput;
class CaptureVideoPreviewLayer;
class ShapeLayer;
} // namespace Platform

// The camera: live preview, shutter, flash, zoom and framing guide; sends a photo to the service and goes on to the ad
// screen with what was recognised. Lives on the main thread. Closing it at any moment is safe: what is still under way
// finds it gone, and the camera is released.
class BrevantoCameraVC : public Platform::ViewController
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The storyboard makes it")

public:
    // The states of a gesture in the platform's numbering.
    enum GestureState { Possible = 0, Began = 1, Changed = 2, Ended = 3 };
    Q_ENUM(GestureState)

    BrevantoCameraVC();
    ~BrevantoCameraVC() override;

    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    void viewDidAppear(bool animated) override;
    void viewWillDisappear(bool animated) override;
    void viewDidLayoutSubviews() override;
    void willAnimateRotation(std::chrono::milliseconds duration) override;
    bool prefersStatusBarHidden() const override { return true; }
    bool goBack() override;

    // The first camera that faces that way; null when there is none.
    static std::shared_ptr<Platform::CaptureDevice> getBackCam();
    static std::shared_ptr<Platform::CaptureDevice> getFrontCam();

    // Switches shutter and flash by the user's permission for the camera and tells the user when there is none.
    void checkForAccessPermissions();
    // Fits the framing guide to its view.
    void setUpTheDashedView();
    void updateFlashButtonVisibility();
    // A splash over the whole navigation stack, which goes by itself: after 2 s, the first time ever after 5 s.
    void addCustomBrevantoView();
    void removeCustomBrevantoView();

    Q_INVOKABLE void captureButtonAction();
    Q_INVOKABLE void recentsButtonAction();
    Q_INVOKABLE void flashButtonAction();
    Q_INVOKABLE void infoButtonAction();
    Q_INVOKABLE void closeButtonAction();
    // `scale` is relative to the distance at which the fingers began.
    Q_INVOKABLE void pinched(BrevantoCameraVC::GestureState state, qreal scale);
    // By one step of the keyboard.
    Q_INVOKABLE void zoomIn();
    Q_INVOKABLE void zoomOut();

    // Prepares the photo for its upload off the main thread, and sends it. From one that is damaged or a mere line the
    // user goes back to the live preview.
    void sendCapturePhoto(const Platform::Image &photo);
    // Uploads the JPEG bytes or, without network, draws the eye to the banner.
    void sendCapturedData(const QByteArray &data);
    void timedOut();
    // Shows the first group; no list and an empty one mean that nothing matched.
    void responseReceivedWithMatchGroups(const std::optional<BrevantoMatchGroupList> &matchGroups);
    // Back to live preview.
    void startCaptureSession();
    // The spinner.
    void startAnimating();
    void stopAnimating();

    // The picture at exactly `size` points of the screen's scale, aspect ratio not kept.
    Platform::Image imageWithImage(const Platform::Image &image, const QSizeF &size);

    // Whether an upload is waiting for its answer.
    bool isRequestOnProcess() const { return *m_isRequestOnProcess; }

    // Null where the machine has no such camera.
    std::shared_ptr<Platform::CaptureDevice> backCamera() const { return m_backCamera; }
    std::shared_ptr<Platform::CaptureDevice> frontCamera() const { return m_frontCamera; }
    std::shared_ptr<Platform::CaptureDeviceInput> captureDeviceInput() const { return m_captureDeviceInput; }
    std::shared_ptr<Platform::CaptureSession> captureSession() const { return m_captureSession; }
    std::shared_ptr<Platform::CaptureStillImageOutput> captureImageOutput() const { return m_captureImageOutput; }
    std::shared_ptr<Platform::DispatchQueue> sessionQueue() const { return m_sessionQueue; }

protected:
    void connectOutlets() override;

private:
    void createCaptureSession();
    void createPreviewLayer();
    void configureFlashAndFocus();
    void startRunning();
    void placePreviewAndGuide();
    // Beyond the limits the zoom stays as it is.
    void zoomTo(qreal zoom);

    std::shared_ptr<Platform::CaptureConnection> videoConnection() const;
    void photoPrepared(const QByteArray &jpeg);
    void requestCompleted(const std::optional<BrevantoMatchGroupList> &matchGroups);
    void requestFailed();
    void scheduleTimeOut();
    void returnToCamera();
    void removeLeftoverOverlay();
    void presentNotConnected();
    // Presents the alert once what is presented now is gone; does nothing when nothing is presented.
    void replacePresented(const std::function<std::unique_ptr<Platform::AlertController>()> &makeAlert);
    // The block as others may hold it for longer than the screen lives: it does nothing once the screen is gone. Made
    // and called on the main thread, held and copied on any.
    template <typename Block>
    auto whileAlive(Block block)
    {
        return [self = QPointer(this), block = std::move(block)](const auto &...arguments) {
            if (self)
                block(arguments...);
        };
    }

    Platform::View *m_previewView = nullptr;
    Platform::View *m_blurView = nullptr;
    Platform::View *m_dashedView = nullptr;
    Platform::View *m_spinnerView = nullptr;
    QQuickItem *m_captureButton = nullptr;
    QQuickItem *m_flashButton = nullptr;
    QQuickItem *m_infoButton = nullptr;
    QQuickItem *m_closeButton = nullptr;

    QPointer<Platform::View> m_customLaunchView;
    std::shared_ptr<Platform::CaptureDevice> m_backCamera;
    std::shared_ptr<Platform::CaptureDevice> m_frontCamera;
    std::shared_ptr<Platform::CaptureDeviceInput> m_captureDeviceInput;
    std::shared_ptr<Platform::CaptureSession> m_captureSession;
    std::shared_ptr<Platform::CaptureStillImageOutput> m_captureImageOutput;
    std::shared_ptr<Platform::DispatchQueue> m_sessionQueue;
    QPointer<Platform::CaptureVideoPreviewLayer> m_capturePreviewLayer;
    QPointer<Platform::ShapeLayer> m_shapeLayer;
    qreal m_baseScale = 1.0;
    int m_layoutCount = 0; // passes since the view was loaded; the first one builds the preview
    // Shared with the blocks of requests, which outlive the screen.
    std::shared_ptr<std::atomic_bool> m_isRequestOnProcess = std::make_shared<std::atomic_bool>(false);
};
