#include "Platform/Capture/CaptureSession.h"
#include "Platform/Capture/CaptureStillImageOutput.h"
#include "Platform/Foundation/DispatchQueue.h"
#include "support/FakeCamera.h"
#include "support/Raised.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace Platform;

namespace
{

std::shared_ptr<CaptureSession> sessionOn(const std::shared_ptr<CaptureDevice> &device)
{
    auto session = std::make_shared<CaptureSession>();
    session->addInput(CaptureDeviceInput::deviceInputWithDevice(device));
    return session;
}

} // namespace

class tst_CaptureSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_camera = std::make_shared<FakeCamera>(); }

    void listsRegisteredDevicesFirst()
    {
        const auto ofTheMachine = CaptureDevice::devices();
        const auto second = std::make_shared<FakeCamera>();
        for (const auto &device : {m_camera, second, m_camera, std::shared_ptr<FakeCamera>()})
            CaptureDevice::registerDevice(device);
        std::vector<std::shared_ptr<CaptureDevice>> expected{m_camera, second};
        expected.insert(expected.end(), ofTheMachine.begin(), ofTheMachine.end());
        QVERIFY(CaptureDevice::devices() == expected);
        for (const auto &device : {m_camera, second, second})
            CaptureDevice::unregisterDevice(device);
        QVERIFY(CaptureDevice::devices() == ofTheMachine);
    }

    void settingsNeedALock()
    {
        const auto zoom = [this](qreal factor) { m_camera->rampToVideoZoomFactor(factor, 3); };
        QVERIFY(raised([&] { zoom(2); }).startsWith(u"InternalInconsistency"_s));
        QVERIFY(m_camera->lockForConfiguration());
        for (const auto &[wanted, set] : std::vector<std::pair<qreal, qreal>>{{2, 2}, {9, 8}, {0.5, 1}}) {
            zoom(wanted);
            QCOMPARE(m_camera->zoom, set);
        }
        m_camera->flash = false;
        QVERIFY(raised([&] { m_camera->setFlashMode(CaptureFlashMode::On); }).startsWith(u"InvalidArgument"_s));
        QVERIFY(raised([&] { m_camera->setFocusMode(CaptureFocusMode::Locked); }).startsWith(u"InvalidArgument"_s));
        m_camera->unlockForConfiguration();
        m_camera->refusesConfiguration = true;
        QVERIFY(!m_camera->lockForConfiguration());
        QVERIFY(raised([&] { zoom(2); }).startsWith(u"InternalInconsistency"_s));
    }

    void connectsOneOutputToOneInput()
    {
        const auto output = std::make_shared<CaptureStillImageOutput>();
        const auto input = CaptureDeviceInput::deviceInputWithDevice(m_camera);
        QVERIFY(!CaptureDeviceInput::deviceInputWithDevice(nullptr));
        {
            CaptureSession session;
            QVERIFY(!session.canAddInput(nullptr) && !session.canAddOutput(nullptr));
            session.addOutput(output);
            QVERIFY(!session.canAddOutput(std::make_shared<CaptureStillImageOutput>()));
            QVERIFY(!CaptureSession().canAddOutput(output));
            QVERIFY(output->connections().empty());
            session.addInput(input);
            QVERIFY(raised([&] { session.addInput(input); }).startsWith(u"InvalidArgument"_s));
            QCOMPARE(output->connections().size(), std::size_t(1));
            QCOMPARE(output->connections()[0]->inputPorts().at(0).mediaType, u"vide"_s);
        }
        QVERIFY(output->connections().empty());
    }

    void startsAndStopsFromAQueue()
    {
        auto session = sessionOn(m_camera);
        DispatchQueue queue(u"session queue"_s, DispatchQueue::Kind::Serial);
        std::atomic<bool> wasRunning = false;
        queue.async([&] {
            session->startRunning();
            wasRunning = session->isRunning();
        });
        QTRY_VERIFY(m_camera->isDelivering());
        QVERIFY(wasRunning);
        queue.async([&] { session->stopRunning(); });
        QTRY_VERIFY(!m_camera->isDelivering());
        QVERIFY(!session->isRunning());
        queue.async([&] {
            session->startRunning();
            session->stopRunning();
            session->startRunning();
        });
        QTRY_VERIFY(m_camera->isDelivering());
        queue.async([last = std::move(session)]() mutable { last.reset(); });
        QTRY_VERIFY(!m_camera->isDelivering());
    }

    // The session and its queue go away on the main thread while blocks are still to run, and the main thread does not
    // get round to its events meanwhile.
    void nobodyHangsWhenTheMainThreadIsBusy()
    {
        {
            auto session = sessionOn(m_camera);
            DispatchQueue queue(u"session queue"_s, DispatchQueue::Kind::Serial);
            for (int i = 0; i < 100; ++i) {
                queue.async([session] { session->startRunning(); });
                queue.async([session] { session->stopRunning(); });
            }
            queue.async([session] { session->startRunning(); });
            session.reset();
        }
        QTRY_VERIFY(m_camera.use_count() == 1);
        QVERIFY(!m_camera->isDelivering());
    }

    void aDeviceServesTheLastSession()
    {
        auto first = sessionOn(m_camera);
        const auto second = sessionOn(m_camera);
        first->startRunning();
        second->startRunning();
        first.reset();
        QVERIFY(m_camera->isDelivering());
        second->stopRunning();
        QVERIFY(!m_camera->isDelivering());
    }

private:
    std::shared_ptr<FakeCamera> m_camera;
};

QTEST_GUILESS_MAIN(tst_CaptureSession)
#include "tst_CaptureSession.moc"
