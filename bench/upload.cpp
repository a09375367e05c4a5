// An upload to a server on loopback, from the call to the completion block, beside libcurl and Qt's network access
// alone sending the same bytes.

#include "Timing.h"

#include "Brevanto/ServerManager/BrevantoServerManager.h"
#include "Brevanto/ServerManager/ServiceAddress.h"
#include "Made.h"
#include "support/RawServer.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSemaphore>

#include <memory>
#include <vector>

#ifdef BENCH_CURL
#include <curl/curl.h>
#endif

namespace
{

bool post(const QByteArray &jpeg)
{
    QSemaphore answered;
    bool isFound = false;
    const auto completed = [&](const std::optional<BrevantoMatchGroupList> &groups) {
        isFound = groups && !groups->isEmpty();
        answered.release();
    };
    BrevantoServerManager::sharedServerManager()->postCapturedImageData(jpeg, completed,
                                                                        [&](const auto &) { answered.release(); });
    answered.acquire();
    return isFound;
}

// What the SDK's session is made of, on the caller's own thread.
bool postWithQt(QNetworkAccessManager &manager, const QUrl &url, const RawServer::Request &request)
{
    QNetworkRequest plain(url);
    plain.setRawHeader("Content-Type", request.headers.value("content-type"));
    const std::unique_ptr<QNetworkReply> reply(manager.post(plain, request.body));
    QEventLoop loop;
    QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    return reply->error() == QNetworkReply::NoError && !reply->readAll().isEmpty();
}

#ifdef BENCH_CURL
std::size_t append(char *data, std::size_t size, std::size_t count, void *answer)
{
    static_cast<QByteArray *>(answer)->append(data, qsizetype(size * count));
    return size * count;
}

// One handle for all posts, which keeps its connection as the SDK does.
class CurlPoster
{
public:
    CurlPoster(const QString &url, const RawServer::Request &request)
        : m_body(request.body)
        , m_headers(curl_slist_append(nullptr, "Content-Type: " + request.headers.value("content-type")))
    {
        curl_easy_setopt(m_curl, CURLOPT_URL, url.toUtf8().constData());
        curl_easy_setopt(m_curl, CURLOPT_HTTPHEADER, m_headers);
        curl_easy_setopt(m_curl, CURLOPT_POSTFIELDS, m_body.constData());
        curl_easy_setopt(m_curl, CURLOPT_POSTFIELDSIZE, long(m_body.size()));
        curl_easy_setopt(m_curl, CURLOPT_WRITEFUNCTION, append);
    }
    ~CurlPoster()
    {
        curl_slist_free_all(m_headers);
        curl_easy_cleanup(m_curl);
    }
    Q_DISABLE_COPY_MOVE(CurlPoster)

    bool post()
    {
        QByteArray answer;
        curl_easy_setopt(m_curl, CURLOPT_WRITEDATA, &answer);
        return curl_easy_perform(m_curl) == CURLE_OK && !answer.isEmpty();
    }

private:
    CURL *m_curl = curl_easy_init();
    QByteArray m_body;
    curl_slist *m_headers;
};
#endif

template <typename Post>
void registerPost(const std::string &name, Post post)
{
    registerTimed(name, [post] {
        if (!post())
            qFatal("An upload failed");
        return true;
    });
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    RawServer server;
    const ServiceAddress::Override address(server.url(QString()));
    server.setAnswer(RawServer::Answer::json(Made::reply(3)));
#ifdef BENCH_CURL
    curl_global_init(CURL_GLOBAL_ALL);
    std::vector<std::unique_ptr<CurlPoster>> posters;
#endif
    QNetworkAccessManager manager;
    for (const int size : {20, 5}) {
        const std::string name = std::to_string(size) + " KB photo/";
        const QByteArray jpeg(size * 1000, 'x');
        if (!post(jpeg))
            qFatal("The upload failed");
        registerPost(name + "ours", [jpeg] { return post(jpeg); });
        const RawServer::Request request = server.requests().constLast();
        const QString url = server.url(QString::fromUtf8(request.target));
        registerPost(name + "QNetworkAccessManager",
                     [&manager, url, request] { return postWithQt(manager, QUrl(url), request); });
#ifdef BENCH_CURL
        posters.push_back(std::make_unique<CurlPoster>(url, request));
        registerPost(name + "libcurl", [poster = posters.back().get()] { return poster->post(); });
#endif
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
