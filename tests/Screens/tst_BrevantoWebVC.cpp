#include "ScreenWindow.h"
#include "support/RawServer.h"

#include "Brevanto/BrevantoWebVC.h"
#include "Brevanto/WebAction.h"
#include "Platform/Interface/AlertController.h"
#include "Platform/Interface/Window.h"

#include <QAccessible>
#include <QDesktopServices>
#include <QDir>
#include <QGuiApplication>
#include <QTemporaryFile>
#include <QTest>
#include <QtWebView>

namespace
{

// The upper half of the page is one link, the lower half another.
QByteArray page(const QByteArray &color, const QByteArray &upper, const QByteArray &lower = "#")
{
    const auto link = [](const QByteArray &address, const QByteArray &place) {
        return "<a target=_blank style='position:fixed;left:0;width:100%;height:50%;" + place + "' href='" + address
            + "'></a>";
    };
    return "<html><head><title>Shop</title></head><body style='background:" + color + "'>" + link(upper, "top:0")
        + link(lower, "bottom:0") + "</body></html>";
}

RawServer::Answer html(const QByteArray &body, int status = 200)
{
    return {.status = status, .headers = {{"Content-Type", "text/html"}, {"Cache-Control", "no-store"}}, .body = body};
}

RawServer::Answer shop(const RawServer::Request &request)
{
    if (request.target == "/first")
        return html(page("#00ff00", "/second", "/none"));
    if (request.target == "/second")
        return html(page("#0000ff", "tel:5550100", "file:///etc/hostname"));
    if (request.target == "/asks")
        return html(page("#00ff00", "/second") + "<script>alert('You won'); confirm('Really?')</script>");
    if (request.target == "/away")
        return RawServer::Answer::redirect("tel:5550100");
    if (request.target == "/cut")
        return {.status = 200, .body = "<html>", .stage = RawServer::Stage::Head, .then = RawServer::Then::Close};
    return html(page("#ff0000", "/first"), 404);
}

bool isButton(QQuickItem *item, const QString &name)
{
    const QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(item);
    return spoken && spoken->role() == QAccessible::Button && spoken->text(QAccessible::Name) == name;
}

// Whether the item stands in a popup that has faded in.
bool isPopupOpened(const QQuickItem *item)
{
    while (item && !(item->parent() && item->parent()->property("opened").isValid()))
        item = item->parentItem();
    return item && item->parent()->property("opened").toBool();
}

// A browser and a telephone outside the application.
class Outside final : public QObject, public Platform::Application::URLOpener
{
    Q_OBJECT

public:
    Outside()
    {
        Platform::Application::setURLOpener(this);
        QDesktopServices::setUrlHandler(QStringLiteral("tel"), this, "called");
    }
    ~Outside() override
    {
        Platform::Application::setURLOpener(nullptr);
        QDesktopServices::unsetUrlHandler(QStringLiteral("tel"));
    }
    bool canOpen(const QUrl &) override { return canOpenAny; }
    void open(const QUrl &url, std::function<void(bool)> completion) override
    {
        opened.append(url);
        completion(takes);
    }

    bool canOpenAny = true;
    bool takes = true;
    QList<QUrl> opened;
    int calls = 0;

public Q_SLOTS:
    void called(const QUrl &) { ++calls; }
};

} // namespace

class tst_BrevantoWebVC : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void walksThroughPages();
    void stopsOtherSchemes_data();
    void stopsOtherSchemes();
    void recoversFromABadLoad_data();
    void recoversFromABadLoad();
    void answersThePageItself();
    void staysOnTapsWithoutAWayBack();
    void embedsYoutube_data();
    void embedsYoutube();
    void closesYoutubeWhenSeenAgain_data();
    void closesYoutubeWhenSeenAgain();
    void handsThePageToTheBrowser_data();
    void handsThePageToTheBrowser();
    void showsHtmlWithoutAddress_data();
    void showsHtmlWithoutAddress();
    void survivesClosingWhileLoading_data();
    void survivesClosingWhileLoading();

private:
    BrevantoWebVC *open(const QString &address);
    // Until the screen has slid in.
    bool waitUntilStill(Platform::ViewController *screen)
    {
        return QTest::qWaitFor([&] { return screen->view()->mapToScene({}).y() == 0 && !m_presenter->isVisible(); });
    }
    QColor pixel(qreal x, qreal y);
    void tapButton(const QString &name);
    bool isEnabled(const QString &name) { return button(name)->isEnabled(); }
    QQuickItem *button(const QString &name)
    {
        return m_window->find([&](QQuickItem *item) { return isButton(item, name); });
    }

    std::unique_ptr<RawServer> m_server;
    std::unique_ptr<ScreenWindow> m_window;
    std::unique_ptr<Outside> m_outside;
    QPointer<Platform::ViewController> m_presenter;
};

