#include "Platform/Network/URLSessionTask.h"

#include "Platform/Foundation/Clock.h"

#include <QNetworkAccessManager>
#include <QNetworkRequest>

#include <utility>

namespace Platform
{

namespace
{

constexpr int maximumRedirects = 16;

std::optional<URLError> fault(const QUrl &url)
{
    if (url.isEmpty() || !url.isValid())
        return URLError{URLError::Code::BadURL, QStringLiteral("bad URL")};
    // Qt would open files, resources and data addresses as well.
    if (url.scheme() != QLatin1String("http") && url.scheme() != QLatin1String("https"))
        return URLError{URLError::Code::UnsupportedURL, QStringLiteral("unsupported URL")};
    if (url.host().isEmpty())
        return URLError{URLError::Code::BadURL, QStringLiteral("bad URL: no host")};
    return std::nullopt;
}

QNetworkRequest networkRequest(const URLRequest &request, qint64 maximumBodySize)
{
    QNetworkRequest result(request.url);
    for (auto header = request.headers.cbegin(); header != request.headers.cend(); ++header)
        result.setRawHeader(header.key(), header.value());
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    result.setMaximumRedirectsAllowed(maximumRedirects);
    result.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    // A well compressed body is no attack as long as it stays within what the session takes anyway.
    result.setDecompressedSafetyCheckThreshold(maximumBodySize);
    return result;
}

// Qt reports HTTP status 400 and up as errors, these among them.
bool isStatusError(const QNetworkReply &reply)
{
    if (reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() < 400)
        return false;
    switch (reply.error()) {
    case QNetworkReply::ContentAccessDenied:
    case QNetworkReply::ContentOperationNotPermittedError:
    case QNetworkReply::ContentNotFoundError:
    case QNetworkReply::ContentConflictError:
    case QNetworkReply::ContentGoneError:
    case QNetworkReply::UnknownContentError:
    case QNetworkReply::AuthenticationRequiredError:
    case QNetworkReply::ProxyAuthenticationRequiredError:
    case QNetworkReply::ProtocolInvalidOperationError:
    case QNetworkReply::InternalServerError:
    case QNetworkReply::OperationNotImplementedError:
    case QNetworkReply::ServiceUnavailableError:
    case QNetworkReply::UnknownServerError:
        return true;
    default:
        return false;
    }
}

URLError::Code errorCode(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::HostNotFoundError:
    case QNetworkReply::UnknownNetworkError:
    case QNetworkReply::ProxyConnectionRefusedError:
    case QNetworkReply::ProxyNotFoundError:
        return URLError::Code::CannotConnect;
    case QNetworkReply::TimeoutError:
    case QNetworkReply::ProxyTimeoutError:
        return URLError::Code::TimedOut;
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::ProxyConnectionClosedError:
        return URLError::Code::ConnectionLost;
    case QNetworkReply::SslHandshakeFailedError:
    case QNetworkReply::InsecureRedirectError:
        return URLError::Code::Secure;
    case QNetworkReply::TooManyRedirectsError:
        return URLError::Code::TooManyRedirects;
    case QNetworkReply::ProtocolUnknownError:
        return URLError::Code::UnsupportedURL;
    default:
        return URLError::Code::Unknown;
    }
}

URLResponse responseOf(const QNetworkReply &reply)
{
    URLResponse response{reply.url(), reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), {}};
    for (const QNetworkReply::RawHeaderPair &header : reply.rawHeaderPairs())
        response.headers.insert(header.first.toLower(), header.second);
    return response;
}

} // namespace

URLSessionTask::URLSessionTask(URLSession::Completion completion, qint64 maximumBodySize, QObject *parent)
    : QObject(parent)
    , m_completion(std::move(completion))
    , m_maximumBodySize(maximumBodySize)
{
}

void URLSessionTask::start(const URLRequest &request, QNetworkAccessManager &network)
{
    if (const auto error = fault(request.url)) {
        fail(*error);
        return;
    }
    send(request, network);
    Clock::current().after(request.timeout, this, [this] {
        fail({URLError::Code::TimedOut, QStringLiteral("The request timed out.")});
    });
}

void URLSessionTask::cancel()
{
    if (m_isComplete)
        return;
    m_isComplete = true;
    m_completion = nullptr;
    if (m_reply) {
        m_reply->disconnect(this);
        m_reply->abort();
    }
    deleteLater();
}

void URLSessionTask::send(const URLRequest &request, QNetworkAccessManager &network)
{
    const QNetworkRequest outgoing = networkRequest(request, m_maximumBodySize);
    if (request.method.isEmpty() || request.method == "GET")
        m_reply.reset(network.get(outgoing));
    else if (request.method == "POST")
        m_reply.reset(network.post(outgoing, request.body));
    else
        m_reply.reset(network.sendCustomRequest(outgoing, request.method, request.body));
    connect(m_reply.get(), &QNetworkReply::metaDataChanged, this, &URLSessionTask::checkAnnouncedSize);
    connect(m_reply.get(), &QNetworkReply::readyRead, this, &URLSessionTask::read);
    connect(m_reply.get(), &QNetworkReply::finished, this, &URLSessionTask::conclude);
}

void URLSessionTask::checkAnnouncedSize()
{
    if (m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong() > m_maximumBodySize)
        fail({URLError::Code::TooLarge, QStringLiteral("The response is too large.")});
}

void URLSessionTask::read()
{
    m_body += m_reply->readAll();
    if (m_body.size() > m_maximumBodySize)
        fail({URLError::Code::TooLarge, QStringLiteral("The response is too large.")});
}

void URLSessionTask::conclude()
{
    read();
    if (m_isComplete)
        return;
    if (m_reply->error() != QNetworkReply::NoError && !isStatusError(*m_reply)) {
        fail({errorCode(m_reply->error()), m_reply->errorString()});
        return;
    }
    complete(std::move(m_body), responseOf(*m_reply), std::nullopt);
}

void URLSessionTask::fail(const URLError &error)
{
    complete(std::nullopt, std::nullopt, error);
}

void URLSessionTask::complete(std::optional<QByteArray> data, std::optional<URLResponse> response,
                              std::optional<URLError> error)
{
    if (m_isComplete)
        return;
    const auto completion = std::move(m_completion);
    cancel();
    if (completion)
        completion(std::move(data), std::move(response), std::move(error));
}

} // namespace Platform
