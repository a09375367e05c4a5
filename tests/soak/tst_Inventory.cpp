#include "Inventory.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_Inventory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsWhatHasGrown_data();
    void tellsWhatHasGrown();
};

void tst_Inventory::tellsWhatHasGrown_data()
{
    QTest::addColumn<Inventory>("last");
    QTest::addColumn<QStringList>("growth");
    QTest::addColumn<QStringList>("leftovers");

    const auto row = [](const char *name, const Inventory &last, const QStringList &caches, const QStringList &left) {
        QTest::newRow(name) << last << caches + left << left;
    };
    const QStringList none;
    row("a fiftieth more memory", {.resident = 102'000, .allocated = 51'000}, none, none);
    row("a byte more in RAM", {.resident = 102'001}, {u"memory, 100000 at first, 102001 at last"_s}, none);
    row("a byte more handed out", {.allocated = 51'001}, {u"allocated memory, 50000 at first, 51001 at last"_s}, none);
    row("less than at first", {.resident = 1, .allocated = 1, .screens = 0, .objects = 1, .threads = 1}, none, none);
    row("one more of each", {.screens = 2, .items = 5, .threads = 15, .sockets = 9, .files = 27}, none,
        {u"screens, 1 at first, 2 at last"_s, u"items, 4 at first, 5 at last"_s, u"threads, 14 at first, 15 at last"_s,
         u"sockets, 8 at first, 9 at last"_s, u"files, 26 at first, 27 at last"_s});
    row("other objects, not more", {.objects = 240, .classes = {{"Timer", 4}}}, none, none);
    row("more objects, of two classes", {.objects = 243, .classes = {{"Reply", 1}, {"Timer", 5}, {"View", 7}}},
        {u"Reply, 0 at first, 1 at last"_s, u"Timer, 3 at first, 5 at last"_s, u"objects, 240 at first, 243 at last"_s},
        none);
    row("an object of another thread", {.objects = 241}, {u"objects, 240 at first, 241 at last"_s}, none);
}

void tst_Inventory::tellsWhatHasGrown()
{
    QFETCH(Inventory, last);
    const Inventory first{.resident = 100'000,
                          .allocated = 50'000,
                          .screens = 1,
                          .items = 4,
                          .objects = 240,
                          .classes = {{"Timer", 3}, {"View", 7}},
                          .threads = 14,
                          .sockets = 8,
                          .files = 26};
    QTEST(last.growth(first), "growth");
    QTEST(last.leftovers(first), "leftovers");
}

QTEST_GUILESS_MAIN(tst_Inventory)
#include "tst_Inventory.moc"
