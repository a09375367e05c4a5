#include "ScreenTest.h"
#include "support/Table.h"
#include "support/TestImages.h"

#include "Brevanto/BrevantoPhotoGalleryVC.h"
#include "Brevanto/CatalogueButton.h"
#include "Brevanto/Model/BrevantoCaptionedImage.h"
#include "Brevanto/Model/BrevantoCatalogueImage.h"
#include "Brevanto/Model/BrevantoFields.h"
#include "Brevanto/Utils/BrevantoUtils.h"
#include "Brevanto/Utils/CustomLabel.h"
#include "Platform/Interface/NavigationController.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using Platform::ImageView;
using Platform::View;

namespace
{

// "/<page>" is a picture; its colour tells the page. "/broken" begins like one. Every other path is missing.
RawServer::Answer picture(const RawServer::Request &request)
{
    if (request.target == "/broken")
        return {.body = TestImages::png(TestImages::quarters({90, 120})).first(40)};
    bool isPage = false;
    const int page = request.target.mid(1).toInt(&isPage);
    if (!isPage)
        return {.status = 404};
    QImage image(90, 120, QImage::Format_RGB32);
    image.fill(QColor::fromHsv(page * 67 % 360, 170, 210));
    return {.body = TestImages::png(image)};
}

QVariant product(const QString &imageURL, const QVariant &caption = {}, const QVariant &buyURL = {})
{
    auto record = std::make_shared<BrevantoCatalogueImage>();
    record->setImageURL(imageURL);
    record->setCaptionText(caption);
    record->setBuyURL(buyURL);
    return BrevantoFields::entry(record);
}

QVariant captioned(const QString &imageURL, const QVariant &caption)
{
    auto record = std::make_shared<BrevantoCaptionedImage>();
    record->setImageURL(imageURL);
    record->setCaptionText(caption);
    return BrevantoFields::entry(record);
}

} // namespace

