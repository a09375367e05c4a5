// The shipped catalogue is whole and shows everything the SDK can do; a faulty one is refused with its fault.

#include "service/Catalogue.h"
#include "support/Table.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImageReader>
#include <QtTest/QTest>

#include <stdexcept>

using namespace Qt::StringLiterals;
using MatchService::Catalogue;

namespace
{

const QString shippedFolder = QStringLiteral(MATCH_SERVICE_CATALOGUE);
const QString base = u"http://127.0.0.1:1/"_s;

bool write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly)
        && file.write(bytes) == bytes.size();
}

} // namespace

class tst_Catalogue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesOnlyFilesThatExist()
    {
        const Catalogue catalogue(shippedFolder);
        QVERIFY(catalogue.ads().size() >= 8);
        QVERIFY(catalogue.files().size() > 20);
        for (const QString &file : catalogue.files())
            QVERIFY2(QFileInfo(shippedFolder + u'/' + file).isFile(), qPrintable(file));
        for (const QFileInfo &clip : QDir(shippedFolder + u"/media"_s).entryInfoList(QDir::Files))
            QVERIFY2(clip.size() < 300 * 1024, qPrintable(clip.fileName()));
        QSet<int> shapes; // portrait, square, landscape
        for (const MatchService::CatalogueAd &ad : catalogue.ads()) {
            const QSize size = QImageReader(shippedFolder + u'/' + ad.image).size();
            QVERIFY2(size.width() >= 800 && size.height() >= 800, qPrintable(ad.name));
            shapes.insert(qBound(-1, size.width() - size.height(), 1));
        }
        QCOMPARE(shapes.size(), 3);
    }

    void pagesLinkOnlyToWhatExists()
    {
        static const QRegularExpression link(u"(?:href|src)=\"([^\"?]+)"_s);
        const QDir pages(shippedFolder + u"/pages"_s);
        for (const QString &name : pages.entryList({u"*.html"_s})) {
            QFile page(pages.filePath(name));
            QVERIFY(page.open(QIODevice::ReadOnly));
            const QString text = QString::fromUtf8(page.readAll());
            QVERIFY2(text.contains(u"width=device-width"_s), qPrintable(name));
            for (auto links = link.globalMatch(text); links.hasNext();) {
                const QString target = links.next().captured(1);
                QVERIFY2(pages.exists(target), qPrintable(name + u": "_s + target));
            }
        }
    }

    void showsEveryActionAndField()
    {
        QSet<QString> keys;
        QSet<QString> kinds;
        bool hasSeveralHotspots = false;
        bool hasPlacelessHotspot = false;
        const Catalogue catalogue(shippedFolder);
        for (std::size_t ad = 0; ad < catalogue.ads().size(); ++ad) {
            const QJsonArray records = catalogue.matches(ad, base);
            hasSeveralHotspots |= records.size() > 1;
            for (const QJsonValue &record : records) {
                const QJsonObject fields = record.toObject();
                for (auto field = fields.begin(); field != fields.end(); ++field) {
                    keys.insert(field.key());
                    kinds.insert(u"%1 %2"_s.arg(field.key()).arg(int(field->type())));
                }
                hasPlacelessHotspot |= !fields.contains(u"xPercent"_s);
            }
        }
        QVERIFY(hasSeveralHotspots && hasPlacelessHotspot);
        const QString wanted =
            u"title id date description weblink author authors category app_img bg_img url vid_urls aud_url "
            "commerce_url ad_reviews_url ph_number theme ad_rel_img image_catalouge weblinkThumb thumb_url thumbUrl "
            "tag relatedVideos images imageGallery "
            "imageGalleryCaption relatedArticleLinks relatedAudios display_source position share_url show_ads is_live "
            "title_color relatedContentIdentifiers relatedcontentcount xPercent yPercent source section language"_s;
        for (const QString &key : wanted.split(u' '))
            QVERIFY2(keys.contains(key), qPrintable(key));
        for (const auto type : {QJsonValue::Double, QJsonValue::String})
            QVERIFY(kinds.contains(u"id %1"_s.arg(int(type))));
        for (const auto type : {QJsonValue::Array, QJsonValue::String}) {
            QVERIFY(kinds.contains(u"images %1"_s.arg(int(type))));
            QVERIFY(kinds.contains(u"authors %1"_s.arg(int(type))));
        }
    }

    void makesAddressesAbsolute();

    void refusesAFaultyFolder_data()
    {
        addColumns<QByteArray, bool>("json", "hasPicture");
        QTest::newRow("no picture") << QByteArray(R"({"matches": [{}]})") << false;
        QTest::newRow("not JSON") << QByteArray("{") << true;
        QTest::newRow("no records") << QByteArray("{}") << true;
        QTest::newRow("a record is no object") << QByteArray(R"({"matches": [1]})") << true;
        QTest::newRow("an id twice") << QByteArray(R"({"matches": [{"id": 1}, {"id": "1"}]})") << true;
    }
    void refusesAFaultyFolder()
    {
        QFETCH(QByteArray, json);
        QFETCH(bool, hasPicture);
        const QTemporaryDir folder;
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, Catalogue(folder.path()));
        QVERIFY(write(folder.filePath(u"ads/one.json"_s), json));
        if (hasPicture)
            QVERIFY(write(folder.filePath(u"ads/one.jpg"_s), "picture"));
        try {
            const Catalogue catalogue(folder.path());
            QFAIL("accepted");
        } catch (const std::runtime_error &fault) {
            QVERIFY(QString::fromStdString(fault.what()).contains(u"one.json"_s));
        }
    }
};

// Not in the class, as moc does not understand texts of several lines.
void tst_Catalogue::makesAddressesAbsolute()
{
    const QTemporaryDir folder;
    QVERIFY(write(folder.filePath(u"ads/one.png"_s), "picture"));
    const QByteArray records = R"({"matches": [{"id": 7, "title": "images/a.jpg", "url": "http://a.example/b",
        "vid_urls": "media/a.webm", "ad_rel_img": "images/a.jpg,https://a.example/c.jpg", "images": [{"url": "images/a.jpg"}],
        "imageGallery": ["images/a.jpg", ""], "relatedArticleLinks": [{"url": "polls:one"}], "xPercent": 1.5, "aud_url": null}]})";
    QVERIFY(write(folder.filePath(u"ads/one.json"_s), records));
    const Catalogue catalogue(folder.path());
    const QJsonObject record = catalogue.match(u"7"_s, base).value();
    const QByteArray expected = R"({"app_img": "http://127.0.0.1:1/ads/one.png", "id": 7,
        "title": "images/a.jpg", "url": "http://a.example/b", "vid_urls": "http://127.0.0.1:1/media/a.webm",
        "ad_rel_img": "http://127.0.0.1:1/images/a.jpg,https://a.example/c.jpg",
        "images": [{"url": "http://127.0.0.1:1/images/a.jpg"}], "imageGallery": ["http://127.0.0.1:1/images/a.jpg", ""],
        "relatedArticleLinks": [{"url": "polls:one"}], "xPercent": 1.5, "aud_url": null})";
    QCOMPARE(record, QJsonDocument::fromJson(expected).object());
    QCOMPARE(catalogue.match(u"one"_s, base), std::optional(record));
    QVERIFY(!catalogue.match(u"8"_s, base));
}

QTEST_GUILESS_MAIN(tst_Catalogue)

#include "tst_Catalogue.moc"
