#include "Brevanto/BrevantoBundle.h"
#include "Brevanto/Utils/BrevantoUtils.h"
#include "Brevanto/Utils/CustomLabel.h"
#include "Platform/Foundation/UserDefaults.h"
#include "Platform/Interface/NavigationController.h"

#include <QQuickWindow>
#include <QSettings>
#include <QtTest>

#include <algorithm>

namespace
{

// A screen with the two actions of a navigation bar.
class Screen : public Platform::ViewController
{
    Q_OBJECT

public:
    Q_INVOKABLE void navBarBackButtonAction() { actions.append(QStringLiteral("back")); }
    Q_INVOKABLE void navBarInfoButtonAction() { actions.append(QStringLiteral("info")); }

    QStringList actions;
};

} // namespace

class TestBrevantoUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void whiteSpaces_data();
    void whiteSpaces();
    void alerts();
    void icons_data();
    void icons();
    void spinner();
    void appearance();
    void barButtons_data();
    void barButtons();
    void customLabelThrowsShadow();
    void assets();
    void loadedOnce();
};

void TestBrevantoUtils::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication::setOrganizationName(QStringLiteral("BrevantoTests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_BrevantoUtils"));
    QSettings().clear();
}

void TestBrevantoUtils::whiteSpaces_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("cleaned");
    QTest::newRow("nothing to do") << "Red shoes, size 40"
                                   << "Red shoes, size 40";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("null") << QString() << QString();
    QTest::newRow("blank") << " \n\t "
                           << "";
    QTest::newRow("three breaks") << "a<BR/><BR/><BR/>b"
                                  << "a<br>b";
    QTest::newRow("all spellings") << "a<br>b<BR>c<br/>d<BR/>e\nf"
                                   << "a<br>b<br>c<br>d<br>e<br>f";
    QTest::newRow("mixed case is no break") << "a<Br>b"
                                            << "a<Br>b";
    QTest::newRow("breaks at the ends") << "<br>a<br>"
                                        << "a";
    QTest::newRow("many spaces") << "a       b"
                                 << "a b";
    QTest::newRow("space around a break") << "a  <br>  b"
                                          << "a <br> b";
    QTest::newRow("break, space, break") << "a<br> <br>b"
                                         << "a<br> <br>b";
    QTest::newRow("tab between spaces") << "  x \t y  "
                                        << "x   y";
    QTest::newRow("tabs") << "x\t\ty"
                          << "x  y";
    QTest::newRow("many newlines") << "a\n\n\n\n\nb"
                                   << "a<br>b";
}

void TestBrevantoUtils::whiteSpaces()
{
    QFETCH(QString, text);
    const QString cleaned = BrevantoUtils::stringByRemovingExtraWhiteSpaces(text);
    QTEST(cleaned, "cleaned");
    QCOMPARE(cleaned.isNull(), text.isNull());
}

void TestBrevantoUtils::alerts()
{
    const auto alert = BrevantoUtils::getAlertController(QStringLiteral("Title"), QStringLiteral("Message"));
    QCOMPARE(alert->title(), QStringLiteral("Title"));
    QCOMPARE(alert->message(), QStringLiteral("Message"));
    QCOMPARE(alert->actions().size(), std::size_t(1));
    QCOMPARE(alert->actions().front().title, QStringLiteral("OK"));
    QCOMPARE(alert->actions().front().style, Platform::AlertActionStyle::Default);

    const auto noNetwork = BrevantoUtils::getNoNetworkAlert();
    QCOMPARE(noNetwork->title(), QStringLiteral("No Internet Connection"));
    QCOMPARE(noNetwork->message(), QStringLiteral("Please check your network settings"));

    const auto wentWrong = BrevantoUtils::getSomethingWentWrongAlert();
    QCOMPARE(wentWrong->title(), QStringLiteral("Brevanto"));
    QCOMPARE(wentWrong->message(), QStringLiteral("Something went wrong!!"));
}

