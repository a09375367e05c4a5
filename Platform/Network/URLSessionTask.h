#pragma once

#include "Platform/Network/URLSession.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>

namespace Platform
{

// What carries the requests of a session: Qt's manager with its connections and its thread. A connection on which a
// transfer was cut short may stay as it is, and Qt has six for each host; so the session goes on with another carrier
// then, and this one ends, with all its connections, after its last task.
struct URLCarrier {
    QNetworkAccessManager manager;
    bool isSpent = false; // a transfer was cut short, or went wrong
};

// One request of a session, from its start to its completion. Lives on the session's thread and deletes itself after
// the completion; deleted before, it ends the transfer and calls nothing.
class URLSessionTask final : public QObject
{
public:
    URLSessionTask(URLRequest request, URLSession::Completion completion,
                   const URLSession::Configuration &configuration, const std::shared_ptr<URLCarrier> &carrier,
                   QObject *parent);

    // To be called once.
    void start();

    // Ends the transfer; nothing is called any more.
    void cancel();

private:
    void send();
    void noteProgress();
    void checkTime();
    void checkAnnouncedSize();
    void read();
    void conclude();
    bool isInterim() const;
    void refuseInterim();
    bool isRedirected() const;
    void redirect();
    bool isWholeBody() const;
    void fail(const URLError &error);
    void complete(std::optional<QByteArray> data, std::optional<URLResponse> response, std::optional<URLError> error);

    URLRequest m_request; // as redirected so far
    URLSession::Completion m_completion;
    const qint64 m_maximumBodySize;
    const std::chrono::milliseconds m_maximumDuration;
    const std::shared_ptr<URLCarrier> m_carrier;
    std::chrono::milliseconds m_begin{0};
    std::chrono::milliseconds m_lastProgress{0};
    std::unique_ptr<QNetworkReply> m_reply;
    QByteArray m_body;
    int m_redirectCount = 0;
    bool m_isComplete = false;
};

} // namespace Platform
