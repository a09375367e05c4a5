#pragma once

#include "support/MemoryWatch.h"
#include "support/RawServer.h"

#include "Platform/Network/URLSession.h"

#include <QFile>
#include <QSslKey>
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

// Certificates that nobody but these tests trusts, all with the one key that lies beside them.
inline QByteArray certificate(const QString &name)
{
    QFile file(QStringLiteral(CERTIFICATES "/%1.pem").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(file.fileName()));
    return file.readAll();
}

inline QSslConfiguration security(const QString &name)
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(QSslCertificate(certificate(name)));
    configuration.setPrivateKey(QSslKey(certificate(QStringLiteral("key")), QSsl::Ec));
    return configuration;
}

// Until the test's end.
inline void trust(const QString &name)
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.addCaCertificate(QSslCertificate(certificate(name)));
    QSslConfiguration::setDefaultConfiguration(configuration);
}

// The beginning of a server's greeting.
inline QByteArray halfAGreeting()
{
    return QByteArray::fromHex("160303007a0200007603030000000000000000");
}

// More requests than a session has connections to one host.
constexpr int manyRequests = 7;

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
        m_server->setDoor(RawServer::Door::Open);
        QCOMPARE(dataOf(outcome(*m_session, get(m_server->url()))), QByteArray("next"));
        QSslConfiguration::setDefaultConfiguration(m_security);
    }

protected:
    std::unique_ptr<RawServer> m_server;
    std::unique_ptr<Platform::URLSession> m_session;

private:
    const QSslConfiguration m_security = QSslConfiguration::defaultConfiguration();
    MemoryWatch m_memory;
};