void TestBrevantoUtils::icons_data()
{
    // Points from the bitmap's top left.
    QTest::addColumn<Platform::Image>("icon");
    QTest::addColumn<QList<QPoint>>("painted");
    QTest::addColumn<QList<QPoint>>("empty");
    QTest::addColumn<QColor>("color");
    QTest::newRow("close") << BrevantoUtils::closeCGImageRef()
                           << QList<QPoint>{{16, 14}, {9, 8}, {22, 8}, {9, 19}, {22, 19}}
                           << QList<QPoint>{{16, 7}, {16, 22}, {4, 14}, {16, 3}} << QColor(Qt::white);
    QTest::newRow("back") << BrevantoUtils::backArrowCGImageRef() << QList<QPoint>{{10, 13}, {22, 7}, {22, 20}}
                          << QList<QPoint>{{10, 9}, {10, 18}, {25, 13}, {4, 13}, {23, 3}} << QColor(Qt::black);
    QTest::newRow("forward") << BrevantoUtils::forwardArrowCGImageRef() << QList<QPoint>{{13, 13}, {1, 7}, {1, 20}}
                             << QList<QPoint>{{13, 9}, {13, 18}, {20, 13}, {1, 3}} << QColor(Qt::black);
}

void TestBrevantoUtils::icons()
{
    QFETCH(Platform::Image, icon);
    QFETCH(QList<QPoint>, painted);
    QFETCH(QList<QPoint>, empty);
    QFETCH(QColor, color);
    const QImage bitmap = icon.bitmap();
    QCOMPARE(bitmap.size(), QSize(27, 27));
    QCOMPARE(bitmap.format(), QImage::Format_RGBA8888_Premultiplied);
    for (const QPoint &point : painted)
        QVERIFY2(bitmap.pixelColor(point) == color, qPrintable(QStringLiteral("%1,%2").arg(point.x()).arg(point.y())));
    for (const QPoint &point : empty)
        QVERIFY2(bitmap.pixelColor(point).alpha() == 0,
                 qPrintable(QStringLiteral("%1,%2").arg(point.x()).arg(point.y())));
}

void TestBrevantoUtils::spinner()
{
    Platform::View view(QRectF(10, 20, 200, 100));
    BrevantoUtils::addSpinnerToView(&view, Platform::ActivityIndicatorStyle::White);
    auto *spinner = qobject_cast<Platform::ActivityIndicator *>(view.viewWithTag(10203040));
    QVERIFY(spinner);
    QVERIFY(!spinner->frame().isEmpty());
    QCOMPARE(spinner->center(), QPointF(100, 50));
    QCOMPARE(spinner->isAnimating(), true);
    QCOMPARE(spinner->hidesWhenStopped(), true);

    const auto subviews = view.childItems();
    BrevantoUtils::addSpinnerToView(&view, Platform::ActivityIndicatorStyle::Gray);
    QCOMPARE(view.childItems(), subviews);
    for (int i = 0; i < 2; ++i)
        BrevantoUtils::removeSpinnerFromView(&view);
    QVERIFY(!view.viewWithTag(10203040));
}

void TestBrevantoUtils::appearance()
{
    BrevantoUtils::customizeNavBarThroughOutApp();
    const auto &bar = Platform::NavigationBarAppearance::appearance();
    QCOMPARE(bar.style, Platform::NavigationBarAppearance::Style::Black);
    QCOMPARE(bar.translucent, false);
    QCOMPARE(bar.barTintColor, QColor(Qt::black));
    QCOMPARE(bar.tintColor, QColor(Qt::white));
    QCOMPARE(bar.titleColor, QColor(Qt::white));
    QCOMPARE(bar.titleFont.pixelSize(), 16);
    QCOMPARE(bar.titleFont.weight(), int(QFont::Medium));
}

void TestBrevantoUtils::barButtons_data()
{
    QTest::addColumn<bool>("back");
    QTest::addColumn<bool>("close");
    QTest::addColumn<bool>("info");
    QTest::addColumn<QString>("leftIcon");
    QTest::newRow("none") << false << false << false << "";
    QTest::newRow("back") << true << false << false << "ic_back";
    QTest::newRow("close") << false << true << false << "ic_close";
    QTest::newRow("back wins") << true << true << true << "ic_back";
    QTest::newRow("info") << false << false << true << "";
}

