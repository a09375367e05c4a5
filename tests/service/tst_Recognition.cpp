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

using namespace Qt::StringLiterals;
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
    void recognisesTheShippedPhotos()
    {
        const ServiceProcess service;
        QVERIFY(service.isListening());
        const QString folder = QStringLiteral(MATCH_SERVICE_PHOTOS);
        const QJsonArray photos = QJsonDocument::fromJson(content(folder + u"/photos.json"_s)).array();
        int ofAds = 0;
        int right = 0;
        int strangers = 0;
        for (const QJsonValue &photo : photos) {
            const QString name = photo[u"photo"_s].toString();
            const QString expected = photo[u"shows"_s].toString();
            const HttpAnswer answer = post(service.port(), uploadBody(reducedPhoto(folder + QLatin1Char('/') + name)));
            QCOMPARE(answer.code(), 0);
            const QJsonArray matches = answer.json().value(u"matches"_s).toArray();
            if (expected.isEmpty()) {
                ++strangers;
                QVERIFY2(matches.isEmpty(), qPrintable(name));
                continue;
            }
            ++ofAds;
            if (matches.isEmpty())
                continue;
            QVERIFY2(matches[0][u"app_img"_s].toString().endsWith(u"/ads/%1.jpg"_s.arg(expected)), qPrintable(name));
            ++right;
        }
        QVERIFY(ofAds >= 12 && strangers >= 2);
        QVERIFY2(right >= ofAds - 1, qPrintable(u"%1 of %2"_s.arg(right).arg(ofAds)));
    }

    void recognisesNothingWithoutAdsOrStructure()
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

    void keepsFeaturesOfUnchangedPictures()
    {
        const QTemporaryDir folder;
        const MatchService::FeatureCache cache(folder.filePath(u"new/folder"_s));
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

    void takesADamagedRecordForMissing()
    {
        const QTemporaryDir folder;
        const MatchService::FeatureCache cache(folder.path());
        const QByteArray picture = content(QStringLiteral(MATCH_SERVICE_CATALOGUE "/ads/humlo.jpg"));
        cache.store(picture, MatchService::featuresOfAd(MatchService::readGreyImage(picture).pixels));
        QVERIFY(cache.find(picture));
        const QString path = QDir(folder.path()).entryInfoList(QDir::Files).value(0).filePath();
        const QByteArray good = content(path);
        const auto isFound = [&](const QByteArray &bytes) {
            QFile file(path);
            return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush()
                && cache.find(picture);
        };
        QVERIFY(isFound(good));
        for (const qsizetype kept : {0, 1000})
            QVERIFY2(!isFound(good.left(kept)), QByteArray::number(kept));
        for (const qsizetype flipped : {0, 41, 20000}) { // in the head, in a length, in a descriptor
            QByteArray bytes = good;
            bytes[flipped] = char(bytes[flipped] ^ 0x55);
            QVERIFY2(!isFound(bytes), QByteArray::number(flipped));
        }
    }
};

QTEST_GUILESS_MAIN(tst_Recognition)

#include "tst_Recognition.moc"
