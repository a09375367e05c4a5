#include "support/MemoryWatch.h"

#include "Brevanto/Model/BrevantoFields.h"
#include "Brevanto/Model/BrevantoRecentsFileManager.h"
#include "Brevanto/Model/BrevantoRelatedContent.h"

#include <QCborArray>
#include <QCborMap>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
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

// Saves a group in another process that cannot write it; false when that process does not end well.
bool saveElsewhere(const QString &fault)
{
    using Permission = QFileDevice::Permission;
    const auto mayAll = Permission(0x5055); // read and enter
    const QString home = QString::fromLocal8Bit(qgetenv("XDG_DATA_HOME"));
    const auto ofFolder = QFile::permissions(folderPath());
    const auto ofFile = QFile::permissions(filePath());
    QFile::setPermissions(home, QFile::permissions(home) | mayAll);
    if (fault == u"read-only"_s)
        QFile::setPermissions(folderPath(), mayAll);
    if (fault == u"unreadable"_s) {
        QFile::setPermissions(folderPath(), Permission(0x7077));
        QFile::setPermissions(filePath(), Permission(0x2022));
    }
    const int code = QProcess::execute(QCoreApplication::applicationFilePath(), {u"--save-once"_s, fault});
    QFile::setPermissions(folderPath(), ofFolder);
    QFile::setPermissions(filePath(), ofFile);
    return code == 0;
}

