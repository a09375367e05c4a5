#include "support/MatchKinds.h"
#include "support/Table.h"

#include "Brevanto/Model/BrevantoFields.h"
#include "Brevanto/Model/BrevantoMatchGroup.h"
#include "Brevanto/Model/BrevantoRelatedContent.h"
#include "Model/MatchFields.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

QJsonObject parsed(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonObject object = QJsonDocument::fromJson(json, &error).object();
    if (error.error != QJsonParseError::NoError)
        qFatal("%s in %s", qPrintable(error.errorString()), json.constData());
    return object;
}

std::shared_ptr<BrevantoMatch> matchFrom(const QJsonObject &object)
{
    return BrevantoMatch::populateMatchesUsingArray(QJsonArray{object}).value().value(0);
}

} // namespace

class TestBrevantoMatchMapping : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void validity()
    {
        for (const QJsonValue &invalid : {QJsonValue(QJsonValue::Undefined), QJsonValue(), QJsonValue(u""_s)})
            QVERIFY2(!BrevantoBaseEntity::isValid(invalid), QByteArray::number(invalid.type()));
        const QJsonArray valid{u" "_s, u"null"_s, 0, false, QJsonArray(), QJsonObject()};
        for (const auto value : valid)
            QVERIFY2(BrevantoBaseEntity::isValid(value), QByteArray::number(value.type()));
    }

    void fields_data();
    void fields()
    {
        QFETCH(QByteArray, json);
        QFETCH(QByteArray, expected);
        const auto match = matchFrom(parsed(json));
        const QJsonObject fields = parsed(expected);
        QCOMPARE(filledFields(match), fields);
        QCOMPARE(match->title(), fields.value("title"_L1).toVariant());
        QCOMPARE(match->tagFolder(), fields.value("tagFolder"_L1).toVariant());
    }

    void everyKeyFillsItsField();
    void everyKeyTakesEveryKind();
    void clipAddressIsThatOfTheExpression()
    {
        static const QRegularExpression player(u".*VideoID=(.*).flv.*"_s, QRegularExpression::CaseInsensitiveOption);
        const QStringList pieces{u"VideoID="_s, u"videoid="_s, u".flv"_s, u"\U0001F600flv"_s,
                                 u"flv"_s,      u"."_s,        u"FLV"_s,  u"x"_s};
        QRandomGenerator random(1);
        for (int round = 0; round < 2000; ++round) {
            QString address;
            for (int piece = random.bounded(1, 7); piece > 0; --piece)
                address += pieces[random.bounded(pieces.size())];
            const QJsonObject video{{u"url"_s, address}};
            const auto match = matchFrom({{u"relatedVideos"_s, QJsonArray{video}}});
            const QString content =
                BrevantoFields::record<BrevantoRelatedContent>(match->vids().toList()[0])->contentUrl().toString();
            QCOMPARE(content, QString(address).replace(player, u"\\1.mp4"_s));
        }
    }

    void countOfRelatedContentMarksTheTimeOfParsing()
    {
        for (const QJsonValue &count : {QJsonValue(3), QJsonValue(0), QJsonValue(u"3"_s), QJsonValue()}) {
            const QDateTime before = QDateTime::currentDateTimeUtc();
            const auto match = matchFrom({{u"relatedcontentcount"_s, count}});
            QCOMPARE(match->downloadedTime().isValid(), count.isDouble());
            QVERIFY(!match->relatedItemsCount().isValid());
            if (count.isDouble()) {
                QCOMPARE_GE(match->downloadedTime().toDateTime(), before);
                QCOMPARE_LE(match->downloadedTime().toDateTime(), QDateTime::currentDateTimeUtc());
            }
        }
    }

    void inputs()
    {
        for (const QJsonValue &noList : {QJsonValue(), QJsonValue(QJsonValue::Undefined), QJsonValue(u"matches"_s)})
            QVERIFY(!BrevantoMatch::populateMatchesUsingArray(noList));
        QCOMPARE(BrevantoMatch::populateMatchesUsingArray(QJsonArray())->size(), 0);

        const QJsonArray mixed{QJsonObject{{u"title"_s, u"a"_s}}, QJsonObject(), 5, QJsonValue(),
                               QJsonObject{{u"title"_s, u"b"_s}}};
        const BrevantoMatchList matches = *BrevantoMatch::populateMatchesUsingArray(mixed);
        QCOMPARE(matches.size(), 5);
        QCOMPARE(matches[0]->title(), u"a"_s);
        for (const int index : {1, 2, 3})
            QCOMPARE(filledFields(matches[index]), QJsonObject());
        QCOMPARE(matches[4]->title(), u"b"_s);
    }

    // Each as if it came alone.
    void matchesOfOneAnswerDifferInTheirKeys()
    {
        const QJsonArray answer = parsed(R"({"matches": [
            {"title": "a", "unknown": 1}, {"title": "b", "unknown": 2}, {"titlf": "c", "unknown": 3},
            {"source": "d", "title": "e"}, {"unknown": "f", "url": "g"}, {"\u0074itle": "h", "unknown": 4},
            {"title": "i", "\ud800": 5}, {"title": "j", "\ud801": 6}, {"author": "k", "\u00e4": 7}, {},
            {"title": "l", "unknown": 8, "url": "m"}]})")
                                      .value("matches"_L1)
                                      .toArray();
        const BrevantoMatchList matches = *BrevantoMatch::populateMatchesUsingArray(answer);
        for (qsizetype index = 0; index < answer.size(); ++index)
            QCOMPARE(filledFields(matches[index]), filledFields(matchFrom(answer[index].toObject())));
        QCOMPARE(matches[5]->title(), u"h"_s);
        QCOMPARE(matches[7]->title(), u"j"_s);
    }

    void readers()
    {
        const std::tuple<QVariant, QString, double> shown[] = {{{}, {}, qQNaN()},
                                                               {u" 7 "_s, u" 7 "_s, qQNaN()},
                                                               {qint64(-42), u"-42"_s, -42.0},
                                                               {0.1, u"0.1"_s, 0.1},
                                                               {1e21, u"1000000000000000000000"_s, 1e21},
                                                               {true, u"true"_s, qQNaN()},
                                                               {QVariantList{1}, {}, qQNaN()}};
        for (const auto &[field, text, number] : shown) {
            QCOMPARE(BrevantoFields::text(field), text);
            QCOMPARE(BrevantoFields::number(field).value_or(qQNaN()), number);
        }
    }
};

