#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMutex>
#include <QSslConfiguration>
#include <QString>
#include <QThread>

#include <atomic>
#include <functional>
#include <limits>
#include <memory>
#include <optional>

// An HTTP server on loopback that keeps the raw bytes of each request and answers as told. It runs on a thread of its
// own, so that the test's thread may block or look away. All calls are for the test's thread.
class RawServer
{
public:
    struct Request {
        int connection = 0; // counted from 0 in order of arrival
        QByteArray raw; // head and body as they came
        QByteArray method;
        QByteArray target; // path and query as they came
        QHash<QByteArray, QByteArray> headers; // names in lower case
        QByteArray body;
    };

    // How far an answer goes.
    enum class Stage { Nothing, HalfHead, Head, HalfBody, Everything };
    // What comes after that: Repeat is the body again and again, until the client goes.
    enum class Then { KeepOpen, Close, Reset, Repeat };
    // Who gets in: at a closed door nobody listens, at a full one the system answers no first packet any more.
    enum class Door { Open, Closed, Full };

    struct Answer {
        int status = 200;
        QList<std::pair<QByteArray, QByteArray>> headers =
            {}; // "Content-Length" is added unless it or "Transfer-Encoding" is here
        QByteArray body = {};
        QByteArray head = {}; // when set, what is sent in place of a head of status and headers
        Stage stage = Stage::Everything; // with KeepOpen, anything less stalls until resume()
        Then then = Then::KeepOpen;

        static Answer json(const QByteArray &body);
        static Answer redirect(const QByteArray &location, int status = 302);
        static Answer stall(Stage stage = Stage::Nothing);
    };
    using Handler = std::function<Answer(const Request &)>; // runs on the server's thread

    // Speaks TLS when it is given a certificate and its key.
    explicit RawServer(const std::optional<QSslConfiguration> &security = {});
    ~RawServer();

    // "http://127.0.0.1:port", or "https", and the path.
    QString url(const QString &path = QStringLiteral("/")) const;

    // What all requests from now on get; at first, status 404.
    void setAnswer(const Answer &answer);
    void setHandler(Handler handler);

    void setDoor(Door door);
    // How many clients stand before a full door. Linux tells.
    int waitingCount() const;
    // With TLS: what new connections get in place of a greeting. Nothing: the greeting, as at first.
    void setGreeting(const std::optional<QByteArray> &bytes, Then then = Then::KeepOpen);
    // The certificate of new connections.
    void setSecurity(const QSslConfiguration &security);

    // Sends the rest of the answers that stalled, or only so many bytes of each.
    void resume(qsizetype size = std::numeric_limits<qsizetype>::max());
    // From new connections so much is read, and then no more, and little waits in the system; with Reset, they are
    // reset then. Nothing: all, as at first.
    void setIntake(std::optional<qint64> size, Then then = Then::KeepOpen);
    // Reads so much more from those that wait, and throws it away.
    void readOn(qint64 size);
    // The connections so far from which so much has been read.
    int fullCount() const { return m_fullCount; }

    // How much the clients' systems have taken so far.
    qint64 sentSize() const { return m_sentSize; }

    // The complete requests so far, in order of arrival. Wait for one with QTRY_COMPARE.
    QList<Request> requests() const;
    int requestCount() const;
    int connectionCount() const;
    int openConnectionCount() const { return m_openCount; }

private:
    class Listener;
    friend class Listener;

    void doThere(const std::function<void()> &work);

    QThread m_thread;
    const QString m_scheme;
    Listener *m_listener; // lives on the thread and goes with it
    quint16 m_port = 0;
    mutable QMutex m_mutex;
    Handler m_handler;
    QList<Request> m_requests;
    int m_connectionCount = 0;
    std::optional<qint64> m_intake;
    Then m_thenOfIntake = Then::KeepOpen;
    std::atomic<int> m_fullCount = 0;
    std::atomic<int> m_openCount = 0;
    std::atomic<qint64> m_sentSize = 0;
};
