#include "support/Table.h"

#include "Brevanto/BrevantoBundle.h"
#include "Brevanto/Utils/BrevantoUtils.h"
#include "Brevanto/Utils/CustomLabel.h"
#include "Platform/Interface/NavigationController.h"

#include <QQuickWindow>
#include <QSettings>
#include <QtTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// A screen with the two actions of a navigation bar.
class Screen : public Platform::ViewController
{
    Q_OBJECT

public:
    Q_INVOKABLE void navBarBackButtonAction() { actions.append(u"back"_s); }
    Q_INVOKABLE void navBarInfoButtonAction() { actions.append(u"info"_s); }

    QStringList actions;
};

} // namespace

class TestBrevantoUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QStandardPaths::setTestModeEnabled(true);
        QCoreApplication::setOrganizationName(u"BrevantoTests"_s);
        QCoreApplication::setApplicationName(u"tst_BrevantoUtils"_s);
        QSettings().clear();
    }

    void whiteSpaces_data()
    {
        addColumns<QString, QString>("text", "cleaned");
        const auto row = [](const char *name, const QString &text, const QString &cleaned) {
            QTest::newRow(name) << text << cleaned;
        };
        row("nothing to do", u"Red shoes, size 40"_s, u"Red shoes, size 40"_s);
        row("empty", u""_s, u""_s);
        row("null", {}, {});
        row("blank", u" \n\t "_s, u""_s);
        row("three breaks", u"a<BR/><BR/><BR/>b"_s, u"a<br>b"_s);
        row("all spellings", u"a<br>b<BR>c<br/>d<BR/>e\nf"_s, u"a<br>b<br>c<br>d<br>e<br>f"_s);
        row("mixed case is no break", u"a<Br>b"_s, u"a<Br>b"_s);
        row("breaks at the ends", u"<br>a<br>"_s, u"a"_s);
        row("many spaces", u"a       b"_s, u"a b"_s);
        row("space around a break", u"a  <br>  b"_s, u"a <br> b"_s);
        row("break, space, break", u"a<br> <br>b"_s, u"a<br> <br>b"_s);
        row("tab between spaces", u"  x \t y  "_s, u"x   y"_s);
        row("tabs", u"x\t\ty"_s, u"x  y"_s);
        row("many newlines", u"a\n\n\n\n\nb"_s, u"a<br>b"_s);
    }
    void whiteSpaces()
    {
        QFETCH(QString, text);
        const QString cleaned = BrevantoUtils::stringByRemovingExtraWhiteSpaces(text);
        QTEST(cleaned, "cleaned");
        QCOMPARE(cleaned.isNull(), text.isNull());
    }

    void alerts()
    {
        const auto text = [](const std::unique_ptr<Platform::AlertController> &alert) {
            QStringList texts{alert->title(), alert->message()};
            for (const Platform::AlertAction &action : alert->actions())
                texts += u"%1/%2"_s.arg(action.title).arg(int(action.style));
            return texts.join(u'|');
        };
        QCOMPARE(text(BrevantoUtils::getAlertController(u"Title"_s, u"Message"_s)), u"Title|Message|OK/0"_s);
        QCOMPARE(text(BrevantoUtils::getNoNetworkAlert()),
                 u"No Internet Connection|Please check your network settings|OK/0"_s);
        QCOMPARE(text(BrevantoUtils::getSomethingWentWrongAlert()), u"Brevanto|Something went wrong!!|OK/0"_s);
    }

    void icons_data()
    {
        // Points from the bitmap's top left.
        addColumns<Platform::Image, QList<QPoint>, QList<QPoint>, QColor>("icon", "painted", "empty", "color");
        using Points = QList<QPoint>;
        QTest::newRow("close") << BrevantoUtils::closeCGImageRef()
                               << Points{{16, 14}, {9, 8}, {22, 8}, {9, 19}, {22, 19}}
                               << Points{{16, 7}, {16, 22}, {4, 14}, {16, 3}} << QColor(Qt::white);
        QTest::newRow("back") << BrevantoUtils::backArrowCGImageRef() << Points{{10, 13}, {22, 7}, {22, 20}}
                              << Points{{10, 9}, {10, 18}, {25, 13}, {4, 13}, {23, 3}} << QColor(Qt::black);
        QTest::newRow("forward") << BrevantoUtils::forwardArrowCGImageRef() << Points{{13, 13}, {1, 7}, {1, 20}}
                                 << Points{{13, 9}, {13, 18}, {20, 13}, {1, 3}} << QColor(Qt::black);
    }
    void icons()
    {
        QFETCH(Platform::Image, icon);
        QFETCH(QList<QPoint>, painted);
        QFETCH(QList<QPoint>, empty);
        QFETCH(QColor, color);
        const QImage bitmap = icon.bitmap();
        QCOMPARE(bitmap.size(), QSize(27, 27));
        QCOMPARE(bitmap.format(), QImage::Format_RGBA8888_Premultiplied);
        for (const QPoint &point : painted)
            QVERIFY2(bitmap.pixelColor(point) == color, qPrintable(u"%1,%2"_s.arg(point.x()).arg(point.y())));
        for (const QPoint &point : empty)
            QVERIFY2(bitmap.pixelColor(point).alpha() == 0, qPrintable(u"%1,%2"_s.arg(point.x()).arg(point.y())));
    }

    void spinner()
    {
        Platform::View view(QRectF(10, 20, 200, 100));
        BrevantoUtils::addSpinnerToView(&view, Platform::ActivityIndicatorStyle::White);
        auto *spinner = qobject_cast<Platform::ActivityIndicator *>(view.viewWithTag(10203040));
        QVERIFY(spinner && spinner->isAnimating() && spinner->hidesWhenStopped());
        QCOMPARE(spinner->center(), QPointF(100, 50));
        const auto subviews = view.childItems();
        BrevantoUtils::addSpinnerToView(&view, Platform::ActivityIndicatorStyle::Gray);
        QCOMPARE(view.childItems(), subviews);
        for (int i = 0; i < 2; ++i)
            BrevantoUtils::removeSpinnerFromView(&view);
        QVERIFY(!view.viewWithTag(10203040));
    }

    void appearance()
    {
        BrevantoUtils::customizeNavBarThroughOutApp();
        const auto &bar = Platform::NavigationBarAppearance::appearance();
        QVERIFY(bar.style == Platform::NavigationBarAppearance::Style::Black && !bar.translucent);
        QCOMPARE((QList{bar.barTintColor, bar.tintColor, bar.titleColor}),
                 (QList<QColor>{Qt::black, Qt::white, Qt::white}));
        QCOMPARE(bar.titleFont.pixelSize(), 16);
        QCOMPARE(bar.titleFont.weight(), int(QFont::Medium));
    }

    void barButtons_data()
    {
        addColumns<bool, bool, bool>("back", "close", "info");
        QTest::addColumn<QString>("icon"); // on the left
        QTest::newRow("none") << false << false << false << QString();
        QTest::newRow("back") << true << false << false << u"ic_back"_s;
        QTest::newRow("close") << false << true << false << u"ic_close"_s;
        QTest::newRow("back wins") << true << true << true << u"ic_back"_s;
        QTest::newRow("info") << false << false << true << QString();
    }
    void barButtons()
    {
        QFETCH(bool, back);
        QFETCH(bool, close);
        QFETCH(bool, info);
        QFETCH(QString, icon);
        auto owner = std::make_unique<Screen>();
        Screen &screen = *owner;
        Platform::NavigationItem *item = screen.navigationItem();
        item->setTitle(u"Before"_s);
        for (const QString &title : {QString(), u"Title"_s}) {
            BrevantoUtils::customizeNavBarFor(&screen, title, back, close, info);
            QCOMPARE(item->title(), title);
        }
        QCOMPARE(screen.allowsInteractivePop, back || close);

        const auto left = item->leftBarButtonItems();
        QStringList expected;
        QCOMPARE(left.size(), icon.isEmpty() ? 0 : 2);
        if (!left.isEmpty()) {
            QVERIFY(left.first().isSpace);
            QCOMPARE(left.first().size.width(), -6.0);
            QCOMPARE(left.last().image, brevantoBundle().urlForImage(icon));
            QCOMPARE(left.last().size, QSizeF(35, 35));
            item->activateLeft(1);
            expected.append(u"back"_s);
        }
        QCOMPARE(item->rightBarButtonItems().size(), info ? 1 : 0);
        if (info) {
            QCOMPARE(item->rightBarButtonItems().first().image, brevantoBundle().urlForImage(u"ic_why"_s));
            item->activateRight(0);
            expected.append(u"info"_s);
        }
        QCOMPARE(screen.actions, expected);
        owner.reset();
        if (!left.isEmpty())
            left.last().action(); // the button outlives the screen
    }

    void customLabelThrowsShadow()
    {
        QTest::failOnWarning(QRegularExpression(u"TypeError|ReferenceError"_s));
        QQuickWindow window;
        window.resize(200, 100);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const auto darkest = [&window] {
            const QImage picture = window.grabWindow().convertToFormat(QImage::Format_Grayscale8);
            int value = 255;
            for (int y = 0; y < picture.height(); ++y) {
                const uchar *line = picture.constScanLine(y);
                value = std::min<int>(value, *std::min_element(line, line + picture.width()));
            }
            return value;
        };
        CustomLabel label(QRectF(20, 20, 160, 60));
        label.setParentItem(window.contentItem());
        label.setTextColor(Qt::white);
        QCOMPARE(darkest(), 255);
        label.setText(u"Caption"_s);
        QTRY_VERIFY(darkest() < 200);
        label.setText({});
        QTRY_COMPARE(darkest(), 255);
    }

    void assets()
    {
        for (const char *name : {"ic_info", "ic_video", "ic_audio", "ic_call", "ic_gallery", "ic_buy", "ic_back",
                                 "ic_close", "ic_why", "ic_logo", "btn_bg", "brevanto_no_image"}) {
            const Platform::Image image = brevantoBundle().imageNamed(QLatin1StringView(name));
            QVERIFY2(!image.bitmap((image.size() * 3).toSize()).isNull(), name);
        }
    }

    void loadedOnce()
    {
        for (const bool isLoaded : {false, true}) {
            QCOMPARE(BrevantoUtils::isAppLoadedOnce(), isLoaded);
            BrevantoUtils::setIsAppLoadedOnce(!isLoaded);
            QCOMPARE(QSettings().value(u"isAppLoadedOnce"_s).toBool(), !isLoaded);
        }
    }
};

QTEST_MAIN(TestBrevantoUtils)

#include "tst_BrevantoUtils.moc"
