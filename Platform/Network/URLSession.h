#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class QThread;

namespace Platform
{

struct URLRequest {
    QUrl url;
    QByteArray method; // empty means GET
    QHash<QByteArray, QByteArray> headers;
    QByteArray body;
    std::chrono::milliseconds timeout{60000};
};

// Why no response came. A response of any HTTP status is no error.
struct URLError {
    enum class Code {
        BadURL,
        UnsupportedURL,
        CannotConnect,
        TimedOut,
        ConnectionLost,
        TooManyRedirects,
        TooLarge,
        Secure,
        Unknown
    };
    Code code = Code::Unknown;
    QString description;
};

struct URLResponse {
    QUrl url;
    int status = 0;
    QHash<QByteArray, QByteArray> headers; // names in lower case
};

// Sends requests over http and https from a thread of its own. Follows redirects to these two, not from https to http.
// Keeps no cookies, credentials or responses.
class URLSession
{
public:
    // Exactly one of data and error is present; response comes with data. Runs on the session's thread, never before
    // dataTask has returned.
    using Completion = std::function<void(std::optional<QByteArray> data, std::optional<URLResponse> response,
                                          std::optional<URLError> error)>;
    struct Configuration {
        // A longer body, counted after decompression, is cut off with TooLarge.
        qint64 maximumBodySize = 64 * 1024 * 1024;
    };

    explicit URLSession(const Configuration &configuration);
    // Ends what is still running, without calling completions; waits for a completion that runs right now. May be
    // called from a completion.
    ~URLSession();

    // Starts the request. From any thread. Its time-out bounds the whole wait for the complete response.
    void dataTask(const URLRequest &request, Completion completion);

private:
    Q_DISABLE_COPY_MOVE(URLSession)
    class Worker;
    std::unique_ptr<QThread> m_thread;
    Worker *m_worker; // lives on the thread and goes with it
};

} // namespace Platform
