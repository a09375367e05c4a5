#include "support/RawServer.h"

#include "Platform/Foundation/Handover.h"

#include <QMutexLocker>
#include <QPointer>
#include <QSslServer>
#include <QTcpSocket>

#include <future>

#include <sys/socket.h>

using namespace Qt::StringLiterals;

namespace
{

QByteArray headOf(const RawServer::Answer &answer)
{
    if (!answer.head.isEmpty())
        return answer.head;
    QByteArray head = "HTTP/1.1 " + QByteArray::number(answer.status) + " Status\r\n";
    bool hasLength = false;
    for (const auto &[name, value] : answer.headers) {
        head += name + ": " + value + "\r\n";
        const QByteArray lower = name.toLower();
        hasLength = hasLength || lower == "content-length" || lower == "transfer-encoding";
    }
    if (!hasLength)
        head += "Content-Length: " + QByteArray::number(answer.body.size()) + "\r\n";
    return head + "\r\n";
}

// Ends the connection in the way of a process that was killed.
void reset(QTcpSocket &socket)
{
    socket.flush();
    const linger atOnce{1, 0};
    setsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    socket.abort();
}

void repeat(QTcpSocket &socket, const QByteArray &body)
{
    const auto more = [&socket, body] {
        if (socket.bytesToWrite() == 0)
            socket.write(body);
    };
    QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, more, Qt::QueuedConnection);
    more();
}

// Takes one complete request off the front of `received`; false when there is none yet.
bool takeRequest(QByteArray &received, RawServer::Request &request)
{
    const qsizetype headSize = received.indexOf("\r\n\r\n") + 4;
    if (headSize < 4)
        return false;
    const QList<QByteArray> lines = received.first(headSize - 4).split('\n');
    request.headers.clear();
    for (const QByteArray &line : lines.sliced(1)) {
        const qsizetype colon = line.indexOf(':');
        request.headers.insert(line.first(colon).toLower(), line.sliced(colon + 1).trimmed());
    }
    const qsizetype bodySize = request.headers.value("content-length").toLongLong();
    if (received.size() < headSize + bodySize)
        return false;
    const QList<QByteArray> words = lines.first().split(' ');
    request.method = words.value(0);
    request.target = words.value(1);
    request.raw = received.first(headSize + bodySize);
    request.body = request.raw.sliced(headSize);
    received.remove(0, request.raw.size());
    return true;
}

} // namespace

class RawServer::Listener final : public Platform::BlockReceiver
{
public:
    Listener(RawServer &owner, const std::optional<QSslConfiguration> &security)
        : m_owner(owner)
        , m_server(security ? new QSslServer(this) : new QTcpServer(this))
    {
        if (security)
            static_cast<QSslServer *>(m_server)->setSslConfiguration(*security);
        connect(m_server, &QTcpServer::pendingConnectionAvailable, this, &Listener::accept);
    }

    quint16 listen()
    {
        m_server->listen(QHostAddress::LocalHost);
        return m_server->serverPort();
    }

    void resume(qsizetype size)
    {
        for (Stalled &stalled : m_stalled) {
            if (stalled.socket)
                stalled.socket->write(stalled.rest.first(qMin(size, stalled.rest.size())));
            stalled.rest.remove(0, size);
        }
        m_stalled.removeIf([](const Stalled &stalled) { return stalled.rest.isEmpty(); });
    }

    void readOn(qint64 size)
    {
        for (const QPointer<QTcpSocket> &socket : m_full) {
            if (!socket || size == 0)
                continue;
            socket->setReadBufferSize(size);
            socket->readAll();
        }
    }

private:
    struct Stalled {
        QPointer<QTcpSocket> socket;
        QByteArray rest;
    };

