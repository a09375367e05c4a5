#include "Platform/Network/URLSessionTask.h"

#include "Platform/Foundation/Clock.h"
#include "Platform/Network/WebAddress.h"

#include <QNetworkRequest>

#include <algorithm>
#include <utility>

namespace Platform
{

namespace
{

constexpr int maximumRedirects = 16;
// A caller who times the same span hears his own timer first, also when his thread is busy for a moment.
constexpr std::chrono::milliseconds leeway{500};
// What the transport may hold of an answer that comes faster than it is taken. Without a limit Qt does not even tell of
// an answer that comes without a pause before its end.
constexpr qint64 readBufferSize = 1 << 20;

std::optional<URLError> fault(const QUrl &url)
{
    // Qt would open files, resources and data addresses as well.
    if (isWebAddress(url))
        return std::nullopt;
    const bool isOtherScheme =
        url.isValid() && url.scheme() != QLatin1String("http") && url.scheme() != QLatin1String("https");
    if (isOtherScheme)
        return URLError{URLError::Code::UnsupportedURL, QStringLiteral("unsupported URL")};
    return URLError{URLError::Code::BadURL, QStringLiteral("bad URL")};
}

QNetworkRequest networkRequest(const URLRequest &request)
{
    QNetworkRequest result(request.url);
    // Where these are missing, Qt tells the user's languages, and calls itself a browser.
    result.setRawHeader("Accept-Language", "en");
    result.setRawHeader("User-Agent", "Brevanto");
    for (auto header = request.headers.cbegin(); header != request.headers.cend(); ++header)
        result.setRawHeader(header.key(), header.value());
    result.setRawHeader("Accept-Encoding", "identity");
    // Qt holds a head of HTTP/2 to no size.
    result.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    result.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    return result;
}

int statusOf(const QNetworkReply &reply)
{
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

// Qt reports HTTP status 400 and up as errors, these among them.
bool isStatusError(const QNetworkReply &reply)
{
    if (statusOf(reply) < 400)
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
        return URLError::Code::Secure;
    default:
        return URLError::Code::Unknown;
    }
}

URLResponse responseOf(const QNetworkReply &reply)
{
    URLResponse response{reply.url(), statusOf(reply), {}};
    for (const QNetworkReply::RawHeaderPair &header : reply.rawHeaderPairs())
        response.headers.insert(header.first.toLower(), header.second);
    return response;
}

} // namespace

URLSessionTask::URLSessionTask(URLRequest request, URLSession::Completion completion,
                               const URLSession::Configuration &configuration,
                               const std::shared_ptr<URLCarrier> &carrier, QObject *parent)
    : QObject(parent)
    , m_request(std::move(request))
    , m_completion(std::move(completion))
    , m_maximumBodySize(
          std::min(configuration.maximumBodySize, m_request.maximumBodySize.value_or(configuration.maximumBodySize)))
    , m_maximumDuration(configuration.maximumDuration)
    , m_carrier(carrier)
{
}

void URLSessionTask::start()
{
    if (const auto error = fault(m_request.url)) {
        fail(*error);
        return;
    }
    m_begin = m_lastProgress = Clock::current().now();
    send();
    checkTime();
}

void URLSessionTask::cancel()
{
    if (m_isComplete)
        return;
    m_isComplete = true;
    m_completion = nullptr;
    if (m_reply) {
        m_reply->disconnect(this);
        m_carrier->isSpent = m_carrier->isSpent || !m_reply->isFinished();
        m_reply->abort();
    }
    deleteLater();
}

void URLSessionTask::send()
{
    const QNetworkRequest outgoing = networkRequest(m_request);
    m_reply.reset(m_request.method == URLRequest::Method::Post ? m_carrier->manager.post(outgoing, m_request.body)
                                                               : m_carrier->manager.get(outgoing));
    m_reply->setReadBufferSize(readBufferSize);
    connect(m_reply.get(), &QNetworkReply::uploadProgress, this, &URLSessionTask::noteProgress);
    connect(m_reply.get(), &QNetworkReply::metaDataChanged, this, &URLSessionTask::checkAnnouncedSize);
    connect(m_reply.get(), &QNetworkReply::readyRead, this, &URLSessionTask::read);
    connect(m_reply.get(), &QNetworkReply::finished, this, &URLSessionTask::conclude);
}

void URLSessionTask::noteProgress()
{
    m_lastProgress = Clock::current().now();
}

// Wakes when the time would be up if nothing moved any more, and looks again.
void URLSessionTask::checkTime()
{
    const auto end = std::min(m_lastProgress + m_request.timeout, m_begin + m_maximumDuration) + leeway;
    const auto rest = end - Clock::current().now();
    if (rest.count() > 0)
        Clock::current().after(rest, this, [this] { checkTime(); });
    else
        fail({URLError::Code::TimedOut, QStringLiteral("The request timed out.")});
}

void URLSessionTask::checkAnnouncedSize()
{
    noteProgress();
    if (m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong() > m_maximumBodySize)
        fail({URLError::Code::TooLarge, QStringLiteral("The response is too large.")});
}

void URLSessionTask::read()
{
    // Never more than one byte too many.
    const QByteArray piece = m_reply->read(qMin(m_reply->bytesAvailable(), m_maximumBodySize + 1 - m_body.size()));
    if (!piece.isEmpty())
        noteProgress();
    m_body += piece;
    if (m_body.size() > m_maximumBodySize)
        fail({URLError::Code::TooLarge, QStringLiteral("The response is too large.")});
}

void URLSessionTask::conclude()
{
    read();
    if (m_isComplete)
        return;
    if (isInterim())
        refuseInterim();
    else if (isRedirected())
        redirect();
    else if (m_reply->error() != QNetworkReply::NoError && !isStatusError(*m_reply))
        fail({errorCode(m_reply->error()), m_reply->errorString()});
    else if (!isWholeBody())
        fail({URLError::Code::ConnectionLost, QStringLiteral("The connection was lost.")});
    else
        complete(std::move(m_body), responseOf(*m_reply), std::nullopt);
}

// Qt takes all but 100 for the answer; the real one, which comes after it, might be taken for that of a next request.
bool URLSessionTask::isInterim() const
{
    const int status = statusOf(*m_reply);
    return status >= 100 && status < 200;
}

void URLSessionTask::refuseInterim()
{
    m_carrier->isSpent = true;
    fail({URLError::Code::Unknown, QStringLiteral("The server sent no final response.")});
}

bool URLSessionTask::isRedirected() const
{
    switch (statusOf(*m_reply)) {
    case 301:
    case 302:
    case 303:
    case 307:
    case 308:
        return m_reply->error() == QNetworkReply::NoError && m_reply->hasRawHeader("Location");
    default:
        return false;
    }
}

// Not left to Qt, which loses bodies that are sent again and sends more requests than the limit allows.
void URLSessionTask::redirect()
{
    const QUrl url = m_request.url.resolved(QUrl::fromEncoded(m_reply->rawHeader("Location")));
    if (const auto error = fault(url)) {
        fail(*error);
        return;
    }
    if (m_request.url.scheme() == QLatin1String("https") && url.scheme() != QLatin1String("https")) {
        fail({URLError::Code::Secure, QStringLiteral("The server redirects to an insecure address.")});
        return;
    }
    if (++m_redirectCount > maximumRedirects) {
        fail({URLError::Code::TooManyRedirects, QStringLiteral("The server redirects too often.")});
        return;
    }
    if (statusOf(*m_reply) <= 303) {
        m_request.method = URLRequest::Method::Get;
        m_request.body.clear();
        m_request.headers.removeIf(
            [](const auto &header) { return header.key().compare("Content-Type", Qt::CaseInsensitive) == 0; });
    }
    m_request.url = url;
    m_body.clear();
    m_reply->disconnect(this);
    m_reply.release()->deleteLater();
    send();
}

// Qt takes a body that was cut short for a whole one when the status is an error, and at times in other cases.
bool URLSessionTask::isWholeBody() const
{
    return m_body.size() >= m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
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