void tst_BrevantoWebVC::init()
{
    m_outside = std::make_unique<Outside>();
    m_server = std::make_unique<RawServer>();
    m_server->setHandler(shop);
    m_window = std::make_unique<ScreenWindow>();
    auto presenter = std::make_unique<Platform::ViewController>();
    m_presenter = presenter.get();
    m_window->push(std::move(presenter));
}

void tst_BrevantoWebVC::cleanup()
{
    m_window.reset();
    m_server.reset();
    m_outside.reset();
}

BrevantoWebVC *tst_BrevantoWebVC::open(const QString &address)
{
    openArticleOnWeb(m_presenter, address);
    auto *stack = qobject_cast<Platform::NavigationController *>(m_presenter->presentedViewController());
    auto *viewer = stack ? qobject_cast<BrevantoWebVC *>(stack->topViewController()) : nullptr;
    if (!viewer
        || !QTest::qWaitFor([&] { return viewer->spinnerView() && !viewer->spinnerView()->isAnimating(); }, 20000))
        qFatal("The viewer's load did not end");
    if (!waitUntilStill(viewer))
        qFatal("The viewer did not slide in");
    return viewer;
}

QColor tst_BrevantoWebVC::pixel(qreal x, qreal y)
{
    const QImage shot = m_window->grab();
    return shot.pixelColor(qRound(x * shot.width()), qRound(y * shot.height()));
}

void tst_BrevantoWebVC::tapButton(const QString &name)
{
    QVERIFY2(button(name), qPrintable(name));
    m_window->tap(button(name));
}

void tst_BrevantoWebVC::walksThroughPages()
{
    constexpr auto green = qRgb(0, 255, 0);
    constexpr auto blue = qRgb(0, 0, 255);
    constexpr auto red = qRgb(255, 0, 0);
    BrevantoWebVC *viewer = open(m_server->url(QStringLiteral("/first")));
    QTRY_COMPARE(pixel(0.5, 0.2).rgb(), green);
    QTRY_COMPARE(pixel(0.5, 0.001).rgb(), green);
    QCOMPARE(pixel(0.03, 0.98).rgb(), qRgb(0, 0, 0));
    QVERIFY(!isEnabled(QStringLiteral("Back")) && !isEnabled(QStringLiteral("Forward")));
    QVERIFY(!Platform::Application::isNetworkActivityIndicatorVisible());
    QVERIFY(Platform::Application::isStatusBarHidden());
    m_window->grab(QStringLiteral("web-page"));

    m_window->tap(QPointF(195, 150));
    QTRY_COMPARE(pixel(0.5, 0.2).rgb(), blue);
    QTRY_VERIFY(isEnabled(QStringLiteral("Back")));
    QVERIFY(!isEnabled(QStringLiteral("Forward")));

    // Neither a call nor a file.
    m_window->tap(QPointF(195, 150));
    m_window->tap(QPointF(195, 600));
    tapButton(QStringLiteral("Reload"));
    QTRY_COMPARE(m_server->requests().last().target, QByteArray("/second"));
    QTRY_COMPARE(pixel(0.5, 0.2).rgb(), blue);
    QCOMPARE(m_outside->calls, 0);
    QCOMPARE(viewer->webview()->url(), QUrl(m_server->url(QStringLiteral("/second"))));

    tapButton(QStringLiteral("Back"));
    QTRY_COMPARE(pixel(0.5, 0.2).rgb(), green);
    QTRY_VERIFY(isEnabled(QStringLiteral("Forward")) && !isEnabled(QStringLiteral("Back")));
    tapButton(QStringLiteral("Forward"));
    QTRY_COMPARE(pixel(0.5, 0.2).rgb(), blue);
    QTRY_VERIFY(isEnabled(QStringLiteral("Back")));

    // The back key goes through the pages before it leaves; a missing page is a page.
    QTest::keyClick(m_window->window(), Qt::Key_Escape);
    QTRY_COMPARE(pixel(0.5, 0.2).rgb(), green);
    QTRY_VERIFY(!isEnabled(QStringLiteral("Back")));
    m_window->tap(QPointF(195, 600));
    QTRY_COMPARE(pixel(0.5, 0.2).rgb(), red);
    QTRY_VERIFY(isEnabled(QStringLiteral("Back")));

    // The window turns: the page fills what the toolbar leaves of it.
    m_window->window()->resize(844, 390);
    QTRY_COMPARE(viewer->view()->width(), 844.0);
    QTRY_COMPARE(pixel(0.98, 0.8).rgb(), red);
    QTRY_COMPARE(pixel(0.98, 0.97).rgb(), qRgb(0, 0, 0));
    m_window->grab(QStringLiteral("web-turned"));
    QVERIFY(button(QStringLiteral("Forward"))->mapToScene({}).x() > 700);
    tapButton(QStringLiteral("Close"));
    QTRY_VERIFY(!m_presenter->presentedViewController());
    QTRY_VERIFY(m_presenter->isVisible());
}

