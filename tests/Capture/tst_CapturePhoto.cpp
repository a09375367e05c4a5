#include "Platform/Capture/CaptureStillImageOutput.h"
#include "Platform/Capture/ImageFileCamera.h"
#include "Platform/Capture/PhotoTaker.h"
#include "Platform/Foundation/DispatchQueue.h"
#include "Platform/Graphics/Image.h"
#include "support/FakeCamera.h"
#include "support/ManualClock.h"
#include "support/TestImages.h"

#include <QTemporaryDir>
#include <QTest>

#include <mutex>

using namespace Platform;
using namespace std::chrono_literals;

namespace
{

const QString captureQueueLabel = QStringLiteral("capture queue");

// What a completion was told, and where.
struct Result {
    std::shared_ptr<const CaptureSampleBuffer> buffer;
    QString error;
    QString queue;
};

// A running session on one camera, and the results of its photos in the order in which they came.
class Studio
{
public:
    explicit Studio(const std::shared_ptr<CaptureDevice> &device)
    {
        if (const auto input = CaptureDeviceInput::deviceInputWithDevice(device))
            session->addInput(input);
        session->addOutput(output);
        session->startRunning();
    }

    void shoot()
    {
        const auto connections = output->connections();
        shoot(connections.empty() ? nullptr : connections.front());
    }

    void shoot(const std::shared_ptr<CaptureConnection> &connection)
    {
        output->captureStillImageAsynchronouslyFromConnection(
            connection, [shared = m_results](const auto &buffer, const QString &error) {
                const std::lock_guard lock(shared->mutex);
                shared->results.push_back({buffer, error, DispatchQueue::currentLabel()});
            });
    }

    std::size_t count() const
    {
        const std::lock_guard lock(m_results->mutex);
        return m_results->results.size();
    }

    Result result(std::size_t index = 0) const
    {
        const std::lock_guard lock(m_results->mutex);
        return m_results->results.at(index);
    }

    bool hasFailed(std::size_t index = 0) const
    {
        return !result(index).buffer && !result(index).error.isEmpty() && result(index).queue == captureQueueLabel
            && jpeg(index).isEmpty();
    }

    QByteArray jpeg(std::size_t index = 0) const
    {
        return CaptureStillImageOutput::jpegStillImageDataRepresentation(result(index).buffer);
    }

    std::shared_ptr<CaptureSession> session = std::make_shared<CaptureSession>();
    std::shared_ptr<CaptureStillImageOutput> output = std::make_shared<CaptureStillImageOutput>();

private:
    struct Results {
        std::mutex mutex;
        std::vector<Result> results;
    };
    std::shared_ptr<Results> m_results = std::make_shared<Results>();
};

void setZoom(CaptureDevice &device, qreal zoom)
{
    QVERIFY(device.lockForConfiguration());
    device.rampToVideoZoomFactor(zoom, 3.0);
    device.unlockForConfiguration();
}

} // namespace

class tst_CapturePhoto : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void deliversTheFile_data();
    void deliversTheFile();
    void takesTheFilesOfAFolderInTurn();
    void failsWithAReason_data();
    void failsWithAReason();
    void comesRightAfterTheStart();
    void takesOneAtATime();
    void isAnsweredWhenNothingComes_data();
    void isAnsweredWhenNothingComes();
    void leavesNoFile_data();
    void leavesNoFile();

private:
    QString write(const QString &name, const QByteArray &bytes);

    QTemporaryDir m_folder;
};

QString tst_CapturePhoto::write(const QString &name, const QByteArray &bytes)
{
    QFile file(m_folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("A test file cannot be written");
    return file.fileName();
}

void tst_CapturePhoto::deliversTheFile_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<qreal>("zoom");
    QTest::addColumn<bool>("isUnchanged");
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<QString>("seen");
    const QImage picture = TestImages::quarters({120, 80});
    const QByteArray jpeg = TestImages::jpeg(picture);
    const QByteArray turned = TestImages::jpeg(picture, 6);
    const QByteArray png = TestImages::png(picture);
    QTest::newRow("jpeg") << jpeg << 1.0 << true << QSizeF(120, 80) << "rgbw";
    QTest::newRow("jpeg on its side") << turned << 1.0 << true << QSizeF(80, 120) << "brwg";
    QTest::newRow("png") << png << 1.0 << false << QSizeF(120, 80) << "rgbw";
    QTest::newRow("zoomed jpeg") << jpeg << 2.0 << false << QSizeF(60, 40) << "rgbw";
    QTest::newRow("zoomed jpeg on its side") << turned << 2.0 << false << QSizeF(40, 60) << "brwg";
    QTest::newRow("zoomed png") << png << 4.0 << false << QSizeF(30, 20) << "rgbw";
}

