#include "support/Table.h"

#include "Brevanto/Model/BrevantoCaptionedImage.h"
#include "Brevanto/Model/BrevantoCatalogueImage.h"
#include "Brevanto/Model/BrevantoFields.h"
#include "Brevanto/Model/BrevantoMatchGroup.h"
#include "Brevanto/Model/BrevantoRelatedContent.h"
#include "Model/MatchFields.h"

#include <QCborArray>
#include <QCborMap>
#include <QDateTime>
#include <QPoint>
#include <QRegularExpression>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

// Of a match, in the order of writing.
const QStringList archiveKeys =
    u"historyDate title source ID date desc shouldDisplayBannerAd weblink author tagFolder comments vids images "
    "relatedArticles relatedPolls relatedQuiz relatedAds relatedAudios imageGallery captionImages category app_img "
    "vid_urls aud_url commerce_url ad_reviews_url url thumbUrl relatedAdImages adCatalogue phoneNumber "
    "adthemeColorString display_source section language isQuiz endStatement altStatement questions downloadedTime "
    "nativeAdPosition shareURL relatedItemsCount isSpecialArticle title_color hasRelatedQuiz hasRelatedPoll xPercent "
    "yPercent"_s.split(u' ');

template <class Record>
std::shared_ptr<Record> readBack(const std::shared_ptr<Record> &record)
{
    return BrevantoFields::record<Record>(unarchived(archived(record)));
}

std::shared_ptr<BrevantoMatch> matchWithImage(const QVariant &address, const QString &title = {})
{
    auto match = std::make_shared<BrevantoMatch>();
    match->setBackgroundImageUrl(address);
    match->setTitle(title);
    return match;
}

QVariant relatedContent(const QString &title)
{
    auto content = std::make_shared<BrevantoRelatedContent>();
    content->setTitle(title);
    content->setSource(u"source"_s);
    content->setDate(u"date"_s);
    content->setThumbnailUrl(u"thumbnail"_s);
    content->setContentUrl(u"content"_s);
    content->setBody(u"body"_s);
    content->setImageType(-7);
    return BrevantoFields::entry(content);
}

QVariant captionedImage()
{
    auto image = std::make_shared<BrevantoCaptionedImage>();
    image->setImageURL(u"captioned"_s);
    image->setCaptionText(u"caption"_s);
    return BrevantoFields::entry(image);
}

QVariant catalogueImage()
{
    auto image = std::make_shared<BrevantoCatalogueImage>();
    image->setImageURL(u"catalogue"_s);
    image->setBuyURL(u"buy"_s);
    return BrevantoFields::entry(image);
}

// Each field holds its own key.
std::shared_ptr<BrevantoMatch> matchOfKeys()
{
    QCborMap fields{{0, u"BrevantoMatch"_s}};
    for (const QString &key : archiveKeys)
        fields[key] = key;
    return BrevantoFields::record<BrevantoMatch>(unarchived(fields.toCborValue().toCbor()));
}

// A value in each field, of the kinds that fields have.
std::shared_ptr<BrevantoMatch> fullMatch()
{
    auto match = matchOfKeys();
    for (auto setter : {&BrevantoMatch::setVids, &BrevantoMatch::setRelatedArticles, &BrevantoMatch::setRelatedPolls,
                        &BrevantoMatch::setRelatedQuiz, &BrevantoMatch::setRelatedAds})
        (*match.*setter)(QVariantList{relatedContent(u"first"_s), relatedContent(u"second"_s)});
    match->setImages(QVariantList{u"i1"_s, u"i2"_s});
    match->setImageGallery(QVariantList{u"g1"_s});
    match->setRelatedAdImages(QVariantList{u"r1"_s});
    match->setCaptionImages(QVariantList{captionedImage()});
    match->setAdCatalogue(QVariantList{catalogueImage()});
    match->setRelatedAudios(QVariantList{QVariantMap{{u"deep"_s, QVariantList{1.5, false}}}});
    match->setComments(QVariantList());
    match->setHistoryDate(QDateTime(QDate(1999, 12, 31), QTime(23, 59, 59, 1), Qt::UTC));
    match->setDownloadedTime(QDateTime::currentDateTimeUtc());
    match->setXPercent(40.0);
    match->setYPercent(qint64(40));
    match->setHasRelatedQuiz(true);
    match->setRelatedItemsCount(qint64(-1));
    return match;
}

} // namespace

