#include "Capture/FakeCamera.h"
#include "Platform/Capture/CaptureVideoPreviewLayer.h"
#include "Platform/Capture/ImageFileCamera.h"
#include "Platform/Foundation/DispatchQueue.h"
#include "support/TestImages.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTest>
#include <QVideoSink>

using namespace Platform;

namespace
{

QVideoFrame filled(const QColor &color)
{
    QImage image(32, 32, QImage::Format_RGB32);
    image.fill(color);
    QVideoFrame frame(QVideoFrameFormat(image.size(), QVideoFrameFormat::Format_BGRX8888));
    if (frame.map(QVideoFrame::WriteOnly)) {
        for (int y = 0; y < image.height(); ++y)
            std::copy_n(image.constScanLine(y), image.bytesPerLine(), frame.bits(0) + y * frame.bytesPerLine(0));
        frame.unmap();
    }
    return frame;
}

} // namespace

class tst_CapturePreview : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void isBlackWithoutPicture();
    void showsThePicture_data();
    void showsThePicture();
    void followsTheZoom();
    void freezesWhenStopped();
    void keepsTheNewestFrameOnly();
    void goesWhileRunning();
    void leavesTheCameraInTheBackground();

private:
    void show(const std::shared_ptr<CaptureDevice> &device, CaptureVideoGravity gravity);
    QString seen() const { return TestImages::seenIn(m_window->grabWindow()); }
    QString picture(const QSize &size, const QString &name) const;

    QTemporaryDir m_folder;
    std::unique_ptr<QQuickWindow> m_window;
    std::shared_ptr<CaptureSession> m_session;
    std::unique_ptr<CaptureVideoPreviewLayer> m_preview;
};

void tst_CapturePreview::initTestCase()
{
    QVERIFY(m_folder.isValid());
}

void tst_CapturePreview::init()
{
    m_window = std::make_unique<QQuickWindow>();
    m_window->resize(200, 200);
    m_window->setColor(Qt::magenta);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    m_session = std::make_shared<CaptureSession>();
}

void tst_CapturePreview::cleanup()
{
    m_preview.reset();
    m_session.reset();
    m_window.reset();
}

QString tst_CapturePreview::picture(const QSize &size, const QString &name) const
{
    const QString path = m_folder.filePath(name);
    return TestImages::quarters(size).save(path) ? path : QString();
}

void tst_CapturePreview::show(const std::shared_ptr<CaptureDevice> &device, CaptureVideoGravity gravity)
{
    m_session->addInput(CaptureDeviceInput::deviceInputWithDevice(device));
    m_preview = std::make_unique<CaptureVideoPreviewLayer>(m_session);
    m_preview->setParentItem(m_window->contentItem());
    m_preview->setFrame(QRectF(0, 0, 200, 200));
    m_preview->setVideoGravity(gravity);
    m_session->startRunning();
}

void tst_CapturePreview::isBlackWithoutPicture()
{
    m_preview = std::make_unique<CaptureVideoPreviewLayer>(nullptr);
    m_preview->setParentItem(m_window->contentItem());
    m_preview->setFrame(QRectF(0, 0, 200, 200));
    QTRY_COMPARE(seen(), QStringLiteral("kkkk"));
}

void tst_CapturePreview::showsThePicture_data()
{
    QTest::addColumn<CaptureVideoGravity>("gravity");
    QTest::addColumn<QColor>("top"); // the middle of the upper edge: beside the picture, or green to the right of it
    QTest::newRow("fill") << CaptureVideoGravity::ResizeAspectFill << QColor(0, 255, 0);
    QTest::newRow("fit") << CaptureVideoGravity::ResizeAspect << QColor(Qt::black);
    QTest::newRow("stretch") << CaptureVideoGravity::Resize << QColor(0, 255, 0);
}

void tst_CapturePreview::showsThePicture()
{
    QFETCH(CaptureVideoGravity, gravity);
    show(std::make_shared<ImageFileCamera>(picture({1600, 1000}, QStringLiteral("wide.png"))), gravity);
    QTRY_COMPARE(seen(), QStringLiteral("rgbw"));
    QTEST(m_window->grabWindow().pixelColor(110, 5), "top");
}