void tst_BrevantoWebVC::stopsOtherSchemes_data()
{
    QTest::addColumn<QString>("address");
    // Would be green, were it shown.
    for (const char *address : {"file:", "file:?youtube", "javascript:document.body.style.background='#00ff00'",
                                "data:text/html,<body style='background:%2300ff00'>", "intent://scan/#Intent;end",
                                "www.example", "x\"><style>body{background:#00ff00}</style><i class=\"youtube"})
        QTest::newRow(address) << QString::fromLatin1(address);
}

void tst_BrevantoWebVC::stopsOtherSchemes()
{
    QFETCH(QString, address);
    QTemporaryFile file(QDir::tempPath() + QStringLiteral("/XXXXXX.html"));
    QVERIFY(file.open() && file.write(page("#00ff00", "#")) > 0 && file.flush());
    if (address.startsWith(QStringLiteral("file:")))
        address.insert(5, QUrl::fromLocalFile(file.fileName()).toString().mid(5));
    BrevantoWebVC *viewer = open(address);
    QVERIFY(viewer->webview()->isAvailable());
    QVERIFY(viewer->webview()->url().isEmpty());
    QCOMPARE(pixel(0.5, 0.2).rgb(), qRgb(255, 255, 255));
    QVERIFY(!isEnabled(QStringLiteral("Back")));
    tapButton(QStringLiteral("Reload"));
    QCOMPARE(m_server->requestCount(), 0);
    // Another page comes meanwhile, into a corner.
    auto *other = new Platform::WebView({0, 600, 100, 100});
    viewer->view()->addSubview(other);
    other->loadRequest(QUrl(m_server->url(QStringLiteral("/first"))));
    QTRY_COMPARE(pixel(0.1, 0.75).rgb(), qRgb(0, 255, 0));
    QCOMPARE(pixel(0.5, 0.2).rgb(), qRgb(255, 255, 255));
    QCOMPARE(m_server->requests().first().target, QByteArray("/first"));
    QTest::keyClick(m_window->window(), Qt::Key_Escape);
    QTRY_VERIFY(!m_presenter->presentedViewController());
}

void tst_BrevantoWebVC::recoversFromABadLoad_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("leads to the telephone") << QStringLiteral("/away");
    QTest::newRow("breaks off") << QStringLiteral("/cut");
}

// A load that ends badly ends, and Reload tries again.
void tst_BrevantoWebVC::recoversFromABadLoad()
{
    QFETCH(QString, path);
    open(m_server->url(path));
    QCOMPARE(m_outside->calls, 0);
    m_server->setAnswer(html(page("#00ff00", "/second")));
    tapButton(QStringLiteral("Reload"));
    QTRY_COMPARE(pixel(0.5, 0.2).rgb(), qRgb(0, 255, 0));
}

void tst_BrevantoWebVC::answersThePageItself()
{
    open(m_server->url(QStringLiteral("/asks")));
    QTRY_COMPARE(pixel(0.5, 0.2).rgb(), qRgb(0, 255, 0));
    QVERIFY(!m_presenter->presentedViewController()->presentedViewController());
}

// The way back may take a while; the user taps again.
void tst_BrevantoWebVC::staysOnTapsWithoutAWayBack()
{
    open(m_server->url(QStringLiteral("/first")));
    QTRY_COMPARE(pixel(0.5, 0.2).rgb(), qRgb(0, 255, 0));
    m_window->tap(QPointF(195, 150));
    QTRY_VERIFY(isEnabled(QStringLiteral("Back")));
    RawServer::Answer halfPage = html(page("#00ff00", "/second") + QByteArray(100000, ' '));
    halfPage.stage = RawServer::Stage::HalfBody;
    m_server->setAnswer(halfPage);
    const QPointF place = button(QStringLiteral("Back"))->mapToScene(QPointF(5, 5));
    m_window->tap(place);
    QTRY_VERIFY(!isEnabled(QStringLiteral("Back")));
    m_window->tap(place);
    QVERIFY(m_presenter->presentedViewController());
}

