#include "Brevanto/BrevantoShownScreen.h"

#include "Platform/Interface/Window.h"

QObject *brevantoShownScreen()
{
    const Platform::Window *window = Platform::Window::keyWindow();
    return window && window->rootViewController() ? window->rootViewController()->presentedViewController() : nullptr;
}
