#include "Capture/FakeCamera.h"
#include "Platform/Capture/CaptureSession.h"
#include "Platform/Capture/CaptureStillImageOutput.h"
#include "Platform/Capture/ImageFileCamera.h"
#include "Platform/Foundation/DispatchQueue.h"
#include "Platform/Foundation/Exception.h"

#include <QTest>

using namespace Platform;

namespace
{

// A permission whose answer the test gives.
class FakeAuthorization final : public CaptureAuthorization
{
public:
    explicit FakeAuthorization(CaptureAuthorizationStatus status)
        : m_status(status)
    {
        setCurrent(this);
    }
    ~FakeAuthorization() override { setCurrent(nullptr); }

    CaptureAuthorizationStatus status() const override { return m_status; }
    void request(std::function<void(bool)> completion) override { requests.push_back(std::move(completion)); }

    void decide(bool granted)
    {
        m_status = granted ? CaptureAuthorizationStatus::Authorized : CaptureAuthorizationStatus::Denied;
        for (const auto &request : std::exchange(requests, {}))
            request(granted);
    }

    std::vector<std::function<void(bool)>> requests;

private:
    CaptureAuthorizationStatus m_status;
};

std::shared_ptr<CaptureSession> sessionOn(const std::shared_ptr<CaptureDevice> &device)
{
    auto session = std::make_shared<CaptureSession>();
    session->addInput(CaptureDeviceInput::deviceInputWithDevice(device));
    return session;
}

template <typename Block>
Exception::Name raisedBy(Block block)
{
    try {
        block();
    } catch (const Exception &exception) {
        return exception.name();
    }
    qFatal("Nothing was raised");
}

} // namespace

class tst_CaptureSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsRegisteredDevicesFirst();
    void settingsNeedALock();
    void inputNeedsADeviceAndPermission_data();
    void inputNeedsADeviceAndPermission();
    void takesOneInputAndOneOutput();
    void connectsOutputToInput();
    void startsAndStopsFromAQueue();
    void startsOnlyWithPermission_data();
    void startsOnlyWithPermission();
    void nobodyHangsWhenTheMainThreadIsBusy();
    void endsOnAnyThread();
    void aDeviceServesTheLastSession();
};

void tst_CaptureSession::listsRegisteredDevicesFirst()
{
    const std::size_t ofTheMachine = CaptureDevice::devices().size();
    const auto first = std::make_shared<FakeCamera>();
    const auto second = std::make_shared<ImageFileCamera>(QStringLiteral("/nowhere"));
    CaptureDevice::registerDevice(first);
    CaptureDevice::registerDevice(second);
    CaptureDevice::registerDevice(first);
    CaptureDevice::registerDevice(nullptr);

    QCOMPARE(CaptureDevice::devices().size(), ofTheMachine + 2);
    QCOMPARE(CaptureDevice::devices()[0].get(), first.get());
    QCOMPARE(CaptureDevice::devices()[1].get(), second.get());
    CaptureDevice::unregisterDevice(first);
    QCOMPARE(CaptureDevice::devices()[0].get(), second.get());
    CaptureDevice::unregisterDevice(second);
    CaptureDevice::unregisterDevice(second);
    QCOMPARE(CaptureDevice::devices().size(), ofTheMachine);
}

void tst_CaptureSession::settingsNeedALock()
{
    FakeCamera camera;
    QCOMPARE(raisedBy([&] { camera.rampToVideoZoomFactor(2, 3); }), Exception::Name::InternalInconsistency);
    QVERIFY(camera.lockForConfiguration());
    camera.rampToVideoZoomFactor(2, 3);
    QCOMPARE(camera.videoZoomFactor(), 2.0);
    camera.rampToVideoZoomFactor(9, 3);
    QCOMPARE(camera.videoZoomFactor(), 4.0);
    camera.rampToVideoZoomFactor(.5, 3);
    QCOMPARE(camera.videoZoomFactor(), 1.0);
    QCOMPARE(raisedBy([&] { camera.setFlashMode(CaptureFlashMode::On); }), Exception::Name::InvalidArgument);
    QCOMPARE(raisedBy([&] { camera.setFocusMode(CaptureFocusMode::AutoFocus); }), Exception::Name::InvalidArgument);
    camera.unlockForConfiguration();
    camera.refusesConfiguration = true;
    QVERIFY(!camera.lockForConfiguration());
    QCOMPARE(raisedBy([&] { camera.rampToVideoZoomFactor(2, 3); }), Exception::Name::InternalInconsistency);
}

void tst_CaptureSession::inputNeedsADeviceAndPermission_data()
{
    QTest::addColumn<CaptureAuthorizationStatus>("status");
    QTest::addColumn<bool>("needsPermission");
    QTest::addColumn<bool>("hasInput");
    QTest::newRow("not determined") << CaptureAuthorizationStatus::NotDetermined << true << true;
    QTest::newRow("restricted") << CaptureAuthorizationStatus::Restricted << true << false;
    QTest::newRow("denied") << CaptureAuthorizationStatus::Denied << true << false;
    QTest::newRow("authorized") << CaptureAuthorizationStatus::Authorized << true << true;
    QTest::newRow("denied, not needed") << CaptureAuthorizationStatus::Denied << false << true;
}

