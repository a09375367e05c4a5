#pragma once

#include "Platform/Interface/Window.h"

#include <QUrl>

// Notes the addresses that would leave the application. In place from construction to destruction.
class FakeOpener final : public Platform::Application::URLOpener
{
public:
    FakeOpener() { Platform::Application::setURLOpener(this); }
    ~FakeOpener() override { Platform::Application::setURLOpener(nullptr); }

    bool canOpen(const QUrl &) override { return true; }
    void open(const QUrl &url, std::function<void(bool)>) override { opened.append(url.toString()); }

    QStringList opened;
};
