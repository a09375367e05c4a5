// The shipped photos through the real service, reduced as the SDK reduces them; and what keeps a start quick.

#include "service/FeatureCache.h"
#include "service/GreyImage.h"
#include "service/Recognizer.h"
#include "tests/service/ServiceProcess.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

using namespace TestSupport;

namespace
{

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_Recognition : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recognisesTheShippedPhotos();
    void recognisesNothingWithoutAdsOrStructure();
    void keepsFeaturesOfUnchangedPictures();
    void takesADamagedRecordForMissing_data();
    void takesADamagedRecordForMissing();
};

void tst_Recognition::recognisesTheShippedPhotos()
{
    const ServiceProcess service;
    QVERIFY(service.isListening());
    const QString folder = QStringLiteral(MATCH_SERVICE_PHOTOS);
    const QJsonArray photos = QJsonDocument::fromJson(content(folder + QStringLiteral("/photos.json"))).array();
    int ofAds = 0;
    int right = 0;
    int strangers = 0;
    for (const QJsonValue &photo : photos) {
        const QString name = photo[QStringLiteral("photo")].toString();
        const QString expected = photo[QStringLiteral("shows")].toString();
        const HttpAnswer answer = post(service.port(), uploadBody(reducedPhoto(folder + QLatin1Char('/') + name)));
        QCOMPARE(answer.code(), 0);
        const QJsonArray matches = answer.json().value(QStringLiteral("matches")).toArray();
        if (expected.isEmpty()) {
            ++strangers;
            QVERIFY2(matches.isEmpty(), qPrintable(name));
            continue;
        }
        ++ofAds;
        if (matches.isEmpty())
            continue;
        QVERIFY2(matches[0][QStringLiteral("app_img")].toString().endsWith(QStringLiteral("/ads/%1.jpg").arg(expected)),
                 qPrintable(name));
        ++right;
    }
    QVERIFY(ofAds >= 12 && strangers >= 2);
    QVERIFY2(right >= ofAds - 1, qPrintable(QStringLiteral("%1 of %2").arg(right).arg(ofAds)));
}

void tst_Recognition::recognisesNothingWithoutAdsOrStructure()
{
    const cv::Mat plain(640, 480, CV_8U, cv::Scalar(128));
    QVERIFY(!MatchService::Recognizer({}).recognize(plain));
    const auto ad = MatchService::readGreyImage(content(QStringLiteral(MATCH_SERVICE_CATALOGUE "/ads/klozzo.jpg")));
    const MatchService::Recognizer one({MatchService::featuresOfAd(ad.pixels), MatchService::featuresOfAd(plain)});
    QVERIFY(!one.recognize(plain));
    QVERIFY(!one.recognize(cv::Mat(1, 1, CV_8U, cv::Scalar(0))));
    QVERIFY(!one.recognize(cv::Mat(2, 3000, CV_8U, cv::Scalar(0))));
    QCOMPARE(one.recognize(ad.pixels).value().ad, std::size_t(0));
}

void tst_Recognition::keepsFeaturesOfUnchangedPictures()
{
    const QTemporaryDir folder;
    const MatchService::FeatureCache cache(folder.filePath(QStringLiteral("new/folder")));
    const QByteArray picture = content(QStringLiteral(MATCH_SERVICE_CATALOGUE "/ads/klozzo.jpg"));
    const auto features = MatchService::featuresOfAd(MatchService::readGreyImage(picture).pixels);
    QVERIFY(!cache.find(picture));
    cache.store(picture, features);

    const auto found = cache.find(picture);
    QVERIFY(found);
    QCOMPARE(found->frame, features.frame);
    QCOMPARE(found->features.points.size(), features.features.points.size());
    QCOMPARE(found->features.points.back().y, features.features.points.back().y);
    QCOMPARE(cv::norm(found->features.descriptors, features.features.descriptors, cv::NORM_INF), 0.0);
    QCOMPARE(cv::norm(found->thumbnail, features.thumbnail, cv::NORM_INF), 0.0);
    QVERIFY(!cache.find(picture + 'x'));
}

void tst_Recognition::takesADamagedRecordForMissing_data()
{
    QTest::addColumn<int>("kept");
    QTest::addColumn<int>("flipped");
    QTest::newRow("empty") << 0 << -1;
    QTest::newRow("cut short") << 1000 << -1;
    QTest::newRow("first byte") << -1 << 0;
    QTest::newRow("a length") << -1 << 41;
    QTest::newRow("a descriptor") << -1 << 20000;
}

void tst_Recognition::takesADamagedRecordForMissing()
{
    QFETCH(int, kept);
    QFETCH(int, flipped);
    const QTemporaryDir folder;
    const MatchService::FeatureCache cache(folder.path());
    const QByteArray picture = content(QStringLiteral(MATCH_SERVICE_CATALOGUE "/ads/humlo.jpg"));
    cache.store(picture, MatchService::featuresOfAd(MatchService::readGreyImage(picture).pixels));
    QVERIFY(cache.find(picture));

    QFile file(QDir(folder.path()).entryInfoList(QDir::Files).value(0).filePath());
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    if (flipped >= 0)
        bytes[flipped] = char(bytes[flipped] ^ 0x55);
    file.resize(0);
    file.seek(0);
    file.write(bytes.left(kept));
    file.close();
    QVERIFY(!cache.find(picture));
}

QTEST_GUILESS_MAIN(tst_Recognition)

#include "tst_Recognition.moc"