void tst_CapturePhoto::deliversTheFile()
{
    QFETCH(QByteArray, file);
    QFETCH(qreal, zoom);
    QFETCH(bool, isUnchanged);
    const auto camera = std::make_shared<ImageFileCamera>(write(QStringLiteral("picture"), file));
    setZoom(*camera, zoom);
    Studio studio(camera);
    studio.shoot();
    QTRY_COMPARE(studio.count(), std::size_t(1));
    QCOMPARE(studio.result().error, QString());
    QCOMPARE(studio.result().queue, captureQueueLabel);

    const QByteArray photo = studio.jpeg();
    QVERIFY(photo.startsWith("\xff\xd8"));
    QCOMPARE(photo == file, isUnchanged);
    QTEST(Image::withData(photo).size(), "size");
    QTEST(TestImages::seenIn(Image::withData(photo).upright()), "seen");
}

void tst_CapturePhoto::takesTheFilesOfAFolderInTurn()
{
    const QString folder = m_folder.filePath(QStringLiteral("pictures"));
    QVERIFY(QDir().mkpath(folder));
    const QByteArray first = TestImages::jpeg(TestImages::quarters({16, 8}));
    const QByteArray second = TestImages::jpeg(TestImages::quarters({24, 8}));
    write(QStringLiteral("pictures/b.JPEG"), second);
    write(QStringLiteral("pictures/a.jpg"), first);
    write(QStringLiteral("pictures/readme.txt"), "no picture");

    const auto camera = std::make_shared<ImageFileCamera>(folder);
    Studio studio(camera);
    const QList<QByteArray> expected{first, second, first};
    for (int i = 0; i < 3; ++i) {
        studio.shoot();
        QTRY_COMPARE(studio.count(), std::size_t(i + 1));
        QCOMPARE(studio.jpeg(std::size_t(i)), expected[i]);
    }
    // What has been photographed stays in view until the camera starts again.
    QCOMPARE(QFileInfo(camera->currentFile()).fileName(), QStringLiteral("a.jpg"));
    studio.session->stopRunning();
    QCOMPARE(QFileInfo(camera->currentFile()).fileName(), QStringLiteral("a.jpg"));
    studio.session->startRunning();
    QCOMPARE(QFileInfo(camera->currentFile()).fileName(), QStringLiteral("b.JPEG"));
}

void tst_CapturePhoto::failsWithAReason_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("missing file") << m_folder.filePath(QStringLiteral("missing.jpg"));
    QTest::newRow("folder without pictures") << QStringLiteral("/dev");
    QTest::newRow("no picture") << write(QStringLiteral("text.jpg"), "no picture");
    QTest::newRow("damaged png") << write(QStringLiteral("damaged.png"),
                                          TestImages::png(TestImages::quarters({64, 64})).chopped(30));
    QTest::newRow("no camera") << QString();
    QTest::newRow("no connection") << QStringLiteral("connection");
    QTest::newRow("another's connection") << QStringLiteral("other");
    QTest::newRow("stopped") << QStringLiteral("stopped");
}

void tst_CapturePhoto::failsWithAReason()
{
    QFETCH(QString, file);
    const auto working = std::make_shared<FakeCamera>();
    const Studio other(working);
    const bool hasFile = file.startsWith(QLatin1Char('/'));
    Studio studio(hasFile              ? std::make_shared<ImageFileCamera>(file)
                      : file.isEmpty() ? std::shared_ptr<CaptureDevice>()
                                       : std::make_shared<FakeCamera>());
    if (file == QStringLiteral("stopped"))
        studio.session->stopRunning();
    if (file == QStringLiteral("connection"))
        studio.shoot(nullptr);
    else if (file == QStringLiteral("other"))
        studio.shoot(other.output->connections().front());
    else
        studio.shoot();

    QTRY_COMPARE(studio.count(), std::size_t(1));
    QVERIFY(studio.hasFailed());
}

// The main thread has not heard of the start by the time the photo is asked for, on either thread.
void tst_CapturePhoto::comesRightAfterTheStart()
{
    const QByteArray picture = TestImages::jpeg(TestImages::quarters({16, 8}));
    Studio studio(std::make_shared<ImageFileCamera>(write(QStringLiteral("picture"), picture)));
    studio.session->stopRunning();
    const auto connection = studio.output->connections().front();
    {
        DispatchQueue queue(QStringLiteral("session queue"), DispatchQueue::Kind::Serial);
        queue.async([&] {
            studio.session->startRunning();
            studio.shoot(connection);
        });
    }
    QTRY_COMPARE(studio.count(), std::size_t(1));
    QCOMPARE(studio.jpeg(), picture);
}