void tst_BrevantoWebVC::embedsYoutube_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("embedded");
    const auto row = [](const char *name, const char *path, const char *embedded) {
        QTest::newRow(name) << QString::fromLatin1(path) << QString::fromLatin1(embedded);
    };
    row("watch", "/YouTube.test/watch?v=a1&t=3", "/YouTube.test/v/a1&t=3");
    row("any case, twice", "/x?youtube=Watch?V=a&WATCH?v=b", "/x?youtube=v/a&v/b");
    row("something else", "/youtube/channel", "/youtube/channel");
    row("no address", "/youtube\"><script>document.write('x')</script><i x=\"",
        "/youtube%22%3E%3Cscript%3Edocument.write('x')%3C/script%3E%3Ci x=%22");
}

void tst_BrevantoWebVC::embedsYoutube()
{
    QFETCH(QString, path);
    QFETCH(QString, embedded);
    BrevantoWebVC *viewer = open(m_server->url(path));
    QCOMPARE(viewer->youtubeHtmlString(),
             QStringLiteral("<html><head><style type=\"text/css\">body {background-color: transparent;color: white;}"
                            "</style></head><body style=\"margin:0\"><embed id=\"yt\" src=\"%1\" "
                            "type=\"application/x-shockwave-flash\"width=\"390.000000\" height=\"844.000000\"></embed>"
                            "</body></html>")
                 .arg(m_server->url(embedded)));
    // The server's page is seen.
    QTRY_COMPARE(pixel(0.5, 0.2).rgb(), qRgb(255, 0, 0));
    QCOMPARE(m_server->requests().last().target, embedded.toUtf8().replace(' ', "%20"));
    m_window->grab(QStringLiteral("web-youtube"));
    int finished = 0;
    connect(viewer->webview(), &Platform::WebView::didFinishLoad, this, [&] { ++finished; });
    tapButton(QStringLiteral("Reload"));
    QTRY_COMPARE(finished, 1);
    for (const RawServer::Request &request : m_server->requests())
        QVERIFY(request.target != path.toUtf8() || path == embedded);
}

void tst_BrevantoWebVC::closesYoutubeWhenSeenAgain_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("closes");
    QTest::newRow("youtube") << QStringLiteral("/youtube") << true;
    QTest::newRow("other") << QStringLiteral("/first") << false;
}

void tst_BrevantoWebVC::closesYoutubeWhenSeenAgain()
{
    QFETCH(QString, path);
    QFETCH(bool, closes);
    const QPointer<BrevantoWebVC> viewer(open(m_server->url(path)));
    viewer->present(std::make_unique<Platform::ViewController>(), false);
    QCOMPARE(viewer->isShowingYoutubeVid(), closes);
    viewer->dismiss(false);
    QTRY_COMPARE(!viewer || !viewer->presentingViewController(), closes);
    if (!closes)
        QVERIFY(viewer->isVisible() && !viewer->spinnerView()->isAnimating());
}

void tst_BrevantoWebVC::handsThePageToTheBrowser_data()
{
    QTest::addColumn<QString>("choice");
    QTest::addColumn<bool>("canOpen");
    QTest::addColumn<bool>("takes");
    QTest::addColumn<QString>("logged");
    const QString bar = QString(19, u'*');
    const QString line = QStringLiteral("\n%1\n\n %2 \n\n%1\n");
    QTest::newRow("taken") << QStringLiteral("Open") << true << true << line.arg(bar, QStringLiteral("Success"));
    QTest::newRow("refused") << QStringLiteral("Open") << true << false << line.arg(bar, QStringLiteral("Fail"));
    QTest::newRow("no browser") << QStringLiteral("Open") << false << false << QString();
    QTest::newRow("cancelled") << QStringLiteral("Cancel") << true << true << QString();
}

