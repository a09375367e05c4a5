#include "ScreenTest.h"
#include "support/Table.h"

#include "Brevanto/BrevantoDetailsPopOverVC.h"
#include "Brevanto/SlideDownVC/BrevantoHotspotInfoVC.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

// A delegate that overrides nothing, as each operation is optional.
class Listener final : public QObject, public BrevantoDetailsPopoverDelegate, public BrevantoHotspotInfoDelegate
{
};

} // namespace

class tst_OptionLists : public ScreenTest
{
    Q_OBJECT

private Q_SLOTS:
    void showsWhatItIsGiven_data()
    {
        addColumns<bool, int, std::optional<QStringList>>("isLegend", "rows", "icons");
        QTest::addColumn<QList<bool>>("drawn"); // which of the rows show an icon
        QTest::addColumn<qreal>("height");

        const std::optional<QStringList> all{{u"ic_info"_s, u"ic_buy"_s, u"ic_call"_s}};
        const std::optional<QStringList> partly{{u"ic_info"_s, u"nothing"_s}};
        QTest::newRow("popover") << false << 2 << all << QList<bool>{true, true} << 50.0;
        QTest::newRow("popover, unknown and missing icons")
            << false << 3 << partly << QList<bool>{true, false, false} << 50.0;
        QTest::newRow("popover without icons")
            << false << 1 << std::optional<QStringList>() << QList<bool>{false} << 50.0;
        QTest::newRow("legend") << true << 3 << all << QList<bool>{true, true, true} << 56.0;
    }
    void showsWhatItIsGiven()
    {
        QFETCH(bool, isLegend);
        QFETCH(int, rows);
        QFETCH(std::optional<QStringList>, icons);
        QFETCH(QList<bool>, drawn);
        QFETCH(qreal, height);
        std::unique_ptr<OptionListController> made;
        if (isLegend) {
            auto legend = makeScreen<BrevantoHotspotInfoVC>();
            legend->setHotspotInfoDelegate(&m_listener);
            made = std::move(legend);
        } else {
            auto popover = makeScreen<BrevantoDetailsPopOverVC>();
            popover->setDetailsPopoverDelegate(&m_listener);
            made = std::move(popover);
        }
        QStringList titles;
        for (int row = 0; row < rows; ++row)
            titles.append(u"Title %1"_s.arg(row));
        made->setTitlesArray(titles);
        made->setIconsArray(icons);
        const QPointer<OptionListController> screen(made.get());
        openWindow();
        m_window->push(std::make_unique<Platform::ViewController>())->present(std::move(made), false);

        const auto find = [&screen](const QString &name) { return screen->view()->findChild<QQuickItem *>(name); };
        const auto *list = find(isLegend ? u"dataTableView"_s : u"popOverTableView"_s);
        QTRY_COMPARE(list->property("contentHeight").toReal(), rows * height + 16);
        if (isLegend)
            QTRY_COMPARE(list->height(), 184.0);
        QList<QQuickItem *> cells;
        for (int row = 0; row < rows; ++row) {
            QQuickItem *cell = nullptr;
            QVERIFY(QMetaObject::invokeMethod(const_cast<QQuickItem *>(list), "itemAtIndex",
                                              Q_RETURN_ARG(QQuickItem *, cell), Q_ARG(int, row)));
            cells.append(cell);
            const auto *icon = cell->property(isLegend ? "titleIconImageView" : "iconImageView").value<QQuickItem *>();
            const auto *label = cell->property("titleLabel").value<QQuickItem *>();
            QCOMPARE(icon->isVisible() && icon->property("status").toInt() == 1, drawn.at(row));
            QCOMPARE(label->property("text").toString(), titles.at(row));
            // All titles of one list stand in line.
            QCOMPARE(label->x(), icons ? 40.0 : 0.0);
        }
        m_window->grab();
        // A popover closes by itself; the legend leaves that to its delegate.
        m_window->tap(cells.constLast());
        if (isLegend)
            QVERIFY(screen->isVisible());
        else
            QTRY_VERIFY(!screen);
    }

private:
    Listener m_listener;
};

QTEST_MAIN(tst_OptionLists)
#include "tst_OptionLists.moc"
