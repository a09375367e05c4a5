#pragma once

#include "Platform/Interface/ViewController.h"

#include <QHash>
#include <QStringList>

// A screen that writes down the calls of its life, as "name call", in a list that several screens share.
class RecordingController : public Platform::ViewController
{
    Q_OBJECT

public:
    RecordingController(const QString &name, QStringList *calls)
        : m_name(name)
        , m_calls(calls)
    {
    }

    void viewDidLoad() override { note(QStringLiteral("didLoad")); }
    void viewWillAppear(bool animated) override { note(QStringLiteral("willAppear"), animated); }
    void viewDidAppear(bool animated) override { note(QStringLiteral("didAppear"), animated); }
    void viewWillDisappear(bool animated) override { note(QStringLiteral("willDisappear"), animated); }
    void viewDidDisappear(bool animated) override { note(QStringLiteral("didDisappear"), animated); }
    void viewDidLayoutSubviews() override
    {
        layouts.append(view()->frame());
        react(QStringLiteral("layout"));
    }
    void willAnimateRotation(std::chrono::milliseconds) override { note(QStringLiteral("rotation")); }

    QList<QRectF> layouts;
    // What the screen does once in the call of that name ("didLoad", "layout" ...).
    QHash<QString, std::function<void()>> reactions;

private:
    void note(const QString &call, bool animated = false)
    {
        m_calls->append(m_name + u' ' + call + (animated ? QStringLiteral("*") : QString()));
        react(call);
    }
    void react(const QString &call)
    {
        if (const std::function<void()> reaction = reactions.take(call))
            reaction();
    }

    QString m_name;
    QStringList *m_calls;
};

// The calls so far, in one line; the list is empty afterwards.
inline QString taken(QStringList &calls)
{
    return std::exchange(calls, {}).join(QStringLiteral(", "));
}
