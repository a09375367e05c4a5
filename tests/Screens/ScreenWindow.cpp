#include "ScreenWindow.h"

#include "Brevanto/ServerManager/BrevantoServerManager.h"
#include "Platform/Foundation/DispatchQueue.h"

#include <QTest>

Platform::NavigationController *ScreenWindow::push(std::unique_ptr<Platform::ViewController> screen)
{
    auto stack = std::make_unique<Platform::NavigationController>(std::make_unique<Platform::ViewController>());
    const QPointer<Platform::NavigationController> presented(stack.get());
    bool appeared = false;
    root()->present(std::move(stack), false, [&appeared] { appeared = true; });
    if (!QTest::qWaitFor([&] { return appeared; }) || !presented)
        qFatal("The navigation stack did not appear");
    Platform::ViewController *pushed = screen.get();
    presented->pushViewController(std::move(screen), false);
    if (!QTest::qWaitFor([&] { return presented->topViewController() == pushed && pushed->isVisible(); }))
        qFatal("The screen did not appear");
    return presented;
}

bool settle(const RawServer &server)
{
    for (int i = 0; i < 2; ++i) {
        QObject here;
        bool isAnswered = false;
        const auto answered = [&](const auto &) {
            Platform::DispatchQueue::mainAsync(&here, [&isAnswered] { isAnswered = true; });
        };
        BrevantoServerManager::sharedServerManager()->getImage(server.url(QStringLiteral("/more")), answered, answered);
        if (!QTest::qWaitFor([&isAnswered] { return isAnswered; }))
            return false;
        QCoreApplication::processEvents();
    }
    return true;
}
