#include "ScreenWindow.h"

#include "Brevanto/Brevanto.h"
#include "Brevanto/BrevantoCameraVC.h"
#include "Platform/Interface/Window.h"

#include <QSet>
#include <QTest>
#include <QThread>

#include <cstring>
#include <vector>

class tst_BrevantoClient : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void versionSymbols();
    void sameClientForRacingThreads();
    void showsTheCameraOverTheHost();
    void showsNothingNewWhilePresenting();
    void showsNothingWithoutWindow();
};

void tst_BrevantoClient::initTestCase()
{
    Platform::View::setAnimationsEnabled(false);
}

void tst_BrevantoClient::versionSymbols()
{
    QCOMPARE(BrevantoVersionNumber, 1.0);
    QCOMPARE(std::strcmp(BrevantoVersionString, "@(#)PROGRAM:Brevanto  PROJECT:Brevanto-1\n"), 0);
    QVERIFY(static_cast<const void *>(BrevantoVersionString) < static_cast<const void *>(&BrevantoVersionNumber));
}

void tst_BrevantoClient::sameClientForRacingThreads()
{
    std::vector<BrevantoClient *> clients(8);
    std::vector<std::unique_ptr<QThread>> threads;
    for (BrevantoClient *&client : clients)
        threads.emplace_back(QThread::create([&client] { client = BrevantoClient::sharedClient(); }));
    for (const auto &thread : threads)
        thread->start();
    for (const auto &thread : threads)
        QVERIFY(thread->wait(10000));
    for (BrevantoClient *client : clients)
        QCOMPARE(client, BrevantoClient::sharedClient());
}

void tst_BrevantoClient::showsTheCameraOverTheHost()
{
    ScreenWindow host;
    BrevantoClient::sharedClient()->showCameraScreen();
    Platform::Window *window = Platform::Window::of(host.window());
    QTRY_VERIFY(qobject_cast<BrevantoCameraVC *>(window->topmostViewController()));
    const auto *stack =
        qobject_cast<Platform::NavigationController *>(window->rootViewController()->presentedViewController());
    QVERIFY(stack);
    QCOMPARE(stack->viewControllers().size(), std::size_t(1));
    QCOMPARE(stack->presentingViewController(), window->rootViewController());
}

void tst_BrevantoClient::showsNothingNewWhilePresenting()
{
    ScreenWindow host;
    BrevantoClient::sharedClient()->showCameraScreen();
    Platform::Window *window = Platform::Window::of(host.window());
    QTRY_VERIFY(qobject_cast<BrevantoCameraVC *>(window->topmostViewController()));
    const QPointer<Platform::ViewController> camera(window->topmostViewController());
    BrevantoClient::sharedClient()->showCameraScreen();
    QCoreApplication::processEvents();
    QVERIFY(camera);
    QCOMPARE(window->topmostViewController(), camera.data());
}

void tst_BrevantoClient::showsNothingWithoutWindow()
{
    BrevantoClient::sharedClient()->showCameraScreen();
    QCOMPARE(Platform::Window::keyWindow(), nullptr);
    QVERIFY(QGuiApplication::topLevelWindows().isEmpty());
}

QTEST_MAIN(tst_BrevantoClient)
#include "tst_BrevantoClient.moc"
