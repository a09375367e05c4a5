#pragma once

#include "support/ManualClock.h"
#include "support/RecordingController.h"
#include "support/TestWindow.h"

#include <QTest>

// What the tests of controllers stand on: a host's window, a clock that stands still, and the calls of their screens.
class WindowTest : public QObject
{
    Q_OBJECT

protected:
    static constexpr auto transition = std::chrono::milliseconds(350);

    // Expects these calls, those behind the bar at the transition's end; all that tell of it say whether it is
    // animated.
    void compareCalls(QString expected, bool animated)
    {
        const auto compare = [&](const QString &calls) {
            QString seen = taken(m_calls);
            QCOMPARE(seen.count(QStringLiteral("pear*")), animated ? seen.count(QStringLiteral("pear")) : 0);
            QCOMPARE(seen.remove(u'*'), calls);
        };
        const QString bar = QStringLiteral(" | ");
        if (!animated)
            return compare(expected.replace(bar, QStringLiteral(", ")));
        compare(expected.section(bar, 0, 0));
        m_clock->advance(transition);
        compare(expected.section(bar, 1));
    }

    std::unique_ptr<ManualClock> m_clock;
    std::unique_ptr<TestWindow> m_window;
    QStringList m_calls;

protected Q_SLOTS:
    void init()
    {
        m_clock = std::make_unique<ManualClock>();
        m_window = std::make_unique<TestWindow>();
        m_calls.clear();
    }
    void cleanup()
    {
        m_window.reset();
        m_clock.reset();
    }
};
