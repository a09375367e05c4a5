#include "ScreenWindow.h"
#include "support/FakeReachability.h"
#include "support/RawServer.h"
#include "support/TestImages.h"

#include "Brevanto/BrevantoBundle.h"
#include "Brevanto/BrevantoConstants.h"
#include "Brevanto/BrevantoPhotoGalleryVC.h"
#include "Brevanto/CatalogueButton.h"
#include "Brevanto/Model/BrevantoCaptionedImage.h"
#include "Brevanto/Model/BrevantoCatalogueImage.h"
#include "Brevanto/Model/BrevantoFields.h"
#include "Brevanto/Utils/BrevantoUtils.h"
#include "Brevanto/Utils/CustomLabel.h"
#include "Platform/Interface/NavigationController.h"
#include "Platform/Interface/Window.h"

#include <QTest>

#include <algorithm>

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

class tst_BrevantoPhotoGalleryVC : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void showsWhatTheMatchOffers_data();
    void showsWhatTheMatchOffers();
    void pagesBySwipesArrowsAndKeys();
    void zoomsByPinchAndDoubleTap();
    void buyButtonTakesTheThemesColor_data();
    void buyButtonTakesTheThemesColor();
    void buyOpensTheWebViewer();
    void staysOnItsPageWhenTheWindowTurns();
    void survivesClosingWhileImagesAreOnTheirWay();
    void staysLightWithCountlessImages();
    void opensOnAnyPageWhateverStalls();
    void letsGoOfWhatIsTooMuchToHold();

private:
    QString url(int page) const { return m_server->url(QStringLiteral("/%1").arg(page)); }
    QVariantList pictures(int count) const;
    BrevantoPhotoGalleryVC *open(const QVariantList &catalogue, const QVariantList &gallery = {},
                                 const QString &theme = {});
    bool isLoaded() const { return m_screen->galleryImageDictsArray().size() == m_count; }
    ImageView *imageView(int page) const
    {
        return qobject_cast<ImageView *>(
            m_screen->imagesScrollView()->viewWithTag(BrevantoPhotoGalleryVC::firstImageViewTag + page));
    }
    CatalogueButton *buyButton(int page) const { return imageView(page)->findChild<CatalogueButton *>(); }
    // The page that fills the screen, at rest; -1 in between.
    int pageInSight() const;
    qreal zoom() const { return imageView(m_screen->pageControl()->currentPage())->scale(); }
    void pinch(qreal from, qreal to);

    std::unique_ptr<FakeReachability> m_network;
    std::unique_ptr<RawServer> m_server;
    std::unique_ptr<ScreenWindow> m_window;
    QPointer<BrevantoPhotoGalleryVC> m_screen;
    qsizetype m_count = 0;
};

void tst_BrevantoPhotoGalleryVC::initTestCase()
{
    m_network = std::make_unique<FakeReachability>();
    BrevantoUtils::customizeNavBarThroughOutApp();
}

void tst_BrevantoPhotoGalleryVC::init()
{
    m_server = std::make_unique<RawServer>();
    m_server->setHandler(picture);
}

void tst_BrevantoPhotoGalleryVC::cleanup()
{
    m_window.reset();
    m_server.reset();
}

QVariantList tst_BrevantoPhotoGalleryVC::pictures(int count) const
{
    QVariantList list;
    for (int page = 0; page < count; ++page)
        list.append(url(page));
    return list;
}

BrevantoPhotoGalleryVC *tst_BrevantoPhotoGalleryVC::open(const QVariantList &catalogue, const QVariantList &gallery,
                                                         const QString &theme)
{
    auto match = std::make_shared<BrevantoMatch>();
    match->setAdCatalogue(catalogue);
    match->setImageGallery(gallery);
    match->setAdthemeColorString(theme);
    m_count = catalogue.isEmpty() ? gallery.size() : catalogue.size();
    const QSize size(390, 844);
    kScreenWidth = size.width();
    kScreenHeight = size.height();
    m_window = std::make_unique<ScreenWindow>(size);
    auto screen = brevantoStoryboard().instantiate<BrevantoPhotoGalleryVC>(QStringLiteral("BrevantoPhotoGalleryVC"));
    screen->setMatchObject(match);
    m_screen = screen.get();
    auto stack = std::make_unique<Platform::NavigationController>(std::move(screen));
    stack->modalTransitionStyle = Platform::ModalTransitionStyle::CrossDissolve;
    Platform::Window::of(m_window->window())->rootViewController()->present(std::move(stack), false);
    m_window->grab();
    return m_screen;
}

