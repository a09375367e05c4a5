#include "Brevanto/Model/BrevantoRecentsFileManager.h"

#include <QCborArray>
#include <QCborMap>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <thread>

using namespace Qt::StringLiterals;
using Recents = BrevantoRecentsFileManager;

namespace
{

std::shared_ptr<BrevantoMatchGroup> group(const QString &address, const QString &title = u"first"_s)
{
    auto match = std::make_shared<BrevantoMatch>();
    match->setBackgroundImageUrl(address);
    match->setTitle(title);
    return BrevantoMatchGroup::initWithMatches({match}, address);
}

QString folderPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + u"/Recents"_s;
}

QString filePath()
{
    return folderPath() + u"/Recents"_s;
}

void writeFile(const QByteArray &content)
{
    QDir().mkpath(folderPath());
    QFile file(filePath());
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(filePath()));
}

QByteArray readFile()
{
    QFile file(filePath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Addresses of the stored groups with the titles of their first matches.
QStringList stored()
{
    QStringList names;
    for (const auto &recent : Recents::retrieveAllSavedGroupedMatchesInFileManager().value_or(BrevantoMatchGroupList()))
        names.append(recent->adImageUrl() + u':' + recent->listOfMatches().value(0)->title().toString());
    return names;
}

} // namespace

class TestBrevantoRecentsFileManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("XDG_DATA_HOME", m_home.path().toLocal8Bit());
        QVERIFY(folderPath().startsWith(m_home.path()));
    }

    void init() { QVERIFY(!QFileInfo::exists(folderPath())); }

    void cleanup()
    {
        QFile::remove(folderPath());
        QVERIFY(QDir(folderPath()).removeRecursively());
    }

    void nothingIsStoredAtFirst()
    {
        QVERIFY(!Recents::retrieveAllSavedGroupedMatchesInFileManager());
        QCOMPARE(Recents::getPathForRecentsInDocsFolder(), folderPath());
        QVERIFY(QFileInfo(folderPath()).isDir());
        QVERIFY(!QFileInfo::exists(filePath()));
    }

    void saves_data()
    {
        QTest::addColumn<QList<QStringList>>("saves"); // address, or "null", and title of each group
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char *name, const QList<QStringList> &saves, const QStringList &expected) {
            QTest::newRow(name) << saves << expected;
        };
        row("the first save keeps the order", {{u"1:a"_s, u"2:a"_s, u"1:b"_s}}, {u"1:a"_s, u"2:a"_s, u"1:b"_s});
        row("nothing at first", {{}}, {});
        row("nothing later", {{u"1:a"_s, u"2:a"_s}, {}}, {u"1:a"_s, u"2:a"_s});
        row("the newest comes first", {{u"1:a"_s, u"2:a"_s}, {u"3:a"_s}}, {u"3:a"_s, u"1:a"_s, u"2:a"_s});
        row("a known one moves as it is", {{u"1:a"_s, u"2:a"_s}, {u"2:b"_s}}, {u"2:a"_s, u"1:a"_s});
        row("several, the last at the front", {{u"1:a"_s}, {u"4:a"_s, u"5:a"_s, u"4:b"_s}},
            {u"4:a"_s, u"5:a"_s, u"1:a"_s});
        row("addresses are exact", {{u"a:a"_s}, {u"A:a"_s}, {u"a/:a"_s}, {u"\u00e4:a"_s}, {u"a\u0308:a"_s}, {u"A:b"_s}},
            {u"A:a"_s, u"a\u0308:a"_s, u"\u00e4:a"_s, u"a/:a"_s, u"a:a"_s});
        row("no address is never the same", {{u"null:a"_s}, {u"null:b"_s}, {u":a"_s}, {u":b"_s}},
            {u":a"_s, u":b"_s, u":a"_s});
    }
    void saves()
    {
        QFETCH(QList<QStringList>, saves);
        for (const QStringList &names : saves) {
            BrevantoMatchGroupList groups{nullptr};
            for (const QString &name : names) {
                const QString address = name.startsWith(u':') ? u""_s : name.section(u':', 0, 0);
                groups.append(group(address == u"null" ? QString() : address, name.section(u':', 1)));
            }
            Recents::saveMatchGroupsToFileManager(groups);
        }
        QVERIFY(Recents::retrieveAllSavedGroupedMatchesInFileManager());
        QTEST(stored(), "expected");
    }

    void undecodableFiles()
    {
        for (const QByteArray &content :
             {QByteArray(), QByteArray("not an archive"), QCborValue(QCborMap{{u"a"_s, 1}}).toCbor(),
              QCborValue(QCborArray{u"text"_s, 1}).toCbor().chopped(1)}) {
            writeFile(content);
            QVERIFY(!Recents::retrieveAllSavedGroupedMatchesInFileManager());
            Recents::saveMatchGroupsToFileManager({group(u"1"_s), group(u"2"_s)});
            QCOMPARE(stored(), QStringList({u"2:first"_s, u"1:first"_s})); // merged into nothing, as the file was there
        }
    }

    void whatStandsInTheWay()
    {
        QVERIFY(QDir().mkpath(filePath())); // a folder where the file should be
        Recents::saveMatchGroupsToFileManager({group(u"1"_s)});
        QVERIFY(!Recents::retrieveAllSavedGroupedMatchesInFileManager());
        QVERIFY(QFileInfo(filePath()).isDir());

        QVERIFY(QDir(folderPath()).removeRecursively());
        QFile file(folderPath()); // a file where the folder should be
        QVERIFY(file.open(QIODevice::WriteOnly));
        Recents::saveMatchGroupsToFileManager({group(u"1"_s)});
        QVERIFY(!Recents::retrieveAllSavedGroupedMatchesInFileManager());
        QCOMPARE(Recents::getPathForRecentsInDocsFolder(), folderPath());
    }

    // A stored group survives a save byte for byte, whatever is in it.
    void storedGroupsAreNotDecoded()
    {
        const QCborMap newer{{0, u"NewerGroup"_s}, {u"adImageUrl"_s, u"B"_s}, {u"more"_s, QByteArray("bytes")}};
        const QCborMap odd{{0, u"BrevantoMatchGroup"_s},
                           {u"adImageUrl"_s, u"A"_s},
                           {u"listOfMatches"_s, QCborArray{QCborValue(QCborTag(4711), 1), QByteArray("bytes")}},
                           {u"added later"_s, 1.5}};
        writeFile(QCborValue(QCborArray{newer, odd, 5}).toCbor());

        Recents::saveMatchGroupsToFileManager({group(u"A"_s, u"dropped"_s)});
        QCOMPARE(QCborValue::fromCbor(readFile()), QCborValue(QCborArray{odd, newer, 5}));
        Recents::saveMatchGroupsToFileManager({group(u"B"_s, u"dropped"_s), group(u"C"_s)});
        QCborArray content = QCborValue::fromCbor(readFile()).toArray();
        QCOMPARE(content.takeFirst().toMap()[u"adImageUrl"_s], QCborValue(u"C"_s));
        QCOMPARE(content, QCborArray({newer, odd, 5}));
    }

    void damagedGroupsAreKeptInPart()
    {
        QTest::ignoreMessage(QtInfoMsg, QRegularExpression(u"unknown classes.* NewerGroup"_s));
        QTest::ignoreMessage(QtInfoMsg, QRegularExpression(u"bytes"_s));
        QTest::ignoreMessage(QtInfoMsg, QRegularExpression(u"bytes"_s));
        const QCborMap newer{{0, u"NewerGroup"_s}};
        const QCborMap match{{0, u"BrevantoMatch"_s}, {u"title"_s, u"kept"_s}, {u"ID"_s, QByteArray("x")}};
        const QCborMap part{
            {0, u"BrevantoMatchGroup"_s}, {u"adImageUrl"_s, u"A"_s}, {u"listOfMatches"_s, QCborArray{match}}};
        const QCborMap bare{
            {0, u"BrevantoMatchGroup"_s}, {u"adImageUrl"_s, u"B"_s}, {u"listOfMatches"_s, QByteArray("x")}};
        writeFile(QCborValue(QCborArray{newer, part, u"text"_s, bare}).toCbor());

        const auto groups = Recents::retrieveAllSavedGroupedMatchesInFileManager().value();
        QCOMPARE(groups.size(), 2);
        QCOMPARE(groups[0]->adImageUrl(), u"A"_s);
        QCOMPARE(groups[0]->listOfMatches().size(), 1);
        QCOMPARE(groups[0]->listOfMatches()[0]->title(), u"kept"_s);
        QCOMPARE(groups[1]->adImageUrl(), u"B"_s);
        QVERIFY(groups[1]->listOfMatches().isEmpty());
    }

    void savesAtTheSameTimeLeaveAReadableFile()
    {
        Recents::saveMatchGroupsToFileManager({group(u"start"_s)});
        const auto saveMany = [](const QString &name) {
            for (int save = 0; save < 25; ++save)
                Recents::saveMatchGroupsToFileManager({group(name + QString::number(save))});
        };
        std::thread other(saveMany, u"a"_s);
        saveMany(u"b"_s);
        other.join();
        QVERIFY(stored().contains(u"start:first"_s));
        QCOMPARE(QDir(folderPath()).entryList(QDir::Files | QDir::Hidden), QStringList{u"Recents"_s});
    }

private:
    QTemporaryDir m_home;
};

QTEST_GUILESS_MAIN(TestBrevantoRecentsFileManager)
#include "tst_BrevantoRecentsFileManager.moc"
