#include "ScreenWindow.h"

#include "Brevanto/Brevanto.h"
#include "Brevanto/BrevantoCameraVC.h"
#include "Platform/Interface/Window.h"

#include <QTest>
#include <QThread>

#include <cstring>
#include <latch>
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
        std::vector<BrevantoClient *> clients(16);
        std::latch start(16);
        std::vector<std::unique_ptr<QThread>> threads;
        for (BrevantoClient *&client : clients) {
            threads.emplace_back(QThread::create([&start, &client] {
                start.arrive_and_wait();
                client = BrevantoClient::sharedClient();
            }));
        }
        for (const auto &thread : threads)
            thread->start();
        for (const auto &thread : threads)
            QVERIFY(thread->wait(10000));
        for (BrevantoClient *client : clients)
            QCOMPARE(client, BrevantoClient::sharedClient());
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

QTEST_MAIN(tst_BrevantoClient)
#include "tst_BrevantoClient.moc"