class tst_BrevantoPhotoGalleryVC : public ScreenTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        ScreenTest::init();
        m_server->setHandler(picture);
    }

    void showsWhatTheMatchOffers_data()
    {
        // Paths without a server stand for this test's server.
        addColumns<QVariantList, QVariantList>("catalogue", "gallery");
        QTest::addColumn<QString>("caption"); // of the first page, as the rest; null: no strip
        addColumns<bool, bool>("canBeBought", "isPlaceholder");
        const auto row = [](const char *name, const QVariantList &catalogue, const QVariantList &gallery,
                            const QString &caption = {}, bool canBeBought = false, bool isPlaceholder = false) {
            QTest::newRow(name) << catalogue << gallery << caption << canBeBought << isPlaceholder;
        };
        const QString link = u"http://127.0.0.1:9/shop"_s;
        const QString markup = u"<b>Blue</b> & <i>white</i> 🫖"_s;
        const QString endless(1024 * 1024, u'W');
        const QVariantList five(5, u"/2"_s);
        row("the catalogue hides the gallery", QVariantList(3, product(u"/1"_s, u"Teapot"_s, link)), five, u"Teapot"_s,
            true);
        row("gallery of plain addresses", {}, five);
        row("single", {}, {u"/1"_s});
        row("no images", {}, {});
        row("captioned image", {}, {captioned(u"/1"_s, u"  Two<BR/><br>lines "_s)}, u"Two\nlines"_s);
        row("markup and emoji are text", {product(u"/1"_s, markup)}, {}, markup);
        row("endless caption", {product(u"/1"_s, endless, link)}, {}, endless.first(1000), true);
        row("blank caption, no link", {product(u"/1"_s, u" \n\t "_s)}, {});
        row("missing image", {product(u"/missing"_s, u"Teapot"_s, link)}, {}, {}, false, true);
        row("image that does not decode", {product(u"/broken"_s, u"Teapot"_s, link)}, {}, {}, false, true);
        row("no address", {product({}, u"Teapot"_s, link), product(u"/1"_s)}, {}, {}, false, true);
    }
    void showsWhatTheMatchOffers()
    {
        QFETCH(QVariantList, catalogue);
        QFETCH(QVariantList, gallery);
        QFETCH(QString, caption);
        QFETCH(bool, canBeBought);
        QFETCH(bool, isPlaceholder);
        for (QVariant &entry : catalogue) {
            const auto record = BrevantoFields::record<BrevantoCatalogueImage>(entry);
            if (record->imageURL().toString().startsWith(u'/'))
                record->setImageURL(m_server->url(record->imageURL().toString()));
        }
        for (QVariant &entry : gallery) {
            if (const auto record = BrevantoFields::record<BrevantoCaptionedImage>(entry))
                record->setImageURL(m_server->url(record->imageURL().toString()));
            else
                entry = m_server->url(entry.toString());
        }
        open(catalogue, gallery);
        QCOMPARE(m_screen->pageControl()->isVisible(), m_count > 1);
        QCOMPARE(m_screen->nextButton()->isVisible(), m_count > 1);
        QVERIFY(!m_screen->prevButton()->isVisible());
        m_window->fling({340, 300}, {40, 300});
        if (m_count < 2) {
            QCOMPARE(m_screen->imagesScrollView()->contentOffset(), QPointF(0, 0));
            if (m_count == 0)
                return;
        } else {
            QTRY_COMPARE(pageInSight(), 1);
            m_window->tap(m_screen->prevButton());
            QTRY_COMPARE(pageInSight(), 0);
        }

        ImageView *image = imageView(0);
        QTRY_VERIFY(image->isShowingImage());
        QCOMPARE(image->image() == brevantoBundle().imageNamed(u"brevanto_no_image"_s), isPlaceholder);
        QVERIFY(!image->viewWithTag(BrevantoUtils::spinnerTag));
        QCOMPARE(image->contentMode(),
                 isPlaceholder ? Platform::ContentMode::Center : Platform::ContentMode::ScaleAspectFit);
        QCOMPARE(buyButton(0) != nullptr, canBeBought);
        auto *strip = qobject_cast<View *>(image->viewWithTag(BrevantoPhotoGalleryVC::captionViewTag));
        QCOMPARE(strip != nullptr, !caption.isNull());
        if (strip) {
            QCOMPARE(strip->frame(), QRectF(0, 800 - 100, 380, 80));
            QCOMPARE(strip->findChild<CustomLabel *>()->text(), caption);
        }
        if (buyButton(0))
            QCOMPARE(buyButton(0)->frame(), QRectF(150, 800 - 100 - 10 - 45, 80, 45));
    }

    void pagesBySwipesArrowsAndKeys()
    {
        open({}, pictures(4));
        const auto isAt = [this](int page) {
            return pageInSight() == page && m_screen->prevButton()->isVisible() == (page > 0)
                && m_screen->nextButton()->isVisible() == (page < 3);
        };
        m_window->fling({340, 300}, {40, 300});
        QTRY_VERIFY(isAt(1));
        // Two quick taps are two pages, and no double tap on the picture below.
        m_window->tap(m_screen->nextButton());
        m_window->tap(m_screen->nextButton());
        QStringList gaps;
        QVERIFY(QTest::qWaitFor([&] {
            const auto at = static_cast<int>(m_screen->imagesScrollView()->contentOffset().x() / 390 + 0.001);
            if (!imageView(at)->isVisible() || (at < 3 && !imageView(at + 1)->isVisible()))
                gaps.append(QString::number(at));
            return isAt(3);
        }));
        QCOMPARE(gaps, QStringList());
        QCOMPARE(zoom(), 1.0);
        QTest::keyClick(m_window->window(), Qt::Key_Right);
        QTest::keyClick(m_window->window(), Qt::Key_Left);
        QTRY_VERIFY(isAt(2));
        m_window->fling({40, 300}, {340, 300});
        QTRY_VERIFY(isAt(1));
        m_window->tap(m_screen->prevButton());
        QTRY_VERIFY(isAt(0));
        m_window->fling({40, 300}, {340, 300});
        QTRY_VERIFY(isAt(0));
        for (const auto *button : {m_screen->nextButton(), m_screen->prevButton()})
            QVERIFY(button->width() >= 44 && button->height() >= 44);
        QTest::keyClick(m_window->window(), Qt::Key_Escape);
        QTRY_VERIFY(!m_screen);
    }

    void zoomsByPinchDoubleTapAndKeys()
    {
        open({}, pictures(3));
        QTRY_VERIFY(imageView(0)->isShowingImage());
        m_window->tap(QPointF(195, 300));
        m_window->tap(QPointF(195, 300));
        QTRY_COMPARE(zoom(), 2.0);
        // Moves the picture, and not the page.
        const QPointF before = imageView(0)->mapToScene({0, 0});
        m_window->fling({340, 300}, {140, 300});
        QTRY_VERIFY(imageView(0)->mapToScene({0, 0}).x() < before.x() - 50);
        m_window->fling({340, 300}, {40, 300});
        m_window->fling({340, 300}, {40, 300});
        QCOMPARE(m_screen->imagesScrollView()->contentOffset(), QPointF(0, 0));
        // A page that is left goes back to its size.
        m_window->tap(m_screen->nextButton());
        QTRY_COMPARE(pageInSight(), 1);
        QTRY_COMPARE(imageView(0)->scale(), 1.0);
        m_window->pinch({195, 400}, 40, 60);
        QTRY_VERIFY(zoom() > 1.1 && zoom() < 2);
        m_window->pinch({195, 400}, 40, 190);
        QTRY_COMPARE(zoom(), 2.0);
        m_window->pinch({195, 400}, 150, 20);
        QTRY_COMPARE(zoom(), 1.0);
        m_window->fling({340, 300}, {40, 300});
        QTRY_COMPARE(pageInSight(), 2);

        // Two quick keys are two steps, on the page in sight.
        QTest::keyClick(m_window->window(), Qt::Key_Plus);
        QTest::keyClick(m_window->window(), Qt::Key_Equal);
        QTRY_COMPARE(zoom(), 1.5625);
        QCOMPARE(imageView(1)->scale(), 1.0);
        for (int i = 0; i < 4; ++i)
            QTest::keyClick(m_window->window(), Qt::Key_Plus);
        QTRY_COMPARE(zoom(), 2.0);
        for (int i = 0; i < 5; ++i)
            QTest::keyClick(m_window->window(), Qt::Key_Minus);
        QTRY_COMPARE(zoom(), 1.0);
    }

    void buyButtonTakesTheThemesColor_data()
    {
        addColumns<QString, QColor>("theme", "color");
        const QColor standard(0, 114, 187);
        QTest::newRow("none") << QString() << standard;
        QTest::newRow("digits") << u"FF0000"_s << QColor(255, 0, 0);
        QTest::newRow("prefix") << u"0x00aaff"_s << QColor(0, 0xaa, 255);
        QTest::newRow("prefix and hash") << u"0x#FF0000"_s << QColor(255, 0, 0);
        QTest::newRow("no digits") << u"0xzz"_s << QColor(Qt::black);
        QTest::newRow("too large") << QString(5000, u'1') << QColor(Qt::white);
    }
    void buyButtonTakesTheThemesColor()
    {
        QFETCH(QString, theme);
        QFETCH(QColor, color);
        open({product(url(0), {}, u"http://127.0.0.1:9/"_s)}, {}, theme);
        QCOMPARE(buyButton(0)->backgroundColor(), color);
        const QPoint inside = buyButton(0)->mapToScene({8, 22}).toPoint();
        QTRY_COMPARE(m_window->grab().pixelColor(inside), color);
        m_window->tap(buyButton(0));
        auto *stack = qobject_cast<Platform::NavigationController *>(m_screen->presentedViewController());
        QVERIFY(stack && stack->topViewController()->inherits("BrevantoWebVC"));
    }

    void staysOnItsPageWhenTheWindowTurns()
    {
        open({product(url(0)), product(url(1), u"A teapot of blue and white china"_s, url(9)), product(url(2))});
        m_window->tap(m_screen->nextButton());
        QTRY_COMPARE(pageInSight(), 1);
        m_window->window()->resize(844, 390);
        QTRY_COMPARE(imageView(1)->frame().size(), QSizeF(834, 346));
        QTRY_COMPARE(pageInSight(), 1);
        QTRY_VERIFY(imageView(1)->isShowingImage());
        const QRectF buy = buyButton(1)->frame();
        QCOMPARE(buy.center().x(), 834 / 2.0);
        QCOMPARE(buy.bottom(), 346 - 100 - 10.0);
        m_window->fling({700, 200}, {100, 200});
        QTRY_COMPARE(pageInSight(), 2);
    }

    void closesAtAnyStage_data()
    {
        addColumns<RawServer::Stage, QString>("stage", "moving");
        QTest::newRow("no answer") << RawServer::Stage::Nothing << QString();
        QTest::newRow("head") << RawServer::Stage::Head << QString();
        QTest::newRow("half images") << RawServer::Stage::HalfBody << QString();
        QTest::newRow("a page turns") << RawServer::Stage::Everything << u"page"_s;
        QTest::newRow("a picture grows") << RawServer::Stage::Everything << u"zoom"_s;
    }
    void closesAtAnyStage()
    {
        QFETCH(RawServer::Stage, stage);
        QFETCH(QString, moving);
        m_server->setHandler([stage](const RawServer::Request &request) {
            RawServer::Answer answer = picture(request);
            answer.stage = stage;
            return answer;
        });
        open({}, pictures(20), {}, !moving.isEmpty());
        QTRY_VERIFY(m_server->requestCount() > 0);
        if (moving == u"page"_s) {
            m_window->tap(m_screen->nextButton());
            QTRY_COMPARE(pageInSight(), -1);
        } else if (moving == u"zoom"_s) {
            QTRY_VERIFY(imageView(0)->isShowingImage());
            QTest::keyClick(m_window->window(), Qt::Key_Plus);
        }
        m_screen->navBarBackButtonAction();
        QTRY_VERIFY(!m_screen);
        const int asked = m_server->requestCount();
        m_server->setHandler(picture);
        m_server->resume();
        QVERIFY(settle(*m_server));
        QCOMPARE(m_server->requestCount(), asked + 2);
    }

    void staysLightWithCountlessImages()
    {
        open({}, QVariantList(100'000, url(1)), {}, false);
        QCOMPARE(m_screen->pageControl()->numberOfPages(), 1000);
        QVERIFY(m_screen->view()->findChildren<QQuickItem *>().size() < 300);
        QTRY_VERIFY(m_screen->galleryImageDictsArray().size() > 20);
        for (int page = 0; page < 8; ++page)
            m_window->tap(m_screen->nextButton());
        QTRY_COMPARE(pageInSight(), 8);
        QTRY_VERIFY(imageView(8)->isShowingImage());
        const QList<ImageView *> imageViews = m_screen->view()->findChildren<ImageView *>();
        const auto decoded = std::count_if(imageViews.begin(), imageViews.end(),
                                           [](const ImageView *imageView) { return imageView->isShowingImage(); });
        QVERIFY2(decoded <= 4, qPrintable(QString::number(decoded)));
    }

    void opensOnAnyPageWhateverStalls()
    {
        RawServer quick;
        quick.setHandler(picture);
        m_server->setAnswer(RawServer::Answer::stall(RawServer::Stage::HalfBody));
        QVariantList images = pictures(20);
        for (const int page : {0, 1, 9, 10})
            images[page] = quick.url(u"/%1"_s.arg(page));
        open({}, images, {}, false);
        QTRY_VERIFY(imageView(0)->isShowingImage() && imageView(1)->isShowingImage());
        // The buttons reckon with the images that are there.
        m_window->tap(m_screen->nextButton());
        QTRY_COMPARE(pageInSight(), 1);
        QVERIFY(m_screen->prevButton()->isVisible() && !m_screen->nextButton()->isVisible());
        // Twice, as anew.
        for (int round = 0; round < 2; ++round)
            m_screen->loadGalleryViewWithCurrentIndex(9);
        QTRY_COMPARE(pageInSight(), 9);
        QTRY_VERIFY(imageView(9)->isShowingImage() && imageView(10)->isShowingImage());
        QVERIFY(!imageView(8)->isShowingImage());
        QCOMPARE(m_screen->galleryImageDictsArray().size(), 2);
        QVERIFY(m_server->requestCount() <= 15);
        QCOMPARE(m_screen->pageControl()->currentPage(), 9);
        QVERIFY(m_screen->prevButton()->isVisible() && m_screen->nextButton()->isVisible());
    }

    void letsGoOfWhatIsTooMuchToHold()
    {
        constexpr qint64 mebibyte = 1024 * 1024;
        m_server->setHandler([](const RawServer::Request &request) {
            RawServer::Answer answer = picture(request);
            const QImage image = QImage::fromData(answer.body);
            if (!image.isNull()) {
                answer.body = TestImages::jpeg(image);
                answer.body.insert(answer.body.size() - 2, QByteArray(15 * mebibyte, '\0'));
            }
            return answer;
        });
        const auto held = [this] {
            qint64 bytes = 0;
            for (const QVariantMap &entry : m_screen->galleryImageDictsArray())
                bytes += entry.value(u"image"_s).value<Platform::Image>().byteCount();
            return bytes;
        };
        open({}, pictures(14), {}, false);
        QTRY_VERIFY(held() >= 64 * mebibyte);
        for (int page = 1; page < 14; ++page) {
            m_screen->imagesScrollView()->setContentOffset({page * 390.0, 0}, false);
            QTRY_VERIFY(pageInSight() == page && imageView(page)->isShowingImage());
            QVERIFY(held() <= 128 * mebibyte);
        }
        QVERIFY(isLoaded());
        QVERIFY(imageView(0)->image().isNull());
        m_screen->imagesScrollView()->setContentOffset({0, 0}, false);
        QTRY_VERIFY(pageInSight() == 0 && imageView(0)->isShowingImage());
        QVERIFY(isLoaded());
    }

private:
    QString url(int page) const { return m_server->url(u"/%1"_s.arg(page)); }

    QVariantList pictures(int count) const
    {
        QVariantList list;
        for (int page = 0; page < count; ++page)
            list.append(url(page));
        return list;
    }

    // Opens the gallery and waits for its pictures, unless the server gives none.
    void open(const QVariantList &catalogue, const QVariantList &gallery = {}, const QString &theme = {},
              bool isServed = true)
    {
        auto match = std::make_shared<BrevantoMatch>();
        match->setAdCatalogue(catalogue);
        match->setImageGallery(gallery);
        match->setAdthemeColorString(theme);
        m_count = catalogue.isEmpty() ? gallery.size() : catalogue.size();
        openWindow();
        auto screen = makeScreen<BrevantoPhotoGalleryVC>();
        screen->setMatchObject(match);
        m_screen = screen.get();
        auto stack = std::make_unique<Platform::NavigationController>(std::move(screen));
        stack->modalTransitionStyle = Platform::ModalTransitionStyle::CrossDissolve;
        m_window->root()->present(std::move(stack), false);
        m_window->grab();
        if (isServed && !QTest::qWaitFor([this] { return isLoaded(); }))
            qCritical("The pictures did not come");
    }

    bool isLoaded() const { return m_screen->galleryImageDictsArray().size() == m_count; }
    ImageView *imageView(int page) const
    {
        return qobject_cast<ImageView *>(
            m_screen->imagesScrollView()->viewWithTag(BrevantoPhotoGalleryVC::firstImageViewTag + page));
    }
    CatalogueButton *buyButton(int page) const { return imageView(page)->findChild<CatalogueButton *>(); }
    // The page that fills the screen, at rest; -1 in between.
    int pageInSight() const
    {
        if (m_count == 0)
            return -1;
        const int page = m_screen->pageControl()->currentPage();
        const QRectF place = imageView(page)->mapRectToItem(m_screen->view(), imageView(page)->boundingRect());
        return qAbs(place.left() - 5) < 0.1 && imageView(page)->isVisible() ? page : -1;
    }
    qreal zoom() const { return imageView(m_screen->pageControl()->currentPage())->scale(); }

    QPointer<BrevantoPhotoGalleryVC> m_screen;
    qsizetype m_count = 0;
};

QTEST_MAIN(tst_BrevantoPhotoGalleryVC)
#include "tst_BrevantoPhotoGalleryVC.moc"
