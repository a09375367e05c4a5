#pragma once

#include "Brevanto/ServerManager/BrevantoServerManager.h"

#include <QMutex>
#include <QSet>
#include <QStringList>
#include <QThread>

// Writes down which blocks were called, with what and on which threads. Blocks may run on any thread.
class CallRecorder
{
public:
    // Such as "completion image 4x3" and "failure nil", in order.
    QStringList calls() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_calls;
    }

    QSet<QThread *> threads() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_threads;
    }

    template <typename Value>
    auto completion()
    {
        return [this](const Value &value) { record(QStringLiteral("completion ") + described(value)); };
    }

    BrevantoServerManager::FailureBlock failure()
    {
        return [this](const std::optional<Platform::URLError> &error) {
            record(QStringLiteral("failure ") + (error ? described(*error) : QStringLiteral("nil")));
        };
    }

private:
    void record(const QString &call)
    {
        const QMutexLocker lock(&m_mutex);
        m_calls.append(call);
        m_threads.insert(QThread::currentThread());
    }

    static QString described(const Platform::URLError &error)
    {
        using Code = Platform::URLError::Code;
        static const QHash<Code, QString> names{{Code::BadURL, QStringLiteral("BadURL")},
                                                {Code::UnsupportedURL, QStringLiteral("UnsupportedURL")},
                                                {Code::CannotConnect, QStringLiteral("CannotConnect")},
                                                {Code::TimedOut, QStringLiteral("TimedOut")},
                                                {Code::TooLarge, QStringLiteral("TooLarge")}};
        return names.value(error.code, QStringLiteral("other"));
    }

    static QString described(const std::monostate &) { return QStringLiteral("nil"); }

    static QString described(const std::shared_ptr<BrevantoMatch> &match)
    {
        return match ? QStringLiteral("match ") + match->title().toString() : QStringLiteral("nil");
    }

    static QString described(const Platform::Image &image)
    {
        if (image.isNull())
            return QStringLiteral("nil");
        return QStringLiteral("image %1x%2").arg(image.bitmapSize().width()).arg(image.bitmapSize().height());
    }

    static QString described(const QString &url)
    {
        return url.isNull() ? QStringLiteral("nil") : QStringLiteral("url ") + url;
    }

    static QString described(const BrevantoMatchGroupList &groups)
    {
        QStringList sizes;
        for (const auto &group : groups)
            sizes.append(QString::number(group->listOfMatches().size()));
        return QStringLiteral("groups [%1]").arg(sizes.join(QLatin1Char(',')));
    }

    static QString described(const std::optional<BrevantoMatchGroupList> &groups)
    {
        return groups ? described(*groups) : QStringLiteral("nil");
    }

    static QString described(const BrevantoServerResult &result)
    {
        return std::visit([](const auto &value) { return described(value); }, result);
    }

    mutable QMutex m_mutex;
    QStringList m_calls;
    QSet<QThread *> m_threads;
};
