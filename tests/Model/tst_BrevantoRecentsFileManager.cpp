#include "Brevanto/Model/BrevantoRecentsFileManager.h"
#include "Model/MatchFields.h"

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
    void initTestCase();
    void init();
    void cleanup();

    void nothingIsStoredAtFirst();
    void theFirstSaveKeepsTheOrder();
    void laterSavesPutTheNewestFirst();
    void anEmptyListIsSaved();
    void addressesAreComparedExactly();
    void groupsWithoutAddressAreNeverTheSame();
    void undecodableFiles_data();
    void undecodableFiles();
    void whatStandsInTheWay();
    void storedGroupsAreNotDecoded();
    void damagedGroupsAreKeptInPart();
    void savesAtTheSameTimeLeaveAReadableFile();

private:
    QTemporaryDir m_home;
};

void TestBrevantoRecentsFileManager::initTestCase()
{
    qputenv("XDG_DATA_HOME", m_home.path().toLocal8Bit());
    QVERIFY(folderPath().startsWith(m_home.path()));
}

void TestBrevantoRecentsFileManager::init()
{
    QVERIFY(!QFileInfo::exists(folderPath()));
}

void TestBrevantoRecentsFileManager::cleanup()
{
    QFile::remove(folderPath());
    QVERIFY(QDir(folderPath()).removeRecursively());
}

void TestBrevantoRecentsFileManager::nothingIsStoredAtFirst()
{
    QVERIFY(!Recents::retrieveAllSavedGroupedMatchesInFileManager());
    QCOMPARE(Recents::getPathForRecentsInDocsFolder(), folderPath());
    QVERIFY(QFileInfo(folderPath()).isDir());
    QVERIFY(!QFileInfo::exists(filePath()));
}

void TestBrevantoRecentsFileManager::theFirstSaveKeepsTheOrder()
{
    Recents::saveMatchGroupsToFileManager({group(u"1"_s), group(u"2"_s), group(u"1"_s, u"again"_s)});
    QCOMPARE(stored(), QStringList({u"1:first"_s, u"2:first"_s, u"1:again"_s}));
}

void TestBrevantoRecentsFileManager::laterSavesPutTheNewestFirst()
{
    Recents::saveMatchGroupsToFileManager({group(u"1"_s), group(u"2"_s)});
    Recents::saveMatchGroupsToFileManager({group(u"3"_s)});
    QCOMPARE(stored(), QStringList({u"3:first"_s, u"1:first"_s, u"2:first"_s}));
    Recents::saveMatchGroupsToFileManager({group(u"2"_s, u"second"_s)});
    QCOMPARE(stored(), QStringList({u"2:first"_s, u"3:first"_s, u"1:first"_s}));
    Recents::saveMatchGroupsToFileManager({group(u"4"_s), group(u"5"_s), group(u"4"_s, u"second"_s)});
    QCOMPARE(stored(), QStringList({u"4:first"_s, u"5:first"_s, u"2:first"_s, u"3:first"_s, u"1:first"_s}));
}

void TestBrevantoRecentsFileManager::anEmptyListIsSaved()
{
    Recents::saveMatchGroupsToFileManager({});
    QVERIFY(Recents::retrieveAllSavedGroupedMatchesInFileManager());
    QCOMPARE(stored(), QStringList());

    Recents::saveMatchGroupsToFileManager({group(u"1"_s), group(u"2"_s)});
    const QByteArray before = readFile();
    Recents::saveMatchGroupsToFileManager({});
    QCOMPARE(readFile(), before);
}

void TestBrevantoRecentsFileManager::addressesAreComparedExactly()
{
    Recents::saveMatchGroupsToFileManager({group(u"a"_s)});
    for (const auto &address : {u"A"_s, u"a/"_s, u"\u00e4"_s, u"a\u0308"_s})
        Recents::saveMatchGroupsToFileManager({group(address)});
    QCOMPARE(stored().size(), 5);
    Recents::saveMatchGroupsToFileManager({group(u"\u00e4"_s, u"second"_s)});
    QCOMPARE(stored().size(), 5);
    QCOMPARE(stored().first(), u"\u00e4:first"_s);
}

void TestBrevantoRecentsFileManager::groupsWithoutAddressAreNeverTheSame()
{
    for (int save = 0; save < 3; ++save)
        Recents::saveMatchGroupsToFileManager({group(QString())});
    Recents::saveMatchGroupsToFileManager({group(u""_s), nullptr});
    Recents::saveMatchGroupsToFileManager({group(u""_s, u"second"_s)});
    QCOMPARE(stored(), QStringList({u":first"_s, u":first"_s, u":first"_s, u":first"_s}));
}

void TestBrevantoRecentsFileManager::undecodableFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("not an archive");
    QTest::newRow("no list") << QCborValue(QCborMap{{u"a"_s, 1}}).toCbor();
    QTest::newRow("cut") << QCborValue(QCborArray{u"text"_s, 1}).toCbor().chopped(1);
    QTest::newRow("declared too long") << QByteArray::fromHex("9bffffffffffffffff");
    QTest::newRow("too deep") << QByteArray(5000, '\x81') + '\x01';
}

void TestBrevantoRecentsFileManager::undecodableFiles()
{
    QFETCH(QByteArray, content);
    writeFile(content);
    QVERIFY(!Recents::retrieveAllSavedGroupedMatchesInFileManager());
    Recents::saveMatchGroupsToFileManager({group(u"1"_s), group(u"2"_s)});
    QCOMPARE(stored(), QStringList({u"2:first"_s, u"1:first"_s})); // merged into nothing, as the file was there
}

void TestBrevantoRecentsFileManager::whatStandsInTheWay()
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
void TestBrevantoRecentsFileManager::storedGroupsAreNotDecoded()
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

void TestBrevantoRecentsFileManager::damagedGroupsAreKeptInPart()
{
    QTest::ignoreMessage(QtInfoMsg, QRegularExpression(u"unknown class NewerGroup"_s));
    QTest::ignoreMessage(QtInfoMsg, QRegularExpression(u"bytes"_s));
    QTest::ignoreMessage(QtInfoMsg, QRegularExpression(u"bytes"_s));
    const QCborMap newer{{0, u"NewerGroup"_s}};
    const QCborMap match{{0, u"BrevantoMatch"_s}, {u"title"_s, u"kept"_s}, {u"ID"_s, QByteArray("x")}};
    const QCborMap part{
        {0, u"BrevantoMatchGroup"_s}, {u"adImageUrl"_s, u"A"_s}, {u"listOfMatches"_s, QCborArray{match}}};
    const QCborMap bare{{0, u"BrevantoMatchGroup"_s}, {u"adImageUrl"_s, u"B"_s}, {u"listOfMatches"_s, QByteArray("x")}};
    writeFile(QCborValue(QCborArray{newer, part, u"text"_s, bare}).toCbor());

    const auto groups = Recents::retrieveAllSavedGroupedMatchesInFileManager().value();
    QCOMPARE(groups.size(), 2);
    QCOMPARE(groups[0]->adImageUrl(), u"A"_s);
    QCOMPARE(groups[0]->listOfMatches().size(), 1);
    QCOMPARE(groups[0]->listOfMatches()[0]->title(), u"kept"_s);
    QCOMPARE(groups[1]->adImageUrl(), u"B"_s);
    QVERIFY(groups[1]->listOfMatches().isEmpty());
}

void TestBrevantoRecentsFileManager::savesAtTheSameTimeLeaveAReadableFile()
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

QTEST_GUILESS_MAIN(TestBrevantoRecentsFileManager)
#include "tst_BrevantoRecentsFileManager.moc"