void TestBrevantoUtils::barButtons()
{
    QFETCH(bool, back);
    QFETCH(bool, close);
    QFETCH(bool, info);
    QFETCH(QString, leftIcon);
    auto owner = std::make_unique<Screen>();
    Screen &screen = *owner;
    screen.navigationItem()->setTitle(QStringLiteral("Before"));
    BrevantoUtils::customizeNavBarFor(&screen, {}, back, close, info);
    Platform::NavigationItem *item = screen.navigationItem();
    QCOMPARE(item->title(), QString());

    const auto left = item->leftBarButtonItems();
    QCOMPARE(left.size(), leftIcon.isEmpty() ? 0 : 2);
    if (!left.isEmpty()) {
        QVERIFY(left.first().isSpace);
        QCOMPARE(left.first().size.width(), -6.0);
        QCOMPARE(left.last().image, brevantoBundle().urlForImage(leftIcon));
        QCOMPARE(left.last().size, QSizeF(35, 35));
        item->activateLeft(1);
    }
    QCOMPARE(item->rightBarButtonItems().size(), info ? 1 : 0);
    if (info) {
        QCOMPARE(item->rightBarButtonItems().first().image, brevantoBundle().urlForImage(QStringLiteral("ic_why")));
        item->activateRight(0);
    }
    QStringList expected;
    if (!leftIcon.isEmpty())
        expected.append(QStringLiteral("back"));
    if (info)
        expected.append(QStringLiteral("info"));
    QCOMPARE(screen.actions, expected);

    BrevantoUtils::customizeNavBarFor(&screen, QStringLiteral("Title"), back, close, info);
    QCOMPARE(item->title(), QStringLiteral("Title"));
    QCOMPARE(screen.allowsInteractivePop, back || close);
    owner.reset();
    if (!left.isEmpty())
        left.last().action(); // the button outlives the screen
}

// White text on white shows by its shadow alone, below and to the right of the text.
void TestBrevantoUtils::customLabelThrowsShadow()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral("TypeError|ReferenceError")));
    QQuickWindow window;
    window.resize(200, 100);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const auto darkest = [&window] {
        const QImage picture = window.grabWindow().convertToFormat(QImage::Format_Grayscale8);
        int value = 255;
        for (int y = 0; y < picture.height(); ++y)
            value = std::min<int>(
                value, *std::min_element(picture.constScanLine(y), picture.constScanLine(y) + picture.width()));
        return value;
    };
    {
        CustomLabel label(QRectF(20, 20, 160, 60));
        label.setParentItem(window.contentItem());
        label.setTextColor(Qt::white);
        QCOMPARE(darkest(), 255);
        label.setText(QStringLiteral("Caption"));
        QTRY_VERIFY(darkest() < 200);
        label.setText({});
        QTRY_COMPARE(darkest(), 255);
    }
}

void TestBrevantoUtils::assets()
{
    for (const char *name : {"ic_info", "ic_video", "ic_audio", "ic_call", "ic_gallery", "ic_buy", "ic_back",
                             "ic_close", "ic_why", "ic_logo", "btn_bg", "brevanto_no_image"}) {
        const Platform::Image image = brevantoBundle().imageNamed(QLatin1StringView(name));
        QVERIFY2(!image.bitmap((image.size() * 3).toSize()).isNull(), name);
        QVERIFY2(!brevantoBundle().urlForImage(QLatin1StringView(name)).isEmpty(), name);
    }
}

void TestBrevantoUtils::loadedOnce()
{
    QCOMPARE(BrevantoUtils::isAppLoadedOnce(), false);
    BrevantoUtils::setIsAppLoadedOnce(true);
    QCOMPARE(BrevantoUtils::isAppLoadedOnce(), true);
    QCOMPARE(QSettings().value(QStringLiteral("isAppLoadedOnce")).toBool(), true);
    BrevantoUtils::setIsAppLoadedOnce(false);
    QCOMPARE(BrevantoUtils::isAppLoadedOnce(), false);
}

QTEST_MAIN(TestBrevantoUtils)

#include "tst_BrevantoUtils.moc"
