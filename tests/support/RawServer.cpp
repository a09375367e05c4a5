#include "support/RawServer.h"

#include "Platform/Foundation/Handover.h"

#include <QFile>
#include <QMutexLocker>
#include <QPointer>
#include <QSslServer>
#include <QTcpSocket>

#include <future>

#include <netinet/in.h>
#include <netinet/tcp.h>
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

void end(QTcpSocket &socket, RawServer::Then then)
{
    if (then == RawServer::Then::Close)
        socket.disconnectFromHost();
    else if (then == RawServer::Then::Reset)
        reset(socket);
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

// Speaks TLS, unless it has something else to say.
class SecureServer final : public QSslServer
{
public:
    using QSslServer::QSslServer;

    std::function<void(QTcpSocket *)> greet;

protected:
    void incomingConnection(qintptr descriptor) override
    {
        if (!greet) {
            QSslServer::incomingConnection(descriptor);
            return;
        }
        auto *socket = new QTcpSocket(this);
        socket->setSocketDescriptor(descriptor);
        greet(socket);
    }
};

} // namespace

class RawServer::Listener final : public Platform::BlockReceiver
{
public:
    Listener(RawServer &owner, const std::optional<QSslConfiguration> &security)
        : m_owner(owner)
        , m_secureServer(security ? new SecureServer(this) : nullptr)
        , m_server(m_secureServer ? m_secureServer : new QTcpServer(this))
    {
        if (security)
            setSecurity(*security);
        connect(m_server, &QTcpServer::pendingConnectionAvailable, this, &Listener::accept);
    }

    quint16 listen(quint16 port = 0)
    {
        if (!m_server->listen(QHostAddress::LocalHost, port))
            qFatal("cannot listen: %s", qPrintable(m_server->errorString()));
        return m_server->serverPort();
    }

    void setDoor(Door door)
    {
        m_visitor.reset();
        if (door == Door::Closed) {
            m_server->close();
            return;
        }
        if (!m_server->isListening())
            listen(m_owner.m_port);
        if (door == Door::Open) {
            ::listen(descriptor(), m_server->listenBacklogSize());
            m_server->resumeAccepting();
            return;
        }
        // There is room for one.
        m_server->pauseAccepting();
        ::listen(descriptor(), 0);
        m_visitor = std::make_unique<QTcpSocket>();
        m_visitor->connectToHost(QHostAddress::LocalHost, m_owner.m_port);
        if (!m_visitor->waitForConnected())
            qFatal("cannot fill the server: %s", qPrintable(m_visitor->errorString()));
    }

    void setGreeting(const std::optional<QByteArray> &bytes, Then then)
    {
        m_secureServer->greet = nullptr;
        if (bytes)
            m_secureServer->greet = [this, bytes = *bytes, then](QTcpSocket *socket) { greet(socket, bytes, then); };
    }

    void setSecurity(const QSslConfiguration &security) { m_secureServer->setSslConfiguration(security); }

    // Clients' systems hold back what does not fit.
    void setRoom(int receiveBufferSize, int segmentSize)
    {
        setsockopt(descriptor(), SOL_SOCKET, SO_RCVBUF, &receiveBufferSize, sizeof receiveBufferSize);
        setsockopt(descriptor(), IPPROTO_TCP, TCP_MAXSEG, &segmentSize, sizeof segmentSize);
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

    int descriptor() const { return static_cast<int>(m_server->socketDescriptor()); }

    void watch(QTcpSocket *socket)
    {
        ++m_owner.m_openCount;
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QTcpSocket::disconnected, this, [this] { --m_owner.m_openCount; });
    }

    // As soon as the client has begun.
    void greet(QTcpSocket *socket, const QByteArray &bytes, Then then)
    {
        watch(socket);
        const auto answer = [socket, bytes, then] {
            socket->readAll();
            socket->write(bytes);
            end(*socket, then);
        };
        connect(socket, &QTcpSocket::readyRead, socket, answer, Qt::SingleShotConnection);
    }

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
            watch(socket);
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
        socket->setReadBufferSize(size);
        const auto look = [this, socket, size, then] {
            if (socket->bytesAvailable() < size || m_full.contains(socket))
                return;
            m_full.append(socket);
            end(*socket, then);
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
        end(*socket, answer.then);
        if (answer.then == Then::Repeat)
            repeat(*socket, answer.body);
        else if (answer.then == Then::KeepOpen && size < all.size())
            m_stalled.append({socket, all.sliced(size)});
    }

    RawServer &m_owner;
    SecureServer *m_secureServer; // null without TLS
    QTcpServer *m_server;
    std::unique_ptr<QTcpSocket> m_visitor; // in a full door
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
    doThere([this] { m_port = m_listener->listen(); });
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

void RawServer::setDoor(Door door)
{
    doThere([this, door] { m_listener->setDoor(door); });
}

int RawServer::waitingCount() const
{
    QFile connections(u"/proc/net/tcp"_s);
    if (!connections.open(QIODevice::ReadOnly))
        return 0;
    return static_cast<int>(
        connections.readAll().count(u":%1 02 "_s.arg(m_port, 4, 16, QLatin1Char('0')).toUpper().toLatin1()));
}

void RawServer::setGreeting(const std::optional<QByteArray> &bytes, Then then)
{
    doThere([this, &bytes, then] { m_listener->setGreeting(bytes, then); });
}

void RawServer::setSecurity(const QSslConfiguration &security)
{
    doThere([this, &security] { m_listener->setSecurity(security); });
}

void RawServer::resume(qsizetype size)
{
    m_listener->post([listener = m_listener, size] { listener->resume(size); });
}

void RawServer::setIntake(std::optional<qint64> size, Then then)
{
    {
        const QMutexLocker lock(&m_mutex);
        m_intake = size;
        m_thenOfIntake = then;
    }
    doThere([this, size] { m_listener->setRoom(size ? 1 << 12 : 1 << 16, size ? 536 : 0); });
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

// Waits until it is done.
void RawServer::doThere(const std::function<void()> &work)
{
    const auto isDone = std::make_shared<std::promise<void>>();
    m_listener->post([&work, isDone] {
        work();
        isDone->set_value();
    });
    isDone->get_future().wait();
}
