#include "Brevanto/BrevantoClient.h"

#include "Brevanto/BrevantoBundle.h"
#include "Platform/Interface/NavigationController.h"
#include "Platform/Interface/Window.h"

#include <type_traits>

BrevantoClient *BrevantoClient::sharedClient()
{
    // Made on the first call and never taken down: code that runs while the process ends may still hold it.
    static_assert(std::is_trivially_destructible_v<BrevantoClient>);
    static BrevantoClient client;
    return &client;
}

void BrevantoClient::showCameraScreen()
{
    auto camera = brevantoStoryboard().instantiate(QStringLiteral("BrevantoCameraVC"));
    auto navigation = std::make_unique<Platform::NavigationController>(std::move(camera));
    Platform::Window *window = Platform::Window::keyWindow();
    if (!window || !window->rootViewController())
        return;
    window->rootViewController()->present(std::move(navigation), true);
}
