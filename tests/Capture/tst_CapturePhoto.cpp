#include "Platform/Capture/CaptureStillImageOutput.h"
#include "Platform/Capture/ImageFileCamera.h"
#include "Platform/Capture/PhotoTaker.h"
#include "Platform/Foundation/DispatchQueue.h"
#include "Platform/Graphics/Image.h"
#include "support/FakeCamera.h"
#include "support/ManualClock.h"
#include "support/Table.h"
#include "support/TestImages.h"

#include <QTemporaryDir>
#include <QTest>

#include <mutex>

using namespace Qt::StringLiterals;
using namespace Platform;
using namespace std::chrono_literals;

namespace
{

const QString captureQueueLabel = u"capture queue"_s;

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
    void deliversTheFile_data()
    {
        addColumns<QByteArray, qreal, bool, QSizeF, QString>("file", "zoom", "isUnchanged", "size", "seen");
        const QImage picture = TestImages::quarters({120, 80});
        const QByteArray jpeg = TestImages::jpeg(picture);
        const QByteArray turned = TestImages::jpeg(picture, 6);
        const QByteArray png = TestImages::png(picture);
        QTest::newRow("jpeg") << jpeg << 1.0 << true << QSizeF(120, 80) << u"rgbw"_s;
        QTest::newRow("jpeg on its side") << turned << 1.0 << true << QSizeF(80, 120) << u"brwg"_s;
        QTest::newRow("png") << png << 1.0 << false << QSizeF(120, 80) << u"rgbw"_s;
        QTest::newRow("zoomed jpeg on its side") << turned << 2.0 << false << QSizeF(40, 60) << u"brwg"_s;
        QTest::newRow("zoomed png") << png << 4.0 << false << QSizeF(30, 20) << u"rgbw"_s;
    }
    void deliversTheFile()
    {
        QFETCH(QByteArray, file);
        QFETCH(qreal, zoom);
        QFETCH(bool, isUnchanged);
        const auto camera = std::make_shared<ImageFileCamera>(write(u"picture"_s, file));
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

    void takesTheFilesOfAFolderInTurn()
    {
        QVERIFY(QDir(m_folder.path()).mkdir(u"pictures"_s));
        const QByteArray first = TestImages::jpeg(TestImages::quarters({16, 8}));
        const QByteArray second = TestImages::jpeg(TestImages::quarters({24, 8}));
        write(u"pictures/b.JPEG"_s, second);
        write(u"pictures/a.jpg"_s, first);
        write(u"pictures/readme.txt"_s, "no picture");
        const auto camera = std::make_shared<ImageFileCamera>(m_folder.filePath(u"pictures"_s));
        Studio studio(camera);
        const QList<QByteArray> expected{first, second, first};
        for (int i = 0; i < 3; ++i) {
            studio.shoot();
            QTRY_COMPARE(studio.count(), std::size_t(i + 1));
            QCOMPARE(studio.jpeg(std::size_t(i)), expected[i]);
        }
        // What has been photographed stays in view until the camera starts again.
        studio.session->stopRunning();
        QCOMPARE(QFileInfo(camera->currentFile()).fileName(), u"a.jpg"_s);
        studio.session->startRunning();
        QCOMPARE(QFileInfo(camera->currentFile()).fileName(), u"b.JPEG"_s);
    }

    void failsWithAReason_data()
    {
        QTest::addColumn<QString>("what"); // the path of the file camera's picture, or what else is wrong
        const QByteArray damaged = TestImages::png(TestImages::quarters({64, 64})).chopped(30);
        QTest::newRow("missing file") << m_folder.filePath(u"missing.jpg"_s);
        QTest::newRow("folder without pictures") << u"/dev"_s;
        QTest::newRow("no picture") << write(u"text.jpg"_s, "no picture");
        QTest::newRow("damaged png") << write(u"damaged.png"_s, damaged);
        for (const char *what : {"no camera", "no connection", "another's connection", "stopped"})
            QTest::newRow(what) << QString::fromLatin1(what);
    }
    void failsWithAReason()
    {
        QFETCH(QString, what);
        const Studio other(std::make_shared<FakeCamera>());
        std::shared_ptr<CaptureDevice> camera;
        if (what == u"/dev"_s)
            QTest::ignoreMessage(QtInfoMsg, "There are no pictures for a camera at /dev");
        if (what.startsWith(u'/'))
            camera = std::make_shared<ImageFileCamera>(what);
        else if (what != u"no camera"_s)
            camera = std::make_shared<FakeCamera>();
        Studio studio(camera);
        if (what == u"stopped"_s)
            studio.session->stopRunning();
        if (what == u"no connection"_s)
            studio.shoot(nullptr);
        else if (what == u"another's connection"_s)
            studio.shoot(other.output->connections().front());
        else
            studio.shoot();
        QTRY_COMPARE(studio.count(), std::size_t(1));
        QVERIFY(studio.hasFailed());
    }

    // The main thread has not heard of the start by the time the photo is asked for, on either thread.
    void comesRightAfterTheStart()
    {
        const QByteArray picture = TestImages::jpeg(TestImages::quarters({16, 8}));
        Studio studio(std::make_shared<ImageFileCamera>(write(u"picture"_s, picture)));
        studio.session->stopRunning();
        const auto connection = studio.output->connections().front();
        {
            DispatchQueue queue(u"session queue"_s, DispatchQueue::Kind::Serial);
            queue.async([&] {
                studio.session->startRunning();
                studio.shoot(connection);
            });
        }
        QTRY_COMPARE(studio.count(), std::size_t(1));
        QCOMPARE(studio.jpeg(), picture);
    }

    void takesOneAtATime()
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
        camera->photo(nullptr, u"twice"_s);
        QTRY_COMPARE(studio.count(), std::size_t(2));
        QCOMPARE(studio.result(1).buffer.get(), buffer.get());
        studio.shoot();
        camera->photo(buffer, {});
        QTRY_COMPARE(studio.count(), std::size_t(3));
        QCOMPARE(studio.result(2).buffer.get(), buffer.get());
    }