int saveOnce(const QString &fault)
{
    const auto room = fault.toULong(); // 0 where the disk is not full
    if (room > 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit little{room, room};
        if (setrlimit(RLIMIT_FSIZE, &little) != 0)
            return 1;
    }
    constexpr uid_t nobody = 65534;
    if (room == 0 && geteuid() == 0 && setuid(nobody) != 0)
        return 1;
    const QStringList before = stored();
    Recents::saveMatchGroupsToFileManager({group(u"lost"_s, QString(200'000, u'x'))});
    return stored() == before && before.isEmpty() == (fault == u"unreadable"_s) ? 0 : 1;
}

int saveForever(int number)
{
    for (;; ++number) {
        Recents::saveMatchGroupsToFileManager({group(QString::number(number), QString(2000, u'x'))});
        std::putchar('.');
        std::fflush(stdout);
    }
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

    // What is one text in memory would be written out for each record that has it.
    void keepsNoGroupThatGrowsAsItIsWritten()
    {
        QVariantList videos;
        for (int i = 0; i < 1000; ++i)
            videos.append(BrevantoFields::entry(std::make_shared<BrevantoRelatedContent>()));
        const QVariant date = QString(1'000'000, u'x');
        for (const QVariant &video : std::as_const(videos))
            BrevantoFields::record<BrevantoRelatedContent>(video)->setDate(date);
        const auto large = group(u"large"_s);
        large->listOfMatches().constFirst()->setVids(videos);
        const MemoryWatch watch;
        Recents::saveMatchGroupsToFileManager({large, group(u"small"_s)});
        QVERIFY2(watch.growth() < 32 * MemoryWatch::mebibyte, QByteArray::number(watch.growth()));
        QCOMPARE(stored(), QStringList{u"small:first"_s});
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
        const QString large(256 * 1024, u'x');
        row("too large, at first", {{u"1:"_s + large, u"2:a"_s}}, {u"2:a"_s});
        row("too large, later", {{u"1:a"_s}, {u"2:"_s + large, u"3:a"_s}}, {u"3:a"_s, u"1:a"_s});
        row("too large, but known", {{u"1:a"_s, u"2:a"_s}, {u"2:"_s + large}}, {u"2:a"_s, u"1:a"_s});
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

    void survivesFaults_data()
    {
        QTest::addColumn<std::function<void()>>("fault");
        QTest::addColumn<std::optional<QStringList>>("read"); // nothing: there is no archive
        QTest::addColumn<QStringList>("saved"); // what there is after one more group
        const auto row = [](const char *name, const std::function<void()> &fault,
                            const std::optional<QStringList> &read,
                            const QStringList &saved) { QTest::newRow(name) << fault << read << saved; };
        const auto holds = [](const QByteArray &content) { return [content] { writeFile(content); }; };
        const QStringList old{u"2:first"_s, u"1:first"_s};
        const QStringList fresh{u"3:first"_s};
        row("empty", holds({}), {}, fresh);
        row("zeros", holds(QByteArray(100'000, '\0')), {}, fresh);
        row("no archive", holds("not an archive"), {}, fresh);
        row("map", holds(QCborValue(QCborMap{{u"a"_s, 1}}).toCbor()), {}, fresh);
        row("folder in the place of the file", [] { QDir().mkpath(filePath()); }, {}, {});
        row("file in the place of the folder",
            [] {
                QVERIFY(QDir().mkpath(folderPath()) && QDir().rmdir(folderPath()));
                QVERIFY(QFile(folderPath()).open(QIODevice::WriteOnly));
            },
            {}, {});
        row(
            "killed long ago",
            [] {
                QFile left(filePath() + u".AbCdEf"_s);
                QVERIFY(left.open(QIODevice::WriteOnly));
                QVERIFY(left.setFileTime(QDateTime::currentDateTime().addDays(-1), QFile::FileModificationTime));
            },
            old, QStringList{u"3:first"_s} + old);
        for (const int room : {64, 100'000, 200'000}) { // of a little more
            const auto fill = [room] { QVERIFY(saveElsewhere(QString::number(room))); };
            row(qPrintable(u"disk full after %1 bytes"_s.arg(room)), fill, old, QStringList{u"3:first"_s} + old);
        }
        row(
            "read only", [] { QVERIFY(saveElsewhere(u"read-only"_s)); }, old, QStringList{u"3:first"_s} + old);
        row(
            "unreadable", [] { QVERIFY(saveElsewhere(u"unreadable"_s)); }, old, QStringList{u"3:first"_s} + old);
    }
    // A fault hits two stored groups and another one is saved.
    void survivesFaults()
    {
        QFETCH(std::function<void()>, fault);
        QFETCH(std::optional<QStringList>, read);
        if (!QByteArray(QTest::currentDataTag()).contains("place"))
            Recents::saveMatchGroupsToFileManager({group(u"2"_s), group(u"1"_s)});
        fault();
        QCOMPARE(Recents::retrieveAllSavedGroupedMatchesInFileManager().has_value(), read.has_value());
        QCOMPARE(stored(), read.value_or(QStringList()));
        Recents::saveMatchGroupsToFileManager({group(u"3"_s)});
        QTEST(stored(), "saved");
        if (!stored().isEmpty())
            QCOMPARE(QDir(folderPath()).entryList(QDir::Files | QDir::Hidden), QStringList{u"Recents"_s});
    }

    void survivesCuts()
    {
        Recents::saveMatchGroupsToFileManager({group(u"2"_s), group(u"1"_s)});
        const QByteArray whole = readFile();
        for (qsizetype length = 0; length < whole.size(); ++length) {
            writeFile(whole.first(length));
            QVERIFY2(!Recents::retrieveAllSavedGroupedMatchesInFileManager(), QByteArray::number(length));
            Recents::saveMatchGroupsToFileManager({group(u"3"_s)});
            QCOMPARE(stored(), QStringList{u"3:first"_s});
        }
    }

    // Processes save one group after the other until they are killed. Each group that one has reported is there.
    void losesNothingWhenKilled()
    {
        const quint32 seed = qEnvironmentVariableIsSet("SEED") ? qEnvironmentVariableIntValue("SEED")
                                                               : QRandomGenerator::global()->generate();
        qInfo("SEED=%u", seed);
        QRandomGenerator random(seed);
        int saved = 0;
        while (saved < 500) {
            QProcess process;
            process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
            process.start(QCoreApplication::applicationFilePath(), {u"--save"_s, QString::number(saved)});
            const int enough = random.bounded(12);
            while (process.bytesAvailable() < enough)
                QVERIFY(process.waitForReadyRead());
            std::this_thread::sleep_for(std::chrono::microseconds(random.bounded(3000))); // any moment of the next save
            process.kill();
            process.waitForFinished();
            saved += static_cast<int>(process.readAllStandardOutput().size());

            const QStringList names = stored();
            QVERIFY2(names.size() == saved || names.size() == saved + 1,
                     qPrintable(u"%1 of %2"_s.arg(names.size()).arg(saved)));
            saved = static_cast<int>(names.size());
            for (const QString &name : names)
                QVERIFY(name.startsWith(u"%1:x"_s.arg(saved - 1 - names.indexOf(name))));
        }
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
        Recents::saveMatchGroupsToFileManager({group(u"B"_s), group(u"C"_s)});
        QCborArray content = QCborValue::fromCbor(readFile()).toArray();
        QCOMPARE(content.takeFirst().toMap()[u"adImageUrl"_s], QCborValue(u"C"_s));
        QCOMPARE(content.takeFirst().toMap()[u"adImageUrl"_s], QCborValue(u"B"_s)); // what nobody shows is no sighting
        QCOMPARE(content, QCborArray({odd, newer, 5}));
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

// Copies of this program save in its stead.
int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"--save"_s)
        return saveForever(arguments.value(2).toInt());
    if (arguments.value(1) == u"--save-once"_s)
        std::_Exit(saveOnce(arguments.value(2))); // nobody may not look for leaks
    TestBrevantoRecentsFileManager test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_BrevantoRecentsFileManager.moc"
