#pragma once

#include "Platform/Foundation/Export.h"

#include <QByteArray>
#include <QHash>
#include <QMutex>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class QThread;

namespace Platform
{

// What to send.
struct URLRequest {
    // HTTP method.
    enum class Method { Get, Post };

    QUrl url; // http or https
    Method method = Method::Get; // how it is sent
    QHash<QByteArray, QByteArray> headers; // beside those that HTTP needs
    QByteArray body; // of a POST
    // How long the transfer may stand still: it starts anew with every piece of the body that goes out and of the
    // answer that comes in. The request ends up to half a second later, so that a caller who times the same span sees
    // his own end first.
    std::chrono::milliseconds timeout{60000};
    // In bytes. A longer body of the answer is cut off with TooLarge. The session's limit holds beside it.
    std::optional<qint64> maximumBodySize;
};

// Why no response came. A response of any HTTP status is no error.
struct URLError {
    // What went wrong.
    enum class Code {
        BadURL, // no address, or one that is not valid
        UnsupportedURL, // neither http nor https
        CannotConnect, // no such host, or nobody listens
        TimedOut, // nothing moved for too long, or all took too long
        ConnectionLost, // before the answer was whole
        TooManyRedirects, // in circles, or nearly
        TooLarge, // the body, beyond a limit
        Secure, // no TLS, a certificate that does not hold, or a redirect from https to http
        Unknown // anything else
    };
    Code code = Code::Unknown; // for programs
    QString description; // for people, in English
};

// How the server answered.
struct URLResponse {
    QUrl url; // the last one, after redirects
    int status = 0; // of HTTP
    QHash<QByteArray, QByteArray> headers; // names in lower case
};

// Sends requests over http and https from a thread of its own. Follows redirects to these two, not from https to http.
// Keeps no cookies, credentials or responses.
//
// A body that falls short of the length announced is ConnectionLost. Bodies are asked for uncompressed, because a
// compressed one has no length to tell. Where a server announces none, one that is cut off may pass for a whole one.
class BREVANTO_EXPORT URLSession
{
public:
    // Exactly one of data and error is present; response comes with data. Runs on the session's thread, never inside
    // dataTask.
    using Completion = std::function<void(std::optional<QByteArray> data, std::optional<URLResponse> response,
                                          std::optional<URLError> error)>;
    // The limits of a session.
    struct Configuration {
        // In bytes. A longer body is cut off with TooLarge. Little more than that is held in memory, however much is
        // sent.
        qint64 maximumBodySize = qint64{64} * 1024 * 1024;
        // The longest that one request takes, redirects included, before it ends with TimedOut; so that an answer that
        // only drips ends too.
        std::chrono::milliseconds maximumDuration{60000};
    };

    // Starts the session's thread.
    explicit URLSession(const Configuration &configuration);
    ~URLSession();

    // Ends what is still running, without calling completions, and then the thread; waits for a completion that runs
    // right now, unless it is called from one. The session does nothing from then on. Its end does the same. From any
    // thread.
    void invalidate();

    // Starts the request. From any thread.
    void dataTask(const URLRequest &request, Completion completion);

private:
    Q_DISABLE_COPY_MOVE(URLSession)
    class Worker;
    QMutex m_mutex;
    std::unique_ptr<QThread> m_thread; // null once invalidated
    Worker *m_worker; // lives on the thread and goes with it
};

} // namespace Platform
