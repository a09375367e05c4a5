#include "support/MemoryWatch.h"
#include "support/RawServer.h"
#include "support/Table.h"

#include "Brevanto/ServerManager/BrevantoServerManager.h"
#include "Brevanto/ServerManager/ServiceAddress.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <latch>
#include <thread>

using namespace Qt::StringLiterals;

// What concerns the whole process is done by copies of this program.
class tst_ServerManagerLife : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leavesWithRequestsRunning_data()
    {
        using Stage = std::function<bool(RawServer &)>;
        addColumns<QString, Stage, Stage>("way", "prepare", "isReached");
        const auto row = [](const char *name, const auto &prepare, const Stage &isReached) {
            const Stage prepared = [prepare](RawServer &server) { return prepare(server), true; };
            QTest::addRow("main returns, %s", name) << u"return"_s << prepared << isReached;
            QTest::addRow("exit, %s", name) << u"exit"_s << prepared << isReached;
            QTest::addRow("exit, %s, the host holds the session", name) << u"hold"_s << prepared << isReached;
        };
        const auto areAsked = [](RawServer &server) { return server.requestCount() == 2; };
        row(
            "nobody lets it in", [](RawServer &server) { server.setDoor(RawServer::Door::Full); },
            [](RawServer &server) { return server.waitingCount() == 2; });
        row(
            "an upload is under way", [](RawServer &server) { server.setIntake(1000); },
            [](RawServer &server) { return server.fullCount() == 1 && server.connectionCount() == 2; });
        row(
            "no answer", [](RawServer &server) { server.setAnswer(RawServer::Answer::stall()); }, areAsked);
        row(
            "heads go on",
            [](RawServer &server) {
                server.setAnswer({.body = QByteArray(0x8000, 'x'),
                                  .head = "HTTP/1.1 200 OK\r\nX-Y: ",
                                  .then = RawServer::Then::Repeat});
            },
            [=](RawServer &server) { return areAsked(server) && server.sentSize() > 4 * MemoryWatch::mebibyte; });
    }
    void leavesWithRequestsRunning()
    {
        QFETCH(QString, way);
        QFETCH(std::function<bool(RawServer &)>, prepare);
        QFETCH(std::function<bool(RawServer &)>, isReached);
        RawServer server;
        prepare(server);
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        process.start(QCoreApplication::applicationFilePath(), {u"--leave"_s, way, server.url(QString())});
        QTRY_VERIFY(isReached(server));
        process.write("\n");
        process.closeWriteChannel();
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 0);
    }

    void worksWhenThreadsRaceForIt()
    {
        for (int round = 0; round < 10; ++round) { // a process has one race
            QProcess process;
            process.setProcessChannelMode(QProcess::ForwardedChannels);
            process.start(QCoreApplication::applicationFilePath(), {u"--race"_s});
            QVERIFY(process.waitForFinished());
            QCOMPARE(process.exitStatus(), QProcess::NormalExit);
            QCOMPARE(process.exitCode(), 0);
        }
    }

    // All calls from many threads at once: each is answered, and only once.
    void servesManyThreads()
    {
        RawServer server;
        server.setAnswer(
            RawServer::Answer::json(R"({"status":{"code":0,"message":"Success"},"data":{},"matches":[]})"));
        const ServiceAddress::Override address(server.url(QString()));
        const auto manager = BrevantoServerManager::create();
        constexpr int threadCount = 16;
        constexpr int rounds = 10;
        std::latch start(threadCount);
        std::array<std::atomic<int>, threadCount *rounds * 4> answers = {}; // to each call
        std::vector<std::thread> threads;
        for (int i = 0; i < threadCount; ++i) {
            threads.emplace_back([&, next = answers.begin() + i * rounds * 4]() mutable {
                const auto call = [&next](const auto &send) { send([&own = *next++](const auto &) { ++own; }); };
                start.arrive_and_wait();
                for (int round = 0; round < rounds; ++round) {
                    call([&](const auto &count) { manager->getMeta(u"1"_s, 0, count, count); });
                    call([&](const auto &count) { manager->getImage(server.url(), count, count); });
                    call([&](const auto &count) { manager->getShortenedURLFor(u"http://long/"_s, count, count); });
                    call([&](const auto &count) { manager->postCapturedImageData("jpeg", count, count); });
                }
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        const auto isAnswered = [](const std::atomic<int> &count) { return count > 0; };
        QTRY_VERIFY_WITH_TIMEOUT(std::ranges::all_of(answers, isAnswered), 30000);
        // What else was on its way to them has come before the answer to one more request.
        std::atomic<bool> isLast = false;
        manager->getMeta(
            u"1"_s, 0, [&isLast](const auto &) { isLast = true; }, nullptr);
        QTRY_VERIFY(isLast);
        const auto isOnce = [](const std::atomic<int> &count) { return count == 1; };
        QVERIFY(std::ranges::all_of(answers, isOnce));
        QCOMPARE(server.requestCount(), static_cast<int>(answers.size()) + 1);
    }

    void mayGoInsideACompletion()
    {
        RawServer server;
        auto manager = BrevantoServerManager::create();
        const std::weak_ptr<BrevantoServerManager> isAlive = manager;
        std::atomic<bool> isDone = false;
        manager->getImage(server.url(), nullptr, [&](const std::optional<Platform::URLError> &) {
            manager.reset();
            isDone = true;
        });
        QTRY_VERIFY(isDone);
        QTRY_VERIFY(isAlive.expired());
    }

    void workQueueIsReplacedWhileInUse()
    {
        RawServer server;
        const auto manager = BrevantoServerManager::create();
        std::atomic<int> answers = 0;
        for (int i = 0; i < 20; ++i) {
            manager->getImage(server.url(), nullptr, [&](const std::optional<Platform::URLError> &) { ++answers; });
            BrevantoServerManager::create();
        }
        QTRY_COMPARE(answers, 20);
    }
};

namespace
{

std::weak_ptr<int> runningRequests;

// Runs after what the library does at the exit.
void checkThatNothingRuns()
{
    if (!runningRequests.expired())
        std::_Exit(1);
}

void sendRequests(const QString &server)
{
    const auto token = std::make_shared<int>();
    runningRequests = token;
    const auto failure = [token](const std::optional<Platform::URLError> &) { std::fputs("called\n", stderr); };
    const QByteArray photo(16 * MemoryWatch::mebibyte, 'x'); // more than the system takes at once
    BrevantoServerManager::sharedServerManager()->postCapturedImageData(photo, nullptr, failure);
    BrevantoServerManager::sharedServerManager()->getImage(server, nullptr, failure);
}

int leave(int argc, char *argv[], const QString &way, const QString &server)
{
    std::atexit(checkThatNothingRuns);
    QCoreApplication application(argc, argv);
    const ServiceAddress::Override address(server);
    sendRequests(server);
    std::getchar();
    [[maybe_unused]] static std::shared_ptr<Platform::URLSession> *volatile heldForever = nullptr;
    if (way == QLatin1String("hold"))
        heldForever = new auto(BrevantoServerManager::sharedServerManager()->currentSession());
    if (way != QLatin1String("return"))
        std::exit(0);
    return 0;
}

int race(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    constexpr int threadCount = 16;
    std::latch start(threadCount);
    std::array<std::shared_ptr<BrevantoServerManager>, threadCount> given;
    std::vector<std::thread> threads;
    for (auto &manager : given) {
        threads.emplace_back([&start, &manager] {
            start.arrive_and_wait();
            manager = BrevantoServerManager::sharedServerManager();
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    // The one that is kept is one of those given, and every one of them works.
    if (std::ranges::count(given, BrevantoServerManager::sharedServerManager()) == 0)
        return 1;
    std::atomic<int> answers = 0;
    for (const auto &manager : given)
        manager->getMeta(u"1"_s, 1, nullptr, [&answers](const auto &) { ++answers; });
    return QTest::qWaitFor([&answers] { return answers == threadCount; }) ? 0 : 1;
}

} // namespace

int main(int argc, char *argv[])
{
    const QString mode = QString::fromLocal8Bit(argc > 1 ? argv[1] : "");
    if (mode == QLatin1String("--leave") && argc == 4)
        return leave(argc, argv, QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]));
    if (mode == QLatin1String("--race"))
        return race(argc, argv);
    QCoreApplication application(argc, argv);
    tst_ServerManagerLife test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_ServerManagerLife.moc"