void tst_BrevantoWebVC::handsThePageToTheBrowser()
{
    QFETCH(QString, choice);
    QFETCH(QString, logged);
    QFETCH(bool, canOpen);
    QFETCH(bool, takes);
    m_outside->canOpenAny = canOpen;
    m_outside->takes = takes;
    BrevantoWebVC *viewer = open(m_server->url(QStringLiteral("/first")));
    QTRY_COMPARE(pixel(0.5, 0.2).rgb(), qRgb(0, 255, 0));
    m_window->tap(QPointF(195, 150));
    QTRY_VERIFY(isEnabled(QStringLiteral("Back")));
    QTRY_COMPARE(pixel(0.5, 0.2).rgb(), qRgb(0, 0, 255));
    tapButton(QStringLiteral("Open in browser"));
    const auto *alert = qobject_cast<Platform::AlertController *>(viewer->presentedViewController());
    QVERIFY(alert && alert->title().isEmpty());
    QCOMPARE(alert->message(), QStringLiteral("Do you want to Open in Safari ?"));
    QTRY_VERIFY(isPopupOpened(button(choice)));
    m_window->grab(QStringLiteral("web-browser-alert"));
    if (!logged.isEmpty())
        QTest::ignoreMessage(QtInfoMsg, qPrintable(logged));
    tapButton(choice);
    QTRY_VERIFY(!viewer->presentedViewController());
    if (logged.isEmpty())
        QVERIFY(m_outside->opened.isEmpty());
    else
        QTRY_COMPARE(m_outside->opened, QList<QUrl>{QUrl(m_server->url(QStringLiteral("/second")))});
    QVERIFY(viewer->isVisible());
}

void tst_BrevantoWebVC::showsHtmlWithoutAddress_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QColor>("color");
    QTest::newRow("a page") << QStringLiteral("<body style='background:#ff00ff'></body>") << QColor(255, 0, 255);
    QTest::newRow("none") << QString() << QColor(255, 255, 255);
}

void tst_BrevantoWebVC::showsHtmlWithoutAddress()
{
    QFETCH(QString, html);
    QFETCH(QColor, color);
    auto viewer = BrevantoWebVC::initWithUrlString({});
    const QPointer<BrevantoWebVC> shown(viewer.get());
    viewer->setHtmlString(html);
    m_presenter->present(std::make_unique<Platform::NavigationController>(std::move(viewer)), false);
    QTRY_VERIFY(!shown->spinnerView()->isAnimating());
    QTRY_COMPARE(pixel(0.5, 0.2), color);
    QVERIFY(button(QStringLiteral("Reload")) && !button(QStringLiteral("Open in browser")));
    // No address, no viewer.
    m_presenter->dismiss(false);
    openArticleOnWeb(m_presenter, QString());
    const auto *alert = qobject_cast<Platform::AlertController *>(m_presenter->presentedViewController());
    QVERIFY(alert);
    QCOMPARE(alert->title() + alert->message(), QStringLiteral("Sorry!This option is not available."));
}

void tst_BrevantoWebVC::survivesClosingWhileLoading_data()
{
    QTest::addColumn<RawServer::Stage>("stage");
    QTest::newRow("no answer") << RawServer::Stage::Nothing;
    QTest::newRow("half a head") << RawServer::Stage::HalfHead;
    QTest::newRow("head") << RawServer::Stage::Head;
    QTest::newRow("half a page") << RawServer::Stage::HalfBody;
}

void tst_BrevantoWebVC::survivesClosingWhileLoading()
{
    QFETCH(RawServer::Stage, stage);
    RawServer::Answer slow = html(page("#00ff00", "/second"));
    slow.stage = stage;
    m_server->setAnswer(slow);
    openArticleOnWeb(m_presenter, m_server->url(QStringLiteral("/slow")));
    QTRY_COMPARE(m_server->requestCount(), 1);
    const auto *stack = qobject_cast<Platform::NavigationController *>(m_presenter->presentedViewController());
    QVERIFY(stack && waitUntilStill(stack->topViewController()));
    const QPointer<Platform::ViewController> viewer(stack->topViewController());
    m_window->grab(QStringLiteral("web-loading"));
    QVERIFY(Platform::Application::isNetworkActivityIndicatorVisible());
    tapButton(QStringLiteral("Close"));
    QTRY_VERIFY(!m_presenter->presentedViewController());
    QVERIFY(!Platform::Application::isNetworkActivityIndicatorVisible());
    m_server->resume();
    QTRY_VERIFY(!viewer);
    QTRY_VERIFY(m_presenter->isVisible());
}

int main(int argc, char *argv[])
{
    QtWebView::initialize();
    QGuiApplication application(argc, argv);
    tst_BrevantoWebVC test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_BrevantoWebVC.moc"
