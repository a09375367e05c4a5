#include "Platform/Foundation/NotificationCenter.h"

#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using Platform::Notification;
using Platform::NotificationCenter;

class tst_NotificationCenter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsWhoObservesNameAndSender()
    {
        NotificationCenter center;
        QObject observer, sender;
        QStringList told;
        center.addObserver(&observer, u"a"_s, [&told](const Notification &) { told.append(u"any"_s); });
        center.addObserver(
            &observer, u"a"_s, [&told](const Notification &) { told.append(u"one"_s); }, &sender);
        center.post(u"a"_s, &sender);
        center.post(u"a"_s, nullptr);
        center.post(u"a"_s, &observer);
        center.post(u"b"_s, &sender);
        QCOMPARE(told, QStringList({u"any"_s, u"one"_s, u"any"_s, u"any"_s}));
    }

    // Hosts observe once for each of their pages.
    void forgetsThoseThatAreGone()
    {
        NotificationCenter center;
        QObject observer;
        const auto held = std::make_shared<int>();
        const auto observeShortly = [&](QObject *sender) {
            QObject page;
            center.addObserver(
                sender ? &observer : &page, u"a"_s, [held](const Notification &) {}, sender);
        };
        for (int i = 0; i < 10; ++i) {
            QObject sender;
            observeShortly(i % 2 == 0 ? &sender : nullptr);
        }
        center.addObserver(&observer, u"a"_s, [](const Notification &) {});
        QCOMPARE(held.use_count(), 1);
    }

    void tellsNobodyWhoWasRemovedMeanwhile()
    {
        NotificationCenter center;
        QObject first, second;
        int calls = 0;
        center.addObserver(&first, u"a"_s, [&](const Notification &) { center.removeObserver(&second, u"a"_s); });
        center.addObserver(&second, u"a"_s, [&](const Notification &) { ++calls; });
        center.post(u"a"_s, nullptr);
        QCOMPARE(calls, 0);
    }
};

QTEST_GUILESS_MAIN(tst_NotificationCenter)
#include "tst_NotificationCenter.moc"