    void accept()
    {
        while (QTcpSocket *socket = m_server->nextPendingConnection()) {
            Request request;
            std::optional<qint64> intake;
            Then then = Then::KeepOpen;
            {
                const QMutexLocker lock(&m_owner.m_mutex);
                request.connection = m_owner.m_connectionCount++;
                intake = m_owner.m_intake;
                then = m_owner.m_thenOfIntake;
            }
            ++m_owner.m_openCount;
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QTcpSocket::disconnected, this, [this] { --m_owner.m_openCount; });
            if (intake) {
                fill(socket, *intake, then);
                continue;
            }
            connect(socket, &QTcpSocket::bytesWritten, this, [this](qint64 size) { m_owner.m_sentSize += size; });
            connect(socket, &QTcpSocket::readyRead, this, [this, socket, request, received = QByteArray()]() mutable {
                received += socket->readAll();
                while (takeRequest(received, request))
                    answer(socket, request);
            });
        }
    }

    void fill(QTcpSocket *socket, qint64 size, Then then)
    {
        socket->setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption, 1 << 16);
        socket->setReadBufferSize(size);
        const auto look = [this, socket, size, then] {
            if (socket->bytesAvailable() < size || m_full.contains(socket))
                return;
            m_full.append(socket);
            if (then == Then::Reset)
                reset(*socket);
            ++m_owner.m_fullCount;
        };
        connect(socket, &QTcpSocket::readyRead, this, look);
        look();
    }

    void answer(QTcpSocket *socket, const Request &request)
    {
        Handler handler;
        {
            const QMutexLocker lock(&m_owner.m_mutex);
            m_owner.m_requests.append(request);
            handler = m_owner.m_handler;
        }
        const Answer answer = handler(request);
        const QByteArray head = headOf(answer);
        const QByteArray all = head + answer.body;
        qsizetype size = all.size();
        if (answer.stage == Stage::Nothing)
            size = 0;
        else if (answer.stage == Stage::HalfHead)
            size = head.size() / 2;
        else if (answer.stage == Stage::Head)
            size = head.size();
        else if (answer.stage == Stage::HalfBody)
            size = head.size() + answer.body.size() / 2;
        socket->write(all.first(size));
        if (answer.then == Then::Close)
            socket->disconnectFromHost();
        else if (answer.then == Then::Reset)
            reset(*socket);
        else if (answer.then == Then::Repeat)
            repeat(*socket, answer.body);
        else if (size < all.size())
            m_stalled.append({socket, all.sliced(size)});
    }

    RawServer &m_owner;
    QTcpServer *m_server;
    QList<Stalled> m_stalled;
    QList<QPointer<QTcpSocket>> m_full;
};

RawServer::Answer RawServer::Answer::json(const QByteArray &body)
{
    return {.headers = {{"Content-Type", "application/json"}}, .body = body};
}

RawServer::Answer RawServer::Answer::redirect(const QByteArray &location, int status)
{
    return {.status = status, .headers = {{"Location", location}}};
}

RawServer::Answer RawServer::Answer::stall(Stage stage)
{
    return {.body = QByteArray(64, 'x'), .stage = stage};
}

RawServer::RawServer(const std::optional<QSslConfiguration> &security)
    : m_scheme(security ? u"https"_s : u"http"_s)
    , m_listener(new Listener(*this, security))
{
    setAnswer({.status = 404});
    m_listener->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_listener, &QObject::deleteLater);
    m_thread.setObjectName(u"RawServer"_s);
    m_thread.start();
    std::promise<quint16> port;
    m_listener->post([&] { port.set_value(m_listener->listen()); });
    m_port = port.get_future().get();
}

RawServer::~RawServer()
{
    m_thread.quit();
    m_thread.wait();
    // Qt waits in a way that the thread sanitizer does not see.
    const QMutexLocker lock(&m_mutex);
}

QString RawServer::url(const QString &path) const
{
    return u"%1://127.0.0.1:%2%3"_s.arg(m_scheme, QString::number(m_port), path);
}

void RawServer::setAnswer(const Answer &answer)
{
    setHandler([answer](const Request &) { return answer; });
}

void RawServer::setHandler(Handler handler)
{
    const QMutexLocker lock(&m_mutex);
    m_handler = std::move(handler);
}

void RawServer::resume(qsizetype size)
{
    m_listener->post([listener = m_listener, size] { listener->resume(size); });
}

void RawServer::setIntake(std::optional<qint64> size, Then then)
{
    const QMutexLocker lock(&m_mutex);
    m_intake = size;
    m_thenOfIntake = then;
}

void RawServer::readOn(qint64 size)
{
    m_listener->post([listener = m_listener, size] { listener->readOn(size); });
}

QList<RawServer::Request> RawServer::requests() const
{
    const QMutexLocker lock(&m_mutex);
    return m_requests;
}

int RawServer::requestCount() const
{
    return static_cast<int>(requests().size());
}

int RawServer::connectionCount() const
{
    const QMutexLocker lock(&m_mutex);
    return m_connectionCount;
}
