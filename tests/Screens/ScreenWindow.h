#pragma once

#include "support/TestWindow.h"

#include "Platform/Interface/NavigationController.h"

// A host's window of a phone's size, with SDK screens over it.
class ScreenWindow : public TestWindow
{
public:
    explicit ScreenWindow(const QSize &size = {390, 844})
        : TestWindow(size)
    {
        window()->setColor(Qt::white);
    }

    // Presents a navigation stack whose first screen is an empty one and pushes `screen` onto it; returns the stack
    // when the screen has appeared.
    Platform::NavigationController *push(std::unique_ptr<Platform::ViewController> screen);
};
