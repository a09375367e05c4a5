#pragma once

#include "support/MemoryWatch.h"
#include "support/RawServer.h"

#include "Platform/Network/URLSession.h"

#include <QTest>

#include <future>
#include <memory>
#include <optional>

// What a session told about one request.
struct Outcome {
    std::optional<QByteArray> data;
    std::optional<Platform::URLResponse> response;
    std::optional<Platform::URLError> error;
};

inline std::future<Outcome> start(Platform::URLSession &session, const Platform::URLRequest &request)
{
    const auto promise = std::make_shared<std::promise<Outcome>>();
    session.dataTask(request, [promise](const auto &data, const auto &response, const auto &error) {
        promise->set_value(Outcome{data, response, error});
    });
    return promise->get_future();
}

inline Outcome outcome(Platform::URLSession &session, const Platform::URLRequest &request)
{
    return start(session, request).get();
}

inline QByteArray dataOf(const Outcome &outcome)
{
    if (outcome.error)
        qWarning("%s", qUtf8Printable(outcome.error->description));
    return outcome.data.value_or(QByteArray("no data"));
}

inline Platform::URLRequest get(const QString &url)
{
    Platform::URLRequest request;
    request.url = QUrl(url);
    return request;
}

inline RawServer::Answer chunked(const QByteArray &body)
{
    RawServer::Answer answer;
    answer.headers = {{"Transfer-Encoding", "chunked"}};
    answer.body = QByteArray::number(body.size(), 16) + "\r\n" + body + "\r\n0\r\n\r\n";
    return answer;
}

inline RawServer::Answer plain(const QByteArray &body)
{
    return {.body = body};
}

// Tests of one session against one server of its own.
class SessionTest : public QObject
{
    Q_OBJECT

protected Q_SLOTS:
    void init()
    {
        m_server = std::make_unique<RawServer>();
        m_session =
            std::make_unique<Platform::URLSession>(Platform::URLSession::Configuration{.maximumBodySize = 1 << 20});
        m_memory.begin();
    }

    // Whatever happened, little memory was needed for it, and the next request works.
    void cleanup()
    {
        const qint64 growth = m_memory.growth();
        QVERIFY2(growth < 48 * MemoryWatch::mebibyte, QByteArray::number(growth));
        m_server->setAnswer({.body = "next"});
        m_server->setIntake({});
        QCOMPARE(dataOf(outcome(*m_session, get(m_server->url()))), QByteArray("next"));
    }

protected:
    std::unique_ptr<RawServer> m_server;
    std::unique_ptr<Platform::URLSession> m_session;

private:
    MemoryWatch m_memory;
};
