// Requests to the match service, over a connection: a line "METHOD PATH?QUERY", a line with the content type, which is
// the range as well, and the body.
#include "fuzz/Require.h"

#include "service/HttpServer.h"
#include "service/MatchService.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

namespace
{

using namespace MatchService;

// Passes on what the server has made of a request, and looks at what the client would get.
class Checked final : public HttpHandler
{
public:
    Checked()
    {
        const QDir root(QFileInfo(m_folder.path()).canonicalFilePath());
        root.mkpath(QStringLiteral("catalogue/ads"));
        // One small ad is enough to answer from. Beside the catalogue lies what must not be given out.
        QFile::copy(QStringLiteral(FUZZ_AD ".json"), root.filePath(QStringLiteral("catalogue/ads/one.json")));
        for (const char *name : {"catalogue/ads/one.jpg", "catalogue/.hidden.jpg", "secret.jpg"})
            QFile::copy(QStringLiteral(FUZZ_AD ".jpg"), root.filePath(QString::fromLatin1(name)));
        QFile::link(root.path(), root.filePath(QStringLiteral("catalogue/out")));
        m_catalogue = root.filePath(QStringLiteral("catalogue/"));
        m_service = std::make_unique<Service>(Catalogue(m_catalogue), FeatureCache(m_folder.path()));
    }

    bool takesBody(const HttpRequest &request) const override { return m_service->takesBody(request); }

    HttpResponse answer(const HttpRequest &request) override
    {
        HttpResponse response = m_service->answer(request);
        require(response.status >= 200 && response.status < 600, "an answer has a status");
        for (const auto &[name, value] : response.headers)
            require(!value.contains('\r') && !value.contains('\n'), "a header is one line");
        if (response.file) {
            const QString path = QStringLiteral("/proc/self/fd/%1").arg(response.file->file.get());
            const QString given = QFileInfo(path).symLinkTarget();
            require(given.startsWith(m_catalogue) && !given.mid(m_catalogue.size() - 1).contains(QStringLiteral("/.")),
                    "a file that is given out lies in the catalogue");
        }
        return response;
    }

    HttpResponse refusal(int status, const QString &reason) const override
    {
        return m_service->refusal(status, reason);
    }

private:
    const QTemporaryDir m_folder;
    QString m_catalogue;
    std::unique_ptr<Service> m_service;
};

// The server never ends, and so neither does what it answers with.
quint16 port()
{
    static const quint16 number = [] {
        static auto *handler = new Checked;
        HttpServer::Options options;
        options.port = 0;
        options.connectionLimit = 1000;
        static auto *server = new HttpServer(options, *handler);
        return server->authority().split(':').last().toUShort();
    }();
    return number;
}

int connection()
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    // The ports of one address are used up after so many connections in a minute, and one that the system gives may
    // have been used with this server a moment ago.
    for (int tries = 0; tries < 100; ++tries) {
        static quint32 count = 0;
        const int client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        address.sin_port = 0;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK + ++count % 200);
        require(bind(client, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0,
                "there is a free port");
        address.sin_port = htons(port());
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (connect(client, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0)
            return client;
        const int error = errno;
        std::fprintf(stderr, "connect: %s\n", std::strerror(error));
        require(error == EADDRNOTAVAIL, "the server listens");
        close(client);
    }
    require(false, "the server can be reached");
    return -1;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const qsizetype first = input.indexOf('\n');
    const qsizetype second = first < 0 ? -1 : input.indexOf('\n', first + 1);
    if (second < 0)
        return 0;
    const QByteArray extra = input.mid(first + 1, second - first - 1);
    const QByteArray body = input.mid(second + 1);
    const QByteArray request = input.left(first)
        + " HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\nContent-Type: " + extra + "\r\nRange: " + extra
        + (body.isEmpty() ? QByteArray() : "\r\nContent-Length: " + QByteArray::number(body.size())) + "\r\n\r\n"
        + body;

    const int client = connection();
    send(client, request.constData(), static_cast<std::size_t>(request.size()), MSG_NOSIGNAL);
    shutdown(client, SHUT_WR);
    char answer[1 << 16];
    while (recv(client, answer, sizeof answer, 0) > 0) { }
    close(client);
    return 0;
}
