#include "ScreenWindow.h"

#include "Brevanto/Brevanto.h"
#include "Brevanto/BrevantoCameraVC.h"
#include "Platform/Interface/Window.h"

#include <QProcess>
#include <QTest>

#include <algorithm>
#include <array>
#include <cstring>
#include <latch>
#include <thread>
#include <vector>

class tst_BrevantoClient : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Platform::View::setAnimationsEnabled(false); }

    void versionSymbols()
    {
        QCOMPARE(BrevantoVersionNumber, 1.0);
        QCOMPARE(std::strcmp(BrevantoVersionString, "@(#)PROGRAM:Brevanto  PROJECT:Brevanto-1\n"), 0);
        QVERIFY(static_cast<const void *>(BrevantoVersionString) < static_cast<const void *>(&BrevantoVersionNumber));
    }

    void sameClientForRacingThreads()
    {
        for (int round = 0; round < 10; ++round) { // a process has one race
            QProcess process;
            process.setProcessChannelMode(QProcess::ForwardedChannels);
            process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--race")});
            QVERIFY(process.waitForFinished());
            QCOMPARE(process.exitStatus(), QProcess::NormalExit);
            QCOMPARE(process.exitCode(), 0);
        }
    }

    void showsOneCameraOverTheHost()
    {
        ScreenWindow host;
        BrevantoClient::sharedClient()->showCameraScreen();
        QTRY_VERIFY(qobject_cast<BrevantoCameraVC *>(host.platform()->topmostViewController()));
        const QPointer<Platform::ViewController> camera(host.platform()->topmostViewController());
        const auto *stack = qobject_cast<Platform::NavigationController *>(host.root()->presentedViewController());
        QVERIFY(stack);
        QCOMPARE(stack->viewControllers().size(), std::size_t(1));
        QCOMPARE(stack->presentingViewController(), host.root());

        BrevantoClient::sharedClient()->showCameraScreen();
        QCoreApplication::processEvents();
        QVERIFY(camera);
        QCOMPARE(host.platform()->topmostViewController(), camera.data());
    }

    void showsNothingWithoutWindow()
    {
        BrevantoClient::sharedClient()->showCameraScreen();
        QCOMPARE(Platform::Window::keyWindow(), nullptr);
        QVERIFY(QGuiApplication::topLevelWindows().isEmpty());
    }
};

namespace
{

int race()
{
    constexpr int threadCount = 16;
    std::latch start(threadCount);
    std::array<BrevantoClient *, threadCount> given = {};
    std::vector<std::thread> threads;
    for (BrevantoClient *&client : given) {
        threads.emplace_back([&start, &client] {
            start.arrive_and_wait();
            client = BrevantoClient::sharedClient();
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    return given.front() && std::ranges::count(given, BrevantoClient::sharedClient()) == threadCount ? 0 : 1;
}

} // namespace

// Copies of this program race in its stead.
int main(int argc, char *argv[])
{
    if (argc > 1 && std::strcmp(argv[1], "--race") == 0)
        return race();
    QGuiApplication application(argc, argv);
    tst_BrevantoClient test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_BrevantoClient.moc"
