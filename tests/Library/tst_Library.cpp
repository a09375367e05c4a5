#include "Brevanto/Brevanto.h"
#include "Platform/Foundation/Exception.h"

#include <QJsonArray>
#include <QTest>

#include <atomic>

using namespace Qt::StringLiterals;

// A host's use of everything public that needs no screen. What is not exported does not link.
class tst_Library : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void servesRecords()
    {
        const auto matches = BrevantoMatch::populateMatchesUsingArray(
            QJsonArray{QJsonObject{{u"app_img"_s, u"a"_s}, {u"imageGalleryCaption"_s, QJsonArray{QJsonObject()}}}});
        const BrevantoMatchGroupList groups = BrevantoMatchGroup::groupMatchesByAdImageUrl(matches.value());
        QCOMPARE(groups.size(), 1);
        const auto match = groups[0]->listOfMatches().constFirst();
        QVERIFY(BrevantoFields::record<BrevantoCaptionedImage>(match->galleryDataSource().constFirst()));
        QVERIFY(!BrevantoRecentsFileManager::getPathForRecentsInDocsFolder().isNull());
        QVERIFY(!BrevantoRelatedContent().title().isValid() && !BrevantoCatalogueImage().buyURL().isValid());
    }

    void servesImages()
    {
        QImage bitmap(4, 2, QImage::Format_RGB32);
        bitmap.fill(Qt::red);
        const Platform::Image image(bitmap, 1.0, Platform::ImageOrientation::Right);
        QCOMPARE(scale::fixOrientation(image).size(), QSizeF(2, 4));
        QCOMPARE(scale::convertImageToGrayScale(scale::scaleToSize(image, {3, 3})).size(), QSizeF(3, 3));
        QCOMPARE(resizeAndCropExample::resizeToSize(image, {2, 2}, {}).size(), QSizeF(1, 2));
        QVERIFY(!scale::resizableButtonBackground().image.isNull());
    }

    void servesRequests()
    {
        std::atomic<bool> isAnswered = false;
        const auto manager = BrevantoServerManager::sharedServerManager();
        manager->getImage(u"ftp://nowhere"_s, nullptr, [&isAnswered](const std::optional<Platform::URLError> &error) {
            isAnswered = error && error->code == Platform::URLError::Code::UnsupportedURL;
        });
        QTRY_VERIFY(isAnswered);

        isAnswered = false;
        const auto session = std::make_shared<Platform::URLSession>(Platform::URLSession::Configuration());
        session->dataTask({}, [&isAnswered](const auto &, const auto &, const auto &) { isAnswered = true; });
        QTRY_VERIFY(isAnswered);
        manager->setCurrentSession(session);
    }

    void throwsWhatAHostCatches()
    {
        QVERIFY_THROWS_EXCEPTION(Platform::Exception, BrevantoServerManager::getCacheKeyFromArray({}));
    }
};

QTEST_GUILESS_MAIN(tst_Library)
#include "tst_Library.moc"
