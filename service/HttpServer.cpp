#include "service/HttpServer.h"

#include <microhttpd.h>
#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <cstdio>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>

namespace MatchService
{

namespace
{

using Clock = std::chrono::steady_clock;

std::runtime_error fault(const QString &what, const QString &reason)
{
    return std::runtime_error((what + QStringLiteral(": ") + reason).toStdString());
}

FileDescriptor listeningSocket(const QString &address, std::uint16_t port)
{
    const QString name = QStringLiteral("Cannot listen on %1 port %2").arg(address).arg(port);
    addrinfo hints = {};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_PASSIVE;
    addrinfo *found = nullptr;
    if (const int error = getaddrinfo(address.toUtf8().constData(), std::to_string(port).c_str(), &hints, &found))
        throw fault(name, QString::fromLocal8Bit(gai_strerror(error)));
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owner(found, &freeaddrinfo);

    FileDescriptor listener(socket(found->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const int on = 1;
    setsockopt(listener.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    if (listener.get() < 0 || bind(listener.get(), found->ai_addr, found->ai_addrlen) != 0
        || listen(listener.get(), SOMAXCONN) != 0)
        throw fault(name, qt_error_string(errno));
    return listener;
}

QByteArray authorityOf(int socket)
{
    sockaddr_storage address = {};
    socklen_t length = sizeof address;
    auto *generic = reinterpret_cast<sockaddr *>(&address);
    char host[NI_MAXHOST] = {};
    char port[NI_MAXSERV] = {};
    if (getsockname(socket, generic, &length) != 0
        || getnameinfo(generic, length, host, sizeof host, port, sizeof port, NI_NUMERICHOST | NI_NUMERICSERV) != 0) {
        return {};
    }
    const QByteArray name(host);
    return (name.contains(':') ? '[' + name + ']' : name) + ':' + port;
}

MHD_Result collectHeader(void *headers, MHD_ValueKind, const char *name, const char *value)
{
    static_cast<QHash<QByteArray, QByteArray> *>(headers)->insert(QByteArray(name).toLower(), value);
    return MHD_YES;
}

MHD_Result collectArgument(void *arguments, MHD_ValueKind, const char *name, const char *value)
{
    static_cast<QHash<QString, QString> *>(arguments)->insert(QString::fromUtf8(name), QString::fromUtf8(value));
    return MHD_YES;
}

// The library takes no response while a body is coming in, so this one is written past it before it drops the
// connection.
MHD_Result refuseNow(MHD_Connection *connection, const HttpResponse &answer)
{
    QByteArray text = "HTTP/1.1 " + QByteArray::number(answer.status) + ' '
        + MHD_get_reason_phrase_for(unsigned(answer.status))
        + "\r\nConnection: close\r\nContent-Length: " + QByteArray::number(answer.body.size()) + "\r\n";
    for (const auto &[name, value] : answer.headers)
        text += name + ": " + value + "\r\n";
    text += "\r\n" + answer.body;
    const MHD_ConnectionInfo *info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD);
    if (info && ::send(info->connect_fd, text.constData(), std::size_t(text.size()), MSG_NOSIGNAL | MSG_DONTWAIT) > 0)
        shutdown(info->connect_fd, SHUT_WR);
    return MHD_NO;
}

} // namespace

FileDescriptor::~FileDescriptor()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

/// One request on its way in.
struct HttpServer::Exchange {
    HttpRequest request;
    Clock::time_point start = Clock::now();
};

/// Ends connections on which the head of a request takes too long to arrive, or an answer to be taken. The library
/// counts only how long nothing has moved, so that clients who move a byte now and then would hold all connections for
/// good.
class HttpServer::Watch
{
public:
    ~Watch()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_isEnding = true;
        }
        m_ending.notify_one();
        m_thread.join();
    }

    void waitFor(int socket, std::chrono::seconds limit)
    {
        const std::lock_guard lock(m_mutex);
        m_ends[socket] = Clock::now() + limit;
    }

