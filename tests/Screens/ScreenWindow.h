#pragma once

#include "support/RawServer.h"
#include "support/TestWindow.h"

#include "Platform/Interface/NavigationController.h"

// Asks the server for two things more by the session of all screens, one after the other, and waits for the second on
// the main thread: what was on its way to them before, and what they asked for then, has come. False when it does not.
bool settle(const RawServer &server);

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