    void isAnsweredWhenNothingComes_data() { addBothRows("sessionEnds", "the camera is silent", "the session ends"); }
    void isAnsweredWhenNothingComes()
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

    void leavesNoFile_data()
    {
        QTest::addColumn<QString>("course"); // t: photo asked for, r: camera ready, n: not ready, s and e: the last
                                             // photo is saved or fails, o: the one before is saved, E: the camera fails
        QTest::addColumn<QString>("results"); // in the order of the questions; p: photo, e: error
        const auto row = [](const char *name, const QString &course, const QString &results) {
            QTest::newRow(name) << course << results;
        };
        row("saved", u"rts"_s, u"p"_s);
        row("ready later", u"ntrs"_s, u"p"_s);
        row("one after the other", u"rtsts"_s, u"pp"_s);
        row("fails", u"rtets"_s, u"ep"_s);
        row("camera fails", u"rtEs"_s, u"e"_s);
        row("camera fails before it is ready", u"ntErts"_s, u"ep"_s);
        row("overtaken", u"rttos"_s, u"ep"_s);
    }
    void leavesNoFile()
    {
        QFETCH(QString, course);
        QStringList files;
        bool isReady = false;
        PhotoTaker taker([&](const QString &file) {
            if (!isReady)
                return -1;
            files += file;
            return int(files.size()) - 1;
        });
        std::mutex mutex;
        QString told; // a letter per question
        const auto locked = [&](const auto &work) {
            const std::lock_guard lock(mutex);
            return work();
        };
        for (const QChar step : course) {
            if (step == u't') {
                const qsizetype index = locked([&] { return (told += u'-').size() - 1; });
                taker.take([&, index](const auto &buffer, const QString &) {
                    locked([&] {
                        const bool isFirst = told[index] == u'-';
                        told[index] = !isFirst || (buffer && buffer->jpeg != "jpeg") ? u'?' : buffer ? u'p' : u'e';
                    });
                });
            } else if (step == u's' || step == u'o') {
                const qsizetype photo = files.size() - (step == u's' ? 1 : 2);
                QFile file(files.at(photo));
                QVERIFY(file.open(QIODevice::WriteOnly));
                file.write("jpeg");
                file.close();
                taker.saved(int(photo), file.fileName());
            } else if (step == u'e' || step == u'E') {
                taker.failed(step == u'e' ? int(files.size()) - 1 : -1, u"broken"_s);
            } else {
                isReady = step == u'r';
                if (isReady)
                    taker.becameReady();
            }
        }
        QFETCH(QString, results);
        QTRY_COMPARE(locked([&] { return told; }), results);
        for (const QString &file : std::as_const(files))
            QTRY_VERIFY2(!QFile::exists(file), qPrintable(file));
    }

private:
    QString write(const QString &name, const QByteArray &bytes)
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("A test file cannot be written");
        return file.fileName();
    }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(tst_CapturePhoto)
#include "tst_CapturePhoto.moc"
