#include "Platform/Capture/CaptureSession.h"
#include "Platform/Capture/CaptureStillImageOutput.h"
#include "Platform/Foundation/DispatchQueue.h"
#include "Platform/Foundation/Exception.h"
#include "support/FakeCamera.h"

#include <QTest>

using namespace Platform;

namespace
{

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
    void init() { m_camera = std::make_shared<FakeCamera>(); }

    void listsRegisteredDevicesFirst();
    void settingsNeedALock();
    void needsPermission_data();
    void needsPermission();
    void connectsOneOutputToOneInput();
    void startsAndStopsFromAQueue();
    void nobodyHangsWhenTheMainThreadIsBusy();
    void aDeviceServesTheLastSession();

private:
    std::shared_ptr<FakeCamera> m_camera;
};

void tst_CaptureSession::listsRegisteredDevicesFirst()
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

void tst_CaptureSession::settingsNeedALock()
{
    const auto zoom = [this](qreal factor) { m_camera->rampToVideoZoomFactor(factor, 3); };
    QCOMPARE(raisedBy([&] { zoom(2); }), Exception::Name::InternalInconsistency);
    QVERIFY(m_camera->lockForConfiguration());
    for (const auto &[wanted, set] : std::vector<std::pair<qreal, qreal>>{{2, 2}, {9, 8}, {0.5, 1}}) {
        zoom(wanted);
        QCOMPARE(m_camera->zoom, set);
    }
    m_camera->flash = false;
    QCOMPARE(raisedBy([&] { m_camera->setFlashMode(CaptureFlashMode::On); }), Exception::Name::InvalidArgument);
    QCOMPARE(raisedBy([&] { m_camera->setFocusMode(CaptureFocusMode::Locked); }), Exception::Name::InvalidArgument);
    m_camera->unlockForConfiguration();
    m_camera->refusesConfiguration = true;
    QVERIFY(!m_camera->lockForConfiguration());
    QCOMPARE(raisedBy([&] { zoom(2); }), Exception::Name::InternalInconsistency);
}

void tst_CaptureSession::needsPermission_data()
{
    QTest::addColumn<CaptureAuthorizationStatus>("status");
    QTest::addColumn<bool>("isNeeded");
    QTest::addColumn<QString>("course"); // input, open, delivering, asking the user; then opened and delivering
    using Status = CaptureAuthorizationStatus;
    QTest::newRow("granted later") << Status::NotDetermined << true << "i--a od";
    QTest::newRow("denied later") << Status::NotDetermined << true << "i--a --";
    QTest::newRow("restricted") << Status::Restricted << true << "---- --";
    QTest::newRow("denied") << Status::Denied << true << "---- --";
    QTest::newRow("authorized") << Status::Authorized << true << "iod- od";
    QTest::newRow("denied, not needed") << Status::Denied << false << "iod- od";
}

void tst_CaptureSession::needsPermission()
{
    QFETCH(CaptureAuthorizationStatus, status);
    QFETCH(bool, isNeeded);
    QFETCH(QString, course);
    FakePermission permission(status);
    m_camera->needsPermission = isNeeded;
    CaptureSession session;
    QList<bool> answers;
    session.setAccessHandler([&](bool granted) { answers += granted; });
    const auto input = CaptureDeviceInput::deviceInputWithDevice(m_camera);
    if (input)
        session.addInput(input);
    session.startRunning();
    session.startRunning();
    const auto mark = [](bool isSo, char letter) { return QLatin1Char(isSo ? letter : '-'); };
    const auto camera = [&] { return QString(mark(m_camera->isOpen, 'o')) + mark(m_camera->isDelivering(), 'd'); };
    QString seen = mark(input != nullptr, 'i') + camera() + mark(permission.questions.size() == 1, 'a');
    const bool granted = course.endsWith(QLatin1Char('d'));
    const qsizetype expectedAnswers = qsizetype(permission.questions.size());
    permission.answer(granted);
    QCOMPARE(seen + QLatin1Char(' ') + camera(), course);
    QCOMPARE(answers, QList<bool>(expectedAnswers, granted));
}

void tst_CaptureSession::connectsOneOutputToOneInput()
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
        QCOMPARE(raisedBy([&] { session.addInput(input); }), Exception::Name::InvalidArgument);
        QCOMPARE(output->connections().size(), std::size_t(1));
        QCOMPARE(output->connections()[0]->inputPorts().at(0).mediaType, QStringLiteral("vide"));
    }
    QVERIFY(output->connections().empty());
}

void tst_CaptureSession::startsAndStopsFromAQueue()
{
    auto session = sessionOn(m_camera);
    DispatchQueue queue(QStringLiteral("session queue"), DispatchQueue::Kind::Serial);
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

// The session and its queue go away on the main thread while blocks are still to run, and the main thread does not get
// round to its events meanwhile.
void tst_CaptureSession::nobodyHangsWhenTheMainThreadIsBusy()
{
    {
        auto session = sessionOn(m_camera);
        DispatchQueue queue(QStringLiteral("session queue"), DispatchQueue::Kind::Serial);
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

void tst_CaptureSession::aDeviceServesTheLastSession()
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

QTEST_GUILESS_MAIN(tst_CaptureSession)
#include "tst_CaptureSession.moc"