void tst_CaptureSession::inputNeedsADeviceAndPermission()
{
    QFETCH(CaptureAuthorizationStatus, status);
    QFETCH(bool, needsPermission);
    const FakeAuthorization authorization(status);
    QCOMPARE(CaptureDevice::authorizationStatus(), status);
    const auto camera = std::make_shared<FakeCamera>();
    camera->needsPermission = needsPermission;
    QTEST(bool(CaptureDeviceInput::deviceInputWithDevice(camera)), "hasInput");
    QVERIFY(!CaptureDeviceInput::deviceInputWithDevice(nullptr));
}

void tst_CaptureSession::takesOneInputAndOneOutput()
{
    CaptureSession session;
    const auto input = CaptureDeviceInput::deviceInputWithDevice(std::make_shared<FakeCamera>());
    const auto output = std::make_shared<CaptureStillImageOutput>();
    QVERIFY(!session.canAddInput(nullptr));
    QVERIFY(!session.canAddOutput(nullptr));
    QVERIFY(session.canAddInput(input));
    session.addInput(input);
    QVERIFY(!session.canAddInput(input));
    QCOMPARE(raisedBy([&] { session.addInput(input); }), Exception::Name::InvalidArgument);
    session.addOutput(output);
    QVERIFY(!session.canAddOutput(std::make_shared<CaptureStillImageOutput>()));
    QVERIFY(!CaptureSession().canAddOutput(output));
}

void tst_CaptureSession::connectsOutputToInput()
{
    const auto output = std::make_shared<CaptureStillImageOutput>();
    QVERIFY(output->connections().empty());
    {
        CaptureSession session;
        session.addOutput(output);
        QVERIFY(output->connections().empty());
        session.addInput(CaptureDeviceInput::deviceInputWithDevice(std::make_shared<FakeCamera>()));
        QCOMPARE(output->connections().size(), std::size_t(1));
        QCOMPARE(output->connections()[0]->inputPorts().at(0).mediaType, QStringLiteral("vide"));
        QCOMPARE(output->connections()[0].get(), output->connections()[0].get());
    }
    QVERIFY(output->connections().empty());
}

void tst_CaptureSession::startsAndStopsFromAQueue()
{
    const auto camera = std::make_shared<FakeCamera>();
    const auto session = sessionOn(camera);
    DispatchQueue queue(QStringLiteral("session queue"), DispatchQueue::Kind::Serial);
    QVERIFY(!session->isRunning());
    std::atomic<bool> wasRunning = false;
    queue.async([&] {
        session->startRunning();
        wasRunning = session->isRunning();
    });
    QTRY_VERIFY(camera->frames);
    QVERIFY(wasRunning);
    queue.async([&] { session->stopRunning(); });
    QTRY_VERIFY(!camera->frames);
    QVERIFY(!session->isRunning());
    queue.async([&] {
        session->startRunning();
        session->stopRunning();
        session->startRunning();
    });
    QTRY_VERIFY(camera->frames);
    QVERIFY(session->isRunning());
}

void tst_CaptureSession::startsOnlyWithPermission_data()
{
    QTest::addColumn<bool>("granted");
    QTest::newRow("granted") << true;
    QTest::newRow("denied") << false;
}

void tst_CaptureSession::startsOnlyWithPermission()
{
    QFETCH(bool, granted);
    FakeAuthorization authorization(CaptureAuthorizationStatus::NotDetermined);
    const auto camera = std::make_shared<FakeCamera>();
    camera->needsPermission = true;
    const auto session = sessionOn(camera);
    session->startRunning();
    session->startRunning();
    QVERIFY(!camera->frames);
    QCOMPARE(authorization.requests.size(), std::size_t(1));
    authorization.decide(granted);
    QCOMPARE(bool(camera->frames), granted);
}

// The session and its queue go away on the main thread while blocks are still to run, and the main thread does not get
// round to its events meanwhile.
void tst_CaptureSession::nobodyHangsWhenTheMainThreadIsBusy()
{
    const auto camera = std::make_shared<FakeCamera>();
    {
        auto session = sessionOn(camera);
        DispatchQueue queue(QStringLiteral("session queue"), DispatchQueue::Kind::Serial);
        for (int i = 0; i < 100; ++i) {
            queue.async([session] { session->startRunning(); });
            queue.async([session] { session->stopRunning(); });
        }
        queue.async([session] { session->startRunning(); });
        session.reset();
    }
    QTRY_VERIFY(camera.use_count() == 1);
    QVERIFY(!camera->frames);
}

void tst_CaptureSession::endsOnAnyThread()
{
    const auto camera = std::make_shared<FakeCamera>();
    auto session = sessionOn(camera);
    session->startRunning();
    QVERIFY(camera->frames);
    DispatchQueue queue(QStringLiteral("session queue"), DispatchQueue::Kind::Serial);
    queue.async([last = std::move(session)]() mutable { last.reset(); });
    QTRY_VERIFY(!camera->frames);
}

void tst_CaptureSession::aDeviceServesTheLastSession()
{
    const auto camera = std::make_shared<FakeCamera>();
    auto first = sessionOn(camera);
    const auto second = sessionOn(camera);
    first->startRunning();
    second->startRunning();
    first.reset();
    QVERIFY(camera->frames);
    second->stopRunning();
    QVERIFY(!camera->frames);
}

QTEST_GUILESS_MAIN(tst_CaptureSession)
#include "tst_CaptureSession.moc"
