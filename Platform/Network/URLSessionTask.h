#pragma once

#include "Platform/Network/URLSession.h"

#include <QNetworkReply>
#include <QObject>

class QNetworkAccessManager;

namespace Platform
{

// What carries the requests of a session: Qt's manager with its connections and its thread. As Qt reads the head of an
// answer, or the length of a chunk, nothing else happens on that thread for as long as the server goes on sending;
// after a transfer that was cut short it may be busy for good. Then the session goes on with another carrier, and this
// one ends, after its last task, without anybody waiting for it.
class URLCarrier
{
public:
    URLCarrier();
    ~URLCarrier();

    QNetworkAccessManager &manager() const { return *m_manager; }
    // A transfer was cut short.
    void setSuspect() { m_isSuspect = true; }
    bool isSuspect() const { return m_isSuspect; }

private:
    Q_DISABLE_COPY_MOVE(URLCarrier)
    std::unique_ptr<QNetworkAccessManager> m_manager;
    bool m_isSuspect = false;
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