class TestBrevantoMatchArchive : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comesBack()
    {
        const auto match = fullMatch();
        const auto read = readBack(match);
        QCOMPARE(filledFields(read), filledFields(match));
        QCOMPARE(filledFields(read).size(), archiveKeys.size());
        QCOMPARE(read->historyDate(), match->historyDate());
        QCOMPARE(read->xPercent(), QVariant(40.0));
        QCOMPARE(read->xPercent().typeId(), QMetaType::Double);
        QCOMPARE(read->yPercent(), QVariant(qint64(40)));
        QCOMPARE(read->galleryDataSource().size(), 6);
        QCOMPARE(filledFields(readBack(std::make_shared<BrevantoMatch>())), QJsonObject());
    }

    void eachFieldHasItsKey()
    {
        const auto match = matchOfKeys();
        match->galleryDataSource();
        // These come from nowhere but an archive.
        const QVariantList archivedOnly{match->comments(),         match->questions(),    match->historyDate(),
                                        match->endStatement(),     match->altStatement(), match->isQuiz(),
                                        match->relatedItemsCount()};
        QCOMPARE(archivedOnly,
                 (QVariantList{u"comments"_s, u"questions"_s, u"historyDate"_s, u"endStatement"_s, u"altStatement"_s,
                               u"isQuiz"_s, u"relatedItemsCount"_s}));

        const QCborMap cbor = QCborValue::fromCbor(archived(match)).toMap();
        QStringList keys;
        for (auto entry = cbor.begin() + 1; entry != cbor.end(); ++entry) {
            keys.append(entry.key().toString());
            QCOMPARE(entry.value().toString(), keys.last());
        }
        QCOMPARE(keys, archiveKeys);
    }

    // Only the order of reading tells which fields an exception costs.
    void whatIsReadAfterAnException()
    {
        const auto readWithout = [](const char *unreadableKey) {
            QCborMap cbor = QCborValue::fromCbor(archived(fullMatch())).toMap();
            cbor[QLatin1StringView(unreadableKey)] = QByteArray("unreadable");
            QTest::ignoreMessage(QtInfoMsg, QRegularExpression(u"bytes"_s));
            return BrevantoFields::record<BrevantoMatch>(unarchived(cbor.toCborValue().toCbor()));
        };

        const auto first = readWithout("captionImages");
        QVERIFY(first->relatedAds().isValid());
        QVERIFY(first->imageGallery().isValid());
        QVERIFY(!first->relatedAudios().isValid());
        QVERIFY(!first->category().isValid());

        const auto second = readWithout("shareURL");
        QVERIFY(second->relatedItemsCount().isValid());
        QVERIFY(!second->isSpecialArticle().isValid());

        QVERIFY(!readWithout("historyDate")->title().isValid());

        auto unwritable = fullMatch();
        unwritable->setShareURL(QPoint());
        QTest::ignoreMessage(QtInfoMsg, QRegularExpression(u"QPoint"_s));
        const auto third = readBack(unwritable);
        QVERIFY(third->nativeAdPosition().isValid());
        QVERIFY(!third->relatedItemsCount().isValid());
    }

    void relatedContentComesBackWithoutLanguageAndSection()
    {
        const auto content = BrevantoFields::record<BrevantoRelatedContent>(relatedContent(u"title"_s));
        const QJsonObject before = filledFields(content);
        QCOMPARE(before.size(), 7);
        content->setLanguage(u"en"_s);
        content->setSection(u"sport"_s);
        QCOMPARE(filledFields(readBack(content)), before);
    }

    void imageTypeIsReadAsInteger_data()
    {
        addColumns<QCborValue, int>("archivedType", "imageType");
        QTest::newRow("missing") << QCborValue(QCborValue::Invalid) << 0;
        QTest::newRow("null") << QCborValue(nullptr) << 0;
        QTest::newRow("largest") << QCborValue(2147483647) << 2147483647;
        QTest::newRow("smallest") << QCborValue(-2147483648LL) << std::numeric_limits<int>::min();
        QTest::newRow("fraction") << QCborValue(2.9) << 2;
        QTest::newRow("too large") << QCborValue(1e300) << 0;
        QTest::newRow("no number") << QCborValue(qQNaN()) << 0;
        QTest::newRow("text") << QCborValue(u"x"_s) << 0;
        QTest::newRow("true") << QCborValue(true) << 1;
    }
    void imageTypeIsReadAsInteger()
    {
        QFETCH(QCborValue, archivedType);
        QCborMap cbor{{0, u"BrevantoRelatedContent"_s}, {u"title"_s, u"t"_s}};
        if (!archivedType.isInvalid())
            cbor[u"imageType"_s] = archivedType;
        const auto content = BrevantoFields::record<BrevantoRelatedContent>(unarchived(cbor.toCborValue().toCbor()));
        QCOMPARE(content->title(), u"t"_s);
        QTEST(content->imageType(), "imageType");
    }

    void galleryIsMadeOnce()
    {
        auto match = std::make_shared<BrevantoMatch>();
        match->setAdCatalogue(QVariantList{catalogueImage()});
        match->setRelatedAdImages(QVariantList{u"r"_s});
        match->setImageGallery(QVariantList{u"g"_s});
        match->setCaptionImages(QVariantList{captionedImage()});
        match->setImages(QVariantList{u"i1"_s, u"i2"_s});
        const QVariantList gallery{u"i1"_s, u"i2"_s, match->captionImages().toList()[0],
                                   u"g"_s,  u"r"_s,  match->adCatalogue().toList()[0]};
        QCOMPARE(match->galleryDataSource(), gallery);

        match->setImages(QVariantList{u"other"_s});
        QCOMPARE(match->galleryDataSource(), gallery);

        auto noLists = std::make_shared<BrevantoMatch>();
        noLists->setImages(5);
        noLists->setImageGallery(u"text"_s);
        QVERIFY(noLists->galleryDataSource().isEmpty());
        noLists->setImages(QVariantList{u"late"_s});
        QVERIFY(noLists->galleryDataSource().isEmpty());
    }

    void grouping_data()
    {
        QTest::addColumn<QVariantList>("addresses");
        QTest::addColumn<QStringList>("groups"); // address=positions of the matches
        QTest::newRow("none") << QVariantList() << QStringList();
        QTest::newRow("A B A") << QVariantList{u"A"_s, u"B"_s, u"A"_s} << QStringList{u"A=0,2"_s, u"B=1"_s};
        QTest::newRow("without address") << QVariantList{QVariant(), u""_s, u"B"_s} << QStringList{u"B=2"_s};
        QTest::newRow("all without") << QVariantList{QVariant(), u""_s, QVariantList{1}} << QStringList();
        QTest::newRow("exact text") << QVariantList{u"a"_s, u"A"_s, u"a/"_s}
                                    << QStringList{u"a=0"_s, u"A=1"_s, u"a/=2"_s};
        QTest::newRow("number") << QVariantList{3, u"3"_s} << QStringList{u"3=0,1"_s};
    }
    void grouping()
    {
        QFETCH(QVariantList, addresses);
        BrevantoMatchList matches;
        for (const QVariant &address : addresses)
            matches.append(matchWithImage(address));
        QStringList groups;
        for (const auto &group : BrevantoMatchGroup::groupMatchesByAdImageUrl(matches)) {
            QStringList positions;
            for (const auto &match : group->listOfMatches())
                positions.append(QString::number(matches.indexOf(match)));
            groups.append(group->adImageUrl() + u'=' + positions.join(u','));
        }
        QTEST(groups, "groups");
    }

    void aGroupComesBack()
    {
        const auto group = BrevantoMatchGroup::initWithMatches(
            {matchWithImage(u"A"_s, u"1"_s), matchWithImage(u"A"_s, u"2"_s)}, u"A"_s);
        const auto read = readBack(group);
        QCOMPARE(read->adImageUrl(), u"A"_s);
        QCOMPARE(read->listOfMatches().size(), 2);
        QCOMPARE(read->listOfMatches()[0]->title(), u"1"_s);
        QCOMPARE(read->listOfMatches()[1]->title(), u"2"_s);
        QVERIFY(readBack(std::make_shared<BrevantoMatchGroup>())->adImageUrl().isNull());
    }

    void sourceTitle()
    {
        BrevantoMatch match;
        QVERIFY(!match.sourceTitle().isValid());
        match.setSource(u"s"_s);
        for (const QString &display : {u""_s, u"d"_s}) {
            match.setDisplay_source(display);
            QCOMPARE(match.sourceTitle(), display.isEmpty() ? u"s"_s : display);
        }
    }

    void damagedGroups_data()
    {
        const QCborMap match{{0, u"BrevantoMatch"_s}, {u"title"_s, u"kept"_s}};
        const QCborMap image{{0, u"BrevantoCaptionedImage"_s}};
        addColumns<QCborMap, QString, int>("fields", "address", "matchCount");
        QTest::newRow("nothing") << QCborMap() << QString() << 0;
        QTest::newRow("null list") << QCborMap{{u"adImageUrl"_s, u"A"_s}, {u"listOfMatches"_s, nullptr}} << u"A"_s << 0;
        QTest::newRow("no list") << QCborMap{{u"adImageUrl"_s, u"A"_s}, {u"listOfMatches"_s, match}} << u"A"_s << 0;
        QTest::newRow("other things in the list")
            << QCborMap{{u"adImageUrl"_s, 5}, {u"listOfMatches"_s, QCborArray{1, match, nullptr, image, u"x"_s, match}}}
            << u"5"_s << 2;
        QTest::newRow("no address") << QCborMap{{u"adImageUrl"_s, QCborArray()},
                                                {u"listOfMatches"_s, QCborArray{match}}}
                                    << QString() << 1;
    }
    void damagedGroups()
    {
        QFETCH(QCborMap, fields);
        fields[0] = u"BrevantoMatchGroup"_s;
        const auto group = BrevantoFields::record<BrevantoMatchGroup>(unarchived(fields.toCborValue().toCbor()));
        QTEST(group->adImageUrl(), "address");
        QTEST(int(group->listOfMatches().size()), "matchCount");
        for (const auto &match : group->listOfMatches())
            QCOMPARE(match->title(), u"kept"_s);
    }
};

QTEST_APPLESS_MAIN(TestBrevantoMatchArchive)
#include "tst_BrevantoMatchArchive.moc"
