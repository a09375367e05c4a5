#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QString>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

struct MHD_Daemon;

namespace MatchService
{

struct HttpRequest {
    QByteArray method;
    /// Decoded, with its leading slash.
    QString path;
    /// Names in lower case.
    QHash<QByteArray, QByteArray> headers;
    QHash<QString, QString> arguments;
    QByteArray body;
    /// Address and port that the client reached, as in "127.0.0.1:8750".
    QByteArray localAuthority;
};

/// Owns an open file.
class FileDescriptor
{
public:
    explicit FileDescriptor(int descriptor = -1)
        : m_descriptor(descriptor)
    {
    }
    FileDescriptor(FileDescriptor &&other) noexcept
        : m_descriptor(other.release())
    {
    }
    FileDescriptor &operator=(FileDescriptor &&other) noexcept
    {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    ~FileDescriptor();

    int get() const { return m_descriptor; }
    int release() { return std::exchange(m_descriptor, -1); }

private:
    int m_descriptor;
};

/// A run of bytes of an open file.
struct FileSlice {
    FileDescriptor file;
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
};

struct HttpResponse {
    int status = 200;
    QList<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body;
    /// Sent in place of `body` when set.
    std::optional<FileSlice> file;
};

/// Answers requests, from several threads at once.
class HttpHandler
{
public:
    virtual ~HttpHandler() = default;

    /// Whether the request's body is wanted. A body that is not wanted is answered without being read.
    virtual bool takesBody(const HttpRequest &request) const = 0;
    virtual HttpResponse answer(const HttpRequest &request) = 0;
    /// What a client gets whose request the server itself refuses.
    virtual HttpResponse refusal(int status, const QString &reason) const = 0;
};

/// HTTP/1.1 over one listening socket, one thread per connection, from construction to destruction.
class HttpServer
{
public:
    struct Options {
        QString address = QStringLiteral("127.0.0.1");
        /// 0 takes a free port.
        std::uint16_t port = 8750;
        unsigned connectionLimit = 64;
        /// An upload has some 5 KB. As many of these as there may be connections can be held at once.
        qint64 bodyLimit = qint64{4} * 1024 * 1024;
        /// A connection on which nothing moves for this long is closed.
        std::chrono::seconds idleTimeout{10};
        /// The head of a request, and then its body, must each arrive in this time, however steadily they trickle; the
        /// answer must be taken in as much, and a second more for each mebibyte.
        std::chrono::seconds requestTimeout{30};
    };

    /// Throws std::runtime_error with the reason when it cannot listen. `handler` must outlive the server.
    HttpServer(Options options, HttpHandler &handler);
    ~HttpServer();

    HttpServer(const HttpServer &) = delete;
    HttpServer &operator=(const HttpServer &) = delete;

    /// Address and port on which it listens, as in "127.0.0.1:8750".
    QByteArray authority() const { return m_authority; }

private:
    struct Exchange;
    struct Callbacks;
    class Watch;

    Options m_options;
    HttpHandler &m_handler;
    QByteArray m_authority;
    std::unique_ptr<Watch> m_watch;
    MHD_Daemon *m_daemon = nullptr;
};

} // namespace MatchService