void tst_CapturePreview::followsTheZoom()
{
    // A white rim around the quarters, which a zoom of two cuts off.
    QImage rimmed(400, 400, QImage::Format_RGB32);
    rimmed.fill(Qt::white);
    const QImage inner = TestImages::quarters({200, 200});
    for (int y = 0; y < 200; ++y)
        std::copy_n(reinterpret_cast<const QRgb *>(inner.constScanLine(y)), 200,
                    reinterpret_cast<QRgb *>(rimmed.scanLine(100 + y)) + 100);
    const QString path = m_folder.filePath(QStringLiteral("rimmed.png"));
    QVERIFY(rimmed.save(path));

    const auto camera = std::make_shared<ImageFileCamera>(path);
    show(camera, CaptureVideoGravity::ResizeAspectFill);
    QTRY_COMPARE(m_window->grabWindow().pixelColor(80, 80), QColor(255, 0, 0));
    QCOMPARE(m_window->grabWindow().pixelColor(20, 20), QColor(Qt::white));
    QVERIFY(camera->lockForConfiguration());
    camera->rampToVideoZoomFactor(2.0, 3.0);
    camera->unlockForConfiguration();
    QTRY_COMPARE(m_window->grabWindow().pixelColor(20, 20), QColor(255, 0, 0));
}

void tst_CapturePreview::freezesWhenStopped()
{
    const auto camera = std::make_shared<FakeCamera>();
    show(camera, CaptureVideoGravity::ResizeAspectFill);
    const CaptureDevice::FrameHandler frames = camera->frames;
    frames(filled(QColor(255, 0, 0)));
    QTRY_COMPARE(seen(), QStringLiteral("rrrr"));

    frames(filled(QColor(0, 255, 0))); // on its way, and overtaken by the stop
    {
        DispatchQueue queue(QStringLiteral("session queue"), DispatchQueue::Kind::Serial);
        queue.async([this] { m_session->stopRunning(); });
    }
    frames(filled(QColor(0, 0, 255)));
    QTRY_VERIFY(!camera->frames);
    QCOMPARE(seen(), QStringLiteral("rrrr"));
    m_preview->setFrame(QRectF(0, 0, 200, 199));
    QCOMPARE(seen(), QStringLiteral("rrrr"));

    m_session->startRunning();
    camera->frames(filled(QColor(0, 0, 255)));
    QTRY_COMPARE(seen(), QStringLiteral("bbbb"));
}

void tst_CapturePreview::keepsTheNewestFrameOnly()
{
    const auto camera = std::make_shared<FakeCamera>();
    show(camera, CaptureVideoGravity::ResizeAspectFill);
    const auto *sink =
        m_preview->findChild<QQuickItem *>(QStringLiteral("videoOutput"))->property("videoSink").value<QVideoSink *>();
    int shown = 0;
    connect(sink, &QVideoSink::videoFrameChanged, this, [&shown] { ++shown; });
    {
        DispatchQueue queue(QStringLiteral("camera"), DispatchQueue::Kind::Serial);
        for (int i = 0; i < 50; ++i)
            queue.async([frames = camera->frames] { frames(filled(QColor(255, 0, 0))); });
        queue.async([frames = camera->frames] { frames(filled(QColor(0, 255, 0))); });
    }
    QTRY_COMPARE(seen(), QStringLiteral("gggg"));
    QCOMPARE(shown, 1);
}

void tst_CapturePreview::goesWhileRunning()
{
    const auto camera = std::make_shared<FakeCamera>();
    show(camera, CaptureVideoGravity::ResizeAspectFill);
    const CaptureDevice::FrameHandler frames = camera->frames;
    frames(filled(QColor(255, 0, 0)));
    m_preview.reset();
    frames(filled(QColor(255, 0, 0)));
    m_session.reset();
    frames(filled(QColor(255, 0, 0)));
    QTRY_VERIFY(!camera->frames);
    QCoreApplication::processEvents();
}

void tst_CapturePreview::leavesTheCameraInTheBackground()
{
    const auto camera = std::make_shared<FakeCamera>();
    show(camera, CaptureVideoGravity::ResizeAspectFill);
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationSuspended);
    QVERIFY(!camera->frames);
    QVERIFY(m_session->isRunning());
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    QVERIFY(camera->frames);

    m_session->stopRunning();
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationSuspended);
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    QVERIFY(!camera->frames);
}

QTEST_MAIN(tst_CapturePreview)
#include "tst_CapturePreview.moc"