int tst_BrevantoPhotoGalleryVC::pageInSight() const
{
    if (m_count == 0)
        return -1;
    const int page = m_screen->pageControl()->currentPage();
    const QRectF place = imageView(page)->mapRectToItem(m_screen->view(), imageView(page)->boundingRect());
    return qAbs(place.left() - 5) < 0.1 && imageView(page)->isVisible() ? page : -1;
}

void tst_BrevantoPhotoGalleryVC::pinch(qreal from, qreal to)
{
    const std::unique_ptr<QPointingDevice> hand(QTest::createTouchDevice());
    const auto finger = [](int side, qreal distance) { return QPoint(195 + qRound(side * distance), 400); };
    QTest::touchEvent(m_window->window(), hand.get()).press(0, finger(-1, from)).press(1, finger(1, from));
    for (int step = 1; step <= 10; ++step) {
        const qreal distance = from + (to - from) * step / 10;
        QTest::touchEvent(m_window->window(), hand.get()).move(0, finger(-1, distance)).move(1, finger(1, distance));
        QTest::qWait(8); // moves in one frame are taken for one
    }
    QTest::touchEvent(m_window->window(), hand.get()).release(0, finger(-1, to)).release(1, finger(1, to));
}

void tst_BrevantoPhotoGalleryVC::showsWhatTheMatchOffers_data()
{
    // Of the first page; paths without a server stand for this test's server.
    QTest::addColumn<QVariantList>("catalogue");
    QTest::addColumn<QVariantList>("gallery");
    QTest::addColumn<int>("pages");
    QTest::addColumn<QString>("caption"); // null: no strip
    QTest::addColumn<bool>("canBeBought");
    QTest::addColumn<bool>("isPlaceholder");

    const QString link = QStringLiteral("http://127.0.0.1:9/shop");
    const QString none;
    const QVariantList five(5, QStringLiteral("/2"));
    QTest::newRow("the catalogue hides the gallery")
        << QVariantList(3, product(QStringLiteral("/1"), QStringLiteral("Teapot"), link)) << five << 3
        << QStringLiteral("Teapot") << true << false;
    QTest::newRow("gallery of plain addresses") << QVariantList() << five << 5 << none << false << false;
    QTest::newRow("single") << QVariantList() << QVariantList{QStringLiteral("/1")} << 1 << none << false << false;
    QTest::newRow("no images") << QVariantList() << QVariantList() << 0 << none << false << false;
    QTest::newRow("captioned image") << QVariantList()
                                     << QVariantList{captioned(QStringLiteral("/1"),
                                                               QStringLiteral("  Two<BR/><br>lines "))}
                                     << 1 << QStringLiteral("Two\nlines") << false << false;
    QTest::newRow("markup and emoji are text")
        << QVariantList{product(QStringLiteral("/1"), QStringLiteral("<b>Blue</b> & <i>white</i> 🫖"))}
        << QVariantList() << 1 << QStringLiteral("<b>Blue</b> & <i>white</i> 🫖") << false << false;
    QTest::newRow("endless caption") << QVariantList{product(QStringLiteral("/1"), QString(2000, u'W'), link)}
                                     << QVariantList() << 1 << QString(2000, u'W') << true << false;
    QTest::newRow("blank caption, no link") << QVariantList{product(QStringLiteral("/1"), QStringLiteral(" \n\t "))}
                                            << QVariantList() << 1 << none << false << false;
    QTest::newRow("missing image") << QVariantList{product(QStringLiteral("/missing"), QStringLiteral("Teapot"), link)}
                                   << QVariantList() << 1 << none << false << true;
    QTest::newRow("image that does not decode")
        << QVariantList{product(QStringLiteral("/broken"), QStringLiteral("Teapot"), link)} << QVariantList() << 1
        << none << false << true;
    QTest::newRow("no address") << QVariantList{product({}, QStringLiteral("Teapot"), link),
                                                product(QStringLiteral("/1"))}
                                << QVariantList() << 2 << none << false << true;
}