// Not in the class, as moc does not understand texts of several lines.
void TestBrevantoMatchMapping::fields_data()
{
    addColumns<QByteArray, QByteArray>("json", "expected");
    const auto row = [](const char *name, const QByteArray &json, const QByteArray &expected) {
        QTest::newRow(name) << json << expected;
    };

    row("nothing", "{}", "{}");
    row("nulls and empty texts",
        R"({"title": null, "id": null, "author": "", "authors": "", "tag": "", "images": null, "imageGallery": null,
            "relatedVideos": null, "relatedArticleLinks": "", "image_catalouge": null, "app_img": "", "bg_img": null,
            "theme": "", "ad_rel_img": "", "xPercent": null, "weblinkThumb": "", "relatedContentIdentifiers": null})",
        "{}");
    row("values of any kind are kept as sent",
        R"({"title": 7, "tag": {"a": [1, null, "x"]}, "show_ads": true, "weblink": [1.5], "ph_number": 123456789012,
            "description": false, "app_img": 3})",
        R"({"title": 7, "tagFolder": {"a": [1, null, "x"]}, "shouldDisplayBannerAd": true, "weblink": [1.5],
            "phoneNumber": 123456789012, "desc": false, "app_img": 3})");
    row("keys that are looked at and not used",
        R"({"dislikeCount": 1, "likeCount": 2, "currentUserLike": true, "external_ad": 1, "comments": ["a"],
            "questions": ["b"], "isQuiz": 1, "historyDate": "x"})",
        "{}");

    // Half of a surrogate pair would not come back from an archive.
    row("half letters",
        R"({"title": "a\ud800", "id": "\udc00", "author": ["\ud800"], "images": "\ud800", "theme": "\ud800",
            "tag": {"\ud800": ["\ud800"]}, "app_img": "\ud83d\ude00"})",
        R"({"title": "a?", "ID": "?", "author": "?", "images": ["?"], "thumbUrl": "?",
            "adthemeColorString": "0x?", "tagFolder": {"?": ["?"]}, "app_img": "\ud83d\ude00"})");

    row("author", R"({"author": "A", "authors": "B"})", R"({"author": "A"})");
    row("author list", R"({"author": ["A", "B"]})", R"({"author": "A"})");
    row("empty author list", R"({"author": [], "authors": "B"})", R"({"author": "B"})");
    row("empty author, list of authors", R"({"author": "", "authors": ["B", "C"]})", R"({"author": "B"})");
    row("author of another kind", R"({"author": 5, "authors": {"a": 1}})", "{}");

    row("id text", R"({"id": "00x"})", R"({"ID": "00x"})");
    row("id empty text", R"({"id": ""})", R"({"ID": ""})");
    row("id number", R"({"id": 42})", R"({"ID": "42"})");
    row("id large number", R"({"id": 9007199254740993})", R"({"ID": "9007199254740993"})");
    row("id fraction", R"({"id": 4.25})", R"({"ID": "4.25"})");
    row("id of another kind", R"({"id": [1]})", "{}");

    row("images, objects", R"({"images": [{"url": "a"}, {"url": ""}, {"x": 1}, "b", null, {"url": 4}]})",
        R"({"images": ["a", 4], "thumbUrl": "a"})");
    row("images, texts", R"({"images": ["a", "", null, "b", 3]})", R"({"images": ["a", "b", 3], "thumbUrl": "a"})");
    row("images, first of another kind", R"({"images": [1, "a"]})", R"({"images": []})");
    row("images, empty list", R"({"images": []})", R"({"images": []})");
    row("images, one text", R"({"images": "a"})", R"({"images": ["a"], "thumbUrl": "a"})");
    row("images, empty text", R"({"images": ""})", R"({"images": [""], "thumbUrl": ""})");
    row("images of another kind", R"({"images": 5})", "{}");

    row("image gallery", R"({"imageGallery": ["a", "", null, 3]})", R"({"imageGallery": ["a", 3], "thumbUrl": "a"})");
    row("image gallery of another kind", R"({"imageGallery": "a"})", "{}");
    row("captions", R"({"imageGalleryCaption": [{"url": "a", "caption": "c"}, {"caption": ""}, null, "", "text"]})",
        R"({"captionImages": [{"0": "BrevantoCaptionedImage", "imageURL": "a", "captionText": "c"},
            {"0": "BrevantoCaptionedImage"}, {"0": "BrevantoCaptionedImage"}], "thumbUrl": "a"})");

    row("thumbnail, first key wins", R"({"weblinkThumb": "1", "thumb_url": "2", "thumbUrl": "3"})",
        R"({"thumbUrl": "1"})");
    row("thumbnail, second key", R"({"weblinkThumb": "", "thumb_url": "2", "thumbUrl": "3"})", R"({"thumbUrl": "2"})");
    row("thumbnail, third key before the lists", R"({"thumbUrl": "3", "imageGallery": ["g"]})",
        R"({"thumbUrl": "3", "imageGallery": ["g"]})");
    row("thumbnail, gallery before images", R"({"imageGallery": ["g"], "images": ["i"]})",
        R"({"thumbUrl": "g", "imageGallery": ["g"], "images": ["i"]})");
    row("thumbnail, images when the gallery is empty", R"({"imageGallery": [], "images": ["i"]})",
        R"({"thumbUrl": "i", "imageGallery": [], "images": ["i"]})");
    row("thumbnail, captioned image without address", R"({"imageGalleryCaption": [{"caption": "c"}]})",
        R"({"captionImages": [{"0": "BrevantoCaptionedImage", "captionText": "c"}]})");

    row("related videos",
        R"({"date": "today", "relatedVideos": [{"url": "http://p?VideoID=clip7.flv&x=1", "thumbUrl": "t", "title": "T",
            "date": "other"}, {"url": "a\nb"}, {}, null, ""]})",
        R"({"date": "today", "vids": [
            {"0": "BrevantoRelatedContent", "contentUrl": "clip7.mp4", "thumbnailUrl": "t", "title": "T",
             "date": "today", "imageType": 0},
            {"0": "BrevantoRelatedContent", "contentUrl": "ab", "date": "today", "imageType": 0},
            {"0": "BrevantoRelatedContent", "date": "today", "imageType": 0}]})");
    row("related videos, empty list", R"({"relatedVideos": []})", R"({"vids": []})");
    row("related videos of another kind", R"({"relatedVideos": {"url": "a"}})", "{}");

    row("related links",
        R"({"date": "d", "relatedArticleLinks": [
            {"url": "x POLLS: ads:", "thumbUrl": "t", "title": "T", "description": "B"}, {"url": "Ads:1 news:"},
            {"url": "http://NEWS:2 quiz:"}, {"url": "quiz:3"}, {"url": "http://plain"}, {"url": 4}]})",
        R"({"date": "d",
            "relatedPolls": [{"0": "BrevantoRelatedContent", "contentUrl": "x POLLS: ads:", "thumbnailUrl": "t",
                "title": "T", "body": "B", "date": "d", "imageType": 0}],
            "relatedAds": [{"0": "BrevantoRelatedContent", "contentUrl": "Ads:1 news:", "date": "d", "imageType": 0}],
            "relatedQuiz": [{"0": "BrevantoRelatedContent", "contentUrl": "quiz:3", "date": "d", "imageType": 0}],
            "relatedArticles": [
                {"0": "BrevantoRelatedContent", "contentUrl": "http://NEWS:2 quiz:", "date": "d", "imageType": 0},
                {"0": "BrevantoRelatedContent", "contentUrl": "http://plain", "date": "d", "imageType": 0},
                {"0": "BrevantoRelatedContent", "contentUrl": 4, "date": "d", "imageType": 0}]})");
    row("related links without address",
        R"({"relatedArticleLinks": [{"url": ""}, {"url": null}, {"title": "T"}, null, "news:", 1]})",
        R"({"relatedArticles": [], "relatedPolls": [], "relatedAds": [], "relatedQuiz": []})");
    row("related links of another kind", R"({"relatedArticleLinks": "news:"})", "{}");
    row("related audios", R"({"relatedAudios": [{"u": 1}, "", null, "b"]})", R"({"relatedAudios": [{"u": 1}, "b"]})");

    row("ad image", R"({"app_img": "a", "bg_img": "b"})", R"({"app_img": "a"})");
    row("ad image, second key", R"({"app_img": "", "bg_img": "b"})", R"({"app_img": "b"})");
    row("theme", R"({"theme": "00AAFF"})", R"({"adthemeColorString": "0x00AAFF"})");
    row("theme with prefix", R"({"theme": "#00AAFF"})", R"({"adthemeColorString": "0x#00AAFF"})");
    row("theme of another kind", R"({"theme": 255})", "{}");
    row("related ad images", R"({"ad_rel_img": "a.jpg, b.jpg,,"})",
        R"({"relatedAdImages": ["a.jpg", " b.jpg", "", ""]})");
    row("related ad images of another kind", R"({"ad_rel_img": ["a"]})", "{}");
    row("catalogue",
        R"({"image_catalouge": [{"img": "i", "caption": "c", "url": "u"}, {"img": "", "url": null}, null]})",
        R"({"adCatalogue": [{"0": "BrevantoCatalogueImage", "imageURL": "i", "captionText": "c", "buyURL": "u"},
            {"0": "BrevantoCatalogueImage"}]})");
    row("empty catalogue", R"({"image_catalouge": []})", "{}");
    row("catalogue without a valid entry", R"({"image_catalouge": [null]})", R"({"adCatalogue": []})");

    row("source", R"({"source": "s", "display_source": ""})", R"({"source": "s"})");
    row("source to display", R"({"source": "s", "display_source": "d"})", R"({"source": "d", "display_source": "d"})");
    row("position", R"({"position": 3})", R"({"nativeAdPosition": 3})");
    row("position of another kind", R"({"position": "3"})", "{}");
    row("texts of another kind", R"({"is_live": 1, "title_color": [1], "share_url": {"a": 1}})", "{}");
    row("texts", R"({"is_live": "1", "title_color": "red", "share_url": "u"})",
        R"({"isSpecialArticle": "1", "title_color": "red", "shareURL": "u"})");
    row("identifiers", R"({"relatedContentIdentifiers": ["xquizpolls", "polls", "", 1]})",
        R"({"hasRelatedQuiz": true, "hasRelatedPoll": true})");
    row("identifiers without effect", R"({"relatedContentIdentifiers": ["QUIZ", "poll", "news"]})", "{}");
    row("quiz hides polls", R"({"relatedContentIdentifiers": ["polls and quiz"]})", R"({"hasRelatedQuiz": true})");
    row("percentages", R"({"xPercent": 40.5, "yPercent": 0})", R"({"xPercent": 40.5, "yPercent": 0})");
    row("percentages of another kind", R"({"xPercent": "40", "yPercent": true})", "{}");
}