void tst_CapturePhoto::takesOneAtATime()
{
    const auto camera = std::make_shared<FakeCamera>();
    Studio studio(camera);
    studio.shoot();
    QVERIFY(camera->photo);
    studio.shoot();
    QTRY_COMPARE(studio.count(), std::size_t(1));
    QVERIFY(!studio.result().error.isEmpty());

    const auto buffer = std::make_shared<CaptureSampleBuffer>();
    camera->photo(buffer, {});
    camera->photo(nullptr, QStringLiteral("twice"));
    QTRY_COMPARE(studio.count(), std::size_t(2));
    QCOMPARE(studio.result(1).buffer.get(), buffer.get());
    studio.shoot();
    camera->photo(buffer, {});
    QTRY_COMPARE(studio.count(), std::size_t(3));
    QCOMPARE(studio.result(2).buffer.get(), buffer.get());
}

void tst_CapturePhoto::isAnsweredWhenNothingComes_data()
{
    QTest::addColumn<bool>("sessionEnds");
    QTest::newRow("the camera is silent") << false;
    QTest::newRow("the session ends") << true;
}

void tst_CapturePhoto::isAnsweredWhenNothingComes()
{
    QFETCH(bool, sessionEnds);
    ManualClock clock;
    auto camera = std::make_shared<FakeCamera>();
    Studio studio(camera);
    studio.shoot();
    QVERIFY(camera->photo);
    if (sessionEnds) {
        studio.session.reset();
        camera.reset();
    } else {
        clock.advance(9'999ms);
        QVERIFY(!studio.count());
        clock.advance(1ms);
    }
    QTRY_COMPARE(studio.count(), std::size_t(1));
    QVERIFY(studio.hasFailed());
}

void tst_CapturePhoto::leavesNoFile_data()
{
    QTest::addColumn<QString>("course"); // t: photo asked for, r: camera ready, n: not ready, s and e: the last photo
                                         // is saved or fails, o: the one before is saved, E: the camera fails
    QTest::addColumn<QString>("results"); // in the order of the questions; p: photo, e: error
    QTest::newRow("saved") << "rts"
                           << "p";
    QTest::newRow("ready later") << "ntrs"
                                 << "p";
    QTest::newRow("one after the other") << "rtsts"
                                         << "pp";
    QTest::newRow("fails") << "rtets"
                           << "ep";
    QTest::newRow("camera fails") << "rtEs"
                                  << "e";
    QTest::newRow("camera fails before it is ready") << "ntErts"
                                                     << "ep";
    QTest::newRow("overtaken") << "rttos"
                               << "ep";
}

void tst_CapturePhoto::leavesNoFile()
{
    QFETCH(QString, course);
    QFETCH(QString, results);
    QStringList files;
    bool isReady = false;
    PhotoTaker taker([&](const QString &file) {
        if (!isReady)
            return -1;
        files += file;
        return int(files.size()) - 1;
    });
    QList<QByteArray> told;
    std::mutex mutex;
    const auto seen = [&] {
        const std::lock_guard lock(mutex);
        QString letters;
        for (const QByteArray &one : std::as_const(told))
            letters += QLatin1Char(one == "jpeg" ? 'p' : one == "error" ? 'e' : '?');
        return letters;
    };
    const auto save = [&](qsizetype photo) {
        QFile file(files.at(photo));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("jpeg");
        file.close();
        taker.saved(int(photo), file.fileName());
    };
    for (const QChar step : course) {
        if (step == QLatin1Char('t')) {
            const qsizetype index = told.size();
            {
                const std::lock_guard lock(mutex);
                told += QByteArray();
            }
            taker.take([&, index](const auto &buffer, const QString &) {
                const std::lock_guard lock(mutex);
                told[index] += buffer ? buffer->jpeg : QByteArray("error");
            });
        } else if (step == QLatin1Char('s') || step == QLatin1Char('o')) {
            save(files.size() - (step == QLatin1Char('s') ? 1 : 2));
        } else if (step == QLatin1Char('e') || step == QLatin1Char('E')) {
            taker.failed(step == QLatin1Char('e') ? int(files.size()) - 1 : -1, QStringLiteral("broken"));
        } else {
            isReady = step == QLatin1Char('r');
            if (isReady)
                taker.becameReady();
        }
    }
    QTRY_COMPARE(seen(), results);
    for (const QString &file : std::as_const(files))
        QTRY_VERIFY2(!QFile::exists(file), qPrintable(file));
}

QTEST_GUILESS_MAIN(tst_CapturePhoto)
#include "tst_CapturePhoto.moc"