    void forget(int socket)
    {
        const std::lock_guard lock(m_mutex);
        m_ends.erase(socket);
    }

private:
    void run()
    {
        std::unique_lock lock(m_mutex);
        while (!m_ending.wait_for(lock, std::chrono::milliseconds(500), [this] { return m_isEnding; })) {
            for (const auto &[socket, end] : m_ends) {
                if (Clock::now() > end)
                    shutdown(socket, SHUT_RDWR);
            }
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_ending;
    bool m_isEnding = false;
    /// The sockets that are waited for, and until when; none of them is closed before it is forgotten.
    std::map<int, Clock::time_point> m_ends;
    std::thread m_thread{[this] { run(); }};
};

struct HttpServer::Callbacks {
    static int socketOf(MHD_Connection *connection)
    {
        return MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD)->connect_fd;
    }

    static void connected(void *self, MHD_Connection *connection, void **, MHD_ConnectionNotificationCode code)
    {
        auto &server = *static_cast<HttpServer *>(self);
        if (code == MHD_CONNECTION_NOTIFY_STARTED)
            server.m_watch->waitFor(socketOf(connection), server.m_options.requestTimeout);
        else
            server.m_watch->forget(socketOf(connection));
    }

    static MHD_Result access(void *self, MHD_Connection *connection, const char *path, const char *method, const char *,
                             const char *data, std::size_t *size, void **context)
    {
        auto &server = *static_cast<HttpServer *>(self);
        if (!*context)
            return begin(server, connection, path, method, context);
        auto &exchange = *static_cast<Exchange *>(*context);
        if (*size == 0)
            return answer(server, connection, exchange.request);

        if (exchange.request.body.size() + qint64(*size) > server.m_options.bodyLimit)
            return refuseNow(connection, server.m_handler.refusal(413, QStringLiteral("The body is too large")));
        if (Clock::now() - exchange.start > server.m_options.requestTimeout)
            return refuseNow(connection, server.m_handler.refusal(408, QStringLiteral("The body takes too long")));
        exchange.request.body.append(data, qsizetype(*size));
        *size = 0;
        return MHD_YES;
    }

    static MHD_Result send(HttpServer &server, MHD_Connection *connection, HttpResponse answer)
    {
        const auto size = std::chrono::seconds((answer.file ? qint64(answer.file->length) : answer.body.size()) >> 20);
        server.m_watch->waitFor(socketOf(connection), server.m_options.requestTimeout + size);
        MHD_Response *response = answer.file
            ? MHD_create_response_from_fd_at_offset64(answer.file->length, answer.file->file.get(), answer.file->offset)
            : MHD_create_response_from_buffer(std::size_t(answer.body.size()), answer.body.data(),
                                              MHD_RESPMEM_MUST_COPY);
        if (!response)
            return MHD_NO;
        if (answer.file)
            answer.file->file.release();
        for (const auto &[name, value] : answer.headers)
            MHD_add_response_header(response, name.constData(), value.constData());
        const MHD_Result queued = MHD_queue_response(connection, unsigned(answer.status), response);
        MHD_destroy_response(response);
        return queued;
    }

    // What one request asks too much of leaves the others alone. Nothing may be thrown through the library.
    static HttpResponse answerOf(HttpHandler &handler, const HttpRequest &request)
    {
        try {
            return handler.answer(request);
        } catch (const std::exception &exception) {
            std::fprintf(stderr, "%s %s: %s\n", request.method.constData(), qPrintable(request.path), exception.what());
            return handler.refusal(500, QStringLiteral("The service cannot answer this"));
        }
    }

    static MHD_Result answer(HttpServer &server, MHD_Connection *connection, const HttpRequest &request)
    {
        HttpResponse response = answerOf(server.m_handler, request);
        // How long that took is not the client's fault: the library counts its silence from here on.
        MHD_set_connection_option(connection, MHD_CONNECTION_OPTION_TIMEOUT, 0U);
        MHD_set_connection_option(connection, MHD_CONNECTION_OPTION_TIMEOUT,
                                  unsigned(server.m_options.idleTimeout.count()));
        return send(server, connection, std::move(response));
    }

    static MHD_Result begin(HttpServer &server, MHD_Connection *connection, const char *path, const char *method,
                            void **context)
    {
        server.m_watch->forget(socketOf(connection));
        auto exchange = std::make_unique<Exchange>();
        HttpRequest &request = exchange->request;
        request.method = method;
        request.path = QString::fromUtf8(path);
        MHD_get_connection_values(connection, MHD_HEADER_KIND, &collectHeader, &request.headers);
        MHD_get_connection_values(connection, MHD_GET_ARGUMENT_KIND, &collectArgument, &request.arguments);
        if (const MHD_ConnectionInfo *info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD))
            request.localAuthority = authorityOf(info->connect_fd);
        *context = exchange.release();

        const qint64 length = request.headers.value("content-length").toLongLong();
        const bool hasBody = length > 0 || request.headers.contains("transfer-encoding");
        if (hasBody && !server.m_handler.takesBody(request))
            return answer(server, connection, request);
        if (length > server.m_options.bodyLimit)
            return send(server, connection, server.m_handler.refusal(413, QStringLiteral("The body is too large")));
        static_cast<Exchange *>(*context)->request.body.reserve(qsizetype(std::max(length, qint64{0})));
        return MHD_YES;
    }

    static void completed(void *self, MHD_Connection *connection, void **context, MHD_RequestTerminationCode code)
    {
        delete static_cast<Exchange *>(std::exchange(*context, nullptr));
        if (code == MHD_REQUEST_TERMINATED_COMPLETED_OK)
            connected(self, connection, nullptr, MHD_CONNECTION_NOTIFY_STARTED);
    }
};

HttpServer::HttpServer(Options options, HttpHandler &handler)
    : m_options(std::move(options))
    , m_handler(handler)
{
    FileDescriptor listener = listeningSocket(m_options.address, m_options.port);
    m_watch = std::make_unique<Watch>();
    m_authority = authorityOf(listener.get());
    m_daemon = MHD_start_daemon(MHD_USE_THREAD_PER_CONNECTION | MHD_USE_INTERNAL_POLLING_THREAD | MHD_USE_POLL, 0,
                                nullptr, nullptr, &Callbacks::access, this, MHD_OPTION_LISTEN_SOCKET, listener.get(),
                                MHD_OPTION_NOTIFY_COMPLETED, &Callbacks::completed, this, MHD_OPTION_NOTIFY_CONNECTION,
                                &Callbacks::connected, this, MHD_OPTION_CONNECTION_LIMIT, m_options.connectionLimit,
                                MHD_OPTION_CONNECTION_TIMEOUT, unsigned(m_options.idleTimeout.count()), MHD_OPTION_END);
    if (!m_daemon)
        throw fault(QStringLiteral("Cannot start the HTTP server"), qt_error_string(errno));
    listener.release();
}

HttpServer::~HttpServer()
{
    MHD_stop_daemon(m_daemon);
}

} // namespace MatchService
