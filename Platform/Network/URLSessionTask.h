#pragma once

#include "Platform/Network/URLSession.h"

#include <QNetworkReply>
#include <QObject>

class QNetworkAccessManager;

namespace Platform
{

// One request of a session, from its start to its completion. Lives on the session's thread and deletes itself after
// the completion; deleted before, it ends the transfer and calls nothing.
class URLSessionTask final : public QObject
{
public:
    // `network` outlives the task.
    URLSessionTask(const URLRequest &request, URLSession::Completion completion,
                   const URLSession::Configuration &configuration, QNetworkAccessManager &network, QObject *parent);

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
    QNetworkAccessManager &m_network;
    std::chrono::milliseconds m_begin{0};
    std::chrono::milliseconds m_lastProgress{0};
    std::unique_ptr<QNetworkReply> m_reply;
    QByteArray m_body;
    int m_redirectCount = 0;
    bool m_isComplete = false;
};

} // namespace Platform