void tst_BrevantoPhotoGalleryVC::showsWhatTheMatchOffers()
{
    QFETCH(QVariantList, catalogue);
    QFETCH(QVariantList, gallery);
    QFETCH(int, pages);
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
    QCOMPARE(m_count, qsizetype(pages));
    QTRY_VERIFY(isLoaded());
    QCOMPARE(m_screen->pageControl()->isVisible(), pages > 1);
    QCOMPARE(m_screen->nextButton()->isVisible(), pages > 1);
    QVERIFY(!m_screen->prevButton()->isVisible());
    m_window->fling({340, 300}, {40, 300});
    if (pages < 2) {
        QCOMPARE(m_screen->imagesScrollView()->contentOffset(), QPointF(0, 0));
        if (pages == 0)
            return;
    } else {
        QTRY_COMPARE(pageInSight(), 1);
        m_window->tap(m_screen->prevButton());
        QTRY_COMPARE(pageInSight(), 0);
    }

    ImageView *image = imageView(0);
    QTRY_VERIFY(image->isShowingImage());
    QCOMPARE(image->image() == brevantoBundle().imageNamed(QStringLiteral("brevanto_no_image")), isPlaceholder);
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
    m_window->grab(QStringLiteral("gallery-%1").arg(QLatin1StringView(QTest::currentDataTag())).replace(u' ', u'-'));
}