// Keys that share a beginning are told apart, whatever else the object holds.
void TestBrevantoMatchMapping::everyKeyFillsItsField()
{
    const QByteArray json = R"({
        "!": 1, "title": "1", "id": "2", "date": "3", "description": "4", "weblink": "5", "author": "6",
        "category": "7", "app_img": "8", "vid_urls": "9", "aud_url": "10", "commerce_url": "11", "ad_reviews_url": "12",
        "url": "13", "ph_number": "14", "theme": "15", "ad_rel_img": "16", "thumb_url": "17", "tag": "18",
        "images": ["19"], "imageGallery": ["20"], "relatedAudios": ["21"], "display_source": "22", "position": 23,
        "share_url": "24", "show_ads": 25, "is_live": "26", "title_color": "27", "xPercent": 28, "yPercent": 29,
        "section": "30", "language": "31", "Title": "x", "titles": "x", "ur": "x", "~": 1, "\u00e4": 1, "": 1,
        "\ud83d\ude00": 2})";
    const QByteArray expected = R"({
        "title": "1", "ID": "2", "date": "3", "desc": "4", "weblink": "5", "author": "6", "category": "7",
        "app_img": "8", "vid_urls": "9", "aud_url": "10", "commerce_url": "11", "ad_reviews_url": "12",
        "url": "13", "phoneNumber": "14", "adthemeColorString": "0x15", "relatedAdImages": ["16"],
        "thumbUrl": "17", "tagFolder": "18", "images": ["19"], "imageGallery": ["20"], "relatedAudios": ["21"],
        "display_source": "22", "source": "22", "nativeAdPosition": 23, "shareURL": "24", "shouldDisplayBannerAd": 25,
        "isSpecialArticle": "26", "title_color": "27", "xPercent": 28, "yPercent": 29, "section": "30",
        "language": "31"})";
    QCOMPARE(filledFields(matchFrom(parsed(json))), parsed(expected));
}

// Whatever comes under a key, the match can be shown and comes back from an archive as it was.
void TestBrevantoMatchMapping::everyKeyTakesEveryKind()
{
    for (const QString &key : MatchKinds::keys()) {
        for (const auto value : MatchKinds::values()) {
            QJsonObject object{{u"bg_img"_s, u"ad"_s}};
            object[key] = value;
            const auto match = matchFrom(object);
            match->galleryDataSource();
            QCOMPARE(BrevantoMatchGroup::groupMatchesByAdImageUrl({match}).size(),
                     BrevantoFields::text(match->backgroundImageUrl()).isEmpty() ? 0 : 1);
            const auto back = unarchived(archived(match)).value<Platform::CodablePointer>();
            QVERIFY2(filledFields(back) == filledFields(match), QJsonDocument(object).toJson().constData());
        }
    }
}

QTEST_APPLESS_MAIN(TestBrevantoMatchMapping)
#include "tst_BrevantoMatchMapping.moc"