void tst_BrevantoPhotoGalleryVC::pagesBySwipesArrowsAndKeys()
{
    open({}, pictures(4));
    QTRY_VERIFY(isLoaded());
    const auto isAt = [this](int page) {
        return pageInSight() == page && m_screen->pageControl()->currentPage() == page
            && m_screen->prevButton()->isVisible() == (page > 0) && m_screen->nextButton()->isVisible() == (page < 3);
    };
    m_window->fling({340, 300}, {40, 300});
    QTRY_VERIFY(isAt(1));
    m_window->grab(QStringLiteral("gallery-middle"));
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

void tst_BrevantoPhotoGalleryVC::zoomsByPinchAndDoubleTap()
{
    open({}, pictures(3));
    QTRY_VERIFY(isLoaded() && imageView(0)->isShowingImage());
    m_window->tap(QPointF(195, 300));
    m_window->tap(QPointF(195, 300));
    QTRY_COMPARE(zoom(), 2.0);
    m_window->grab(QStringLiteral("gallery-zoomed"));
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

    pinch(40, 60);
    QTRY_VERIFY(zoom() > 1.1 && zoom() < 2);
    pinch(40, 190);
    QTRY_COMPARE(zoom(), 2.0);
    pinch(150, 20);
    QTRY_COMPARE(zoom(), 1.0);
    m_window->fling({340, 300}, {40, 300});
    QTRY_COMPARE(pageInSight(), 2);
}

void tst_BrevantoPhotoGalleryVC::buyButtonTakesTheThemesColor_data()
{
    QTest::addColumn<QString>("theme");
    QTest::addColumn<QColor>("color");

    const QColor standard(0, 114, 187);
    QTest::newRow("none") << QString() << standard;
    QTest::newRow("digits") << QStringLiteral("FF0000") << QColor(255, 0, 0);
    QTest::newRow("prefix") << QStringLiteral("0x00aaff") << QColor(0, 0xaa, 255);
    QTest::newRow("hash") << QStringLiteral("#FF0000") << QColor(255, 0, 0);
    QTest::newRow("prefix and hash") << QStringLiteral("0x#FF0000") << QColor(255, 0, 0);
    QTest::newRow("no digits") << QStringLiteral("0xzz") << QColor(Qt::black);
    QTest::newRow("too large") << QString(5000, u'1') << QColor(Qt::white);
}

void tst_BrevantoPhotoGalleryVC::buyButtonTakesTheThemesColor()
{
    QFETCH(QString, theme);
    QFETCH(QColor, color);
    open({product(url(0), {}, QStringLiteral("http://127.0.0.1:9/"))}, {}, theme);
    QTRY_VERIFY(isLoaded());
    QCOMPARE(buyButton(0)->backgroundColor(), color);
    const QPoint inside = buyButton(0)->mapToScene({8, 22}).toPoint();
    QTRY_COMPARE(m_window->grab().pixelColor(inside), color);
}

void tst_BrevantoPhotoGalleryVC::buyOpensTheWebViewer()
{
    open({product(url(0), {}, m_server->url(QStringLiteral("/shop")))});
    QTRY_VERIFY(isLoaded());
    m_window->tap(buyButton(0));
    auto *stack = qobject_cast<Platform::NavigationController *>(m_screen->presentedViewController());
    QVERIFY(stack);
    QVERIFY(stack->topViewController()->inherits("BrevantoWebVC"));
}

void tst_BrevantoPhotoGalleryVC::staysOnItsPageWhenTheWindowTurns()
{
    open({product(url(0)), product(url(1), QStringLiteral("A teapot of blue and white china"), url(9)),
          product(url(2))});
    QTRY_VERIFY(isLoaded());
    m_window->tap(m_screen->nextButton());
    QTRY_COMPARE(pageInSight(), 1);
    m_window->window()->resize(844, 390);
    QTRY_COMPARE(imageView(1)->frame().size(), QSizeF(834, 346));
    QTRY_COMPARE(pageInSight(), 1);
    QTRY_VERIFY(imageView(1)->isShowingImage());
    const QRectF buy = buyButton(1)->frame();
    QCOMPARE(buy.center().x(), 834 / 2.0);
    QCOMPARE(buy.bottom(), 346 - 100 - 10.0);
    m_window->grab(QStringLiteral("gallery-landscape"));
    m_window->fling({700, 200}, {100, 200});
    QTRY_COMPARE(pageInSight(), 2);
}

void tst_BrevantoPhotoGalleryVC::survivesClosingWhileImagesAreOnTheirWay()
{
    m_server->setAnswer(RawServer::Answer::stall());
    open({}, pictures(20));
    QTRY_VERIFY(m_server->requestCount() > 0);
    m_window->grab(QStringLiteral("gallery-loading"));
    m_screen->navBarBackButtonAction();
    QTRY_VERIFY(!m_screen);
    const int asked = m_server->requestCount();
    m_server->setHandler(picture);
    m_server->resume();
    QTest::qWait(50);
    QCOMPARE(m_server->requestCount(), asked);
}

void tst_BrevantoPhotoGalleryVC::staysLightWithCountlessImages()
{
    open({}, QVariantList(100'000, url(1)));
    QCOMPARE(m_screen->pageControl()->numberOfPages(), 1000);
    QVERIFY(m_screen->view()->findChildren<QQuickItem *>().size() < 300);
    QTRY_VERIFY(m_screen->galleryImageDictsArray().size() > 20);
    for (int page = 0; page < 8; ++page)
        m_window->tap(m_screen->nextButton());
    QTRY_COMPARE(pageInSight(), 8);
    QTRY_VERIFY(imageView(8)->isShowingImage());
    m_window->grab(QStringLiteral("gallery-countless"));
    const QList<ImageView *> imageViews = m_screen->view()->findChildren<ImageView *>();
    const auto decoded = std::count_if(imageViews.begin(), imageViews.end(),
                                       [](const ImageView *imageView) { return imageView->isShowingImage(); });
    QVERIFY2(decoded <= 4, qPrintable(QString::number(decoded)));
}

void tst_BrevantoPhotoGalleryVC::opensOnAnyPageWhateverStalls()
{
    RawServer quick;
    quick.setHandler(picture);
    m_server->setAnswer(RawServer::Answer::stall(RawServer::Stage::HalfBody));
    QVariantList images = pictures(20);
    for (const int page : {0, 1, 9, 10})
        images[page] = quick.url(QStringLiteral("/%1").arg(page));
    open({}, images);
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

void tst_BrevantoPhotoGalleryVC::letsGoOfWhatIsTooMuchToHold()
{
    constexpr qint64 mebibyte = 1024 * 1024;
    m_server->setHandler([](const RawServer::Request &request) {
        RawServer::Answer answer = picture(request);
        answer.body = answer.body.leftJustified(15 * mebibyte, '\0');
        return answer;
    });
    const auto held = [this] {
        qint64 bytes = 0;
        for (const QVariantMap &entry : m_screen->galleryImageDictsArray())
            bytes += entry.value(QStringLiteral("image")).value<Platform::Image>().byteCount();
        return bytes;
    };
    open({}, pictures(14));
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

QTEST_MAIN(tst_BrevantoPhotoGalleryVC)
#include "tst_BrevantoPhotoGalleryVC.moc"
