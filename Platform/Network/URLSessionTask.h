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
    URLSessionTask(URLSession::Completion completion, qint64 maximumBodySize, QObject *parent);

    // To be called once. `network` outlives the task.
    void start(const URLRequest &request, QNetworkAccessManager &network);

    // Ends the transfer; nothing is called any more.
    void cancel();

private:
    void send(const URLRequest &request, QNetworkAccessManager &network);
    void checkAnnouncedSize();
    void read();
    void conclude();
    void fail(const URLError &error);
    void complete(std::optional<QByteArray> data, std::optional<URLResponse> response, std::optional<URLError> error);

    URLSession::Completion m_completion;
    const qint64 m_maximumBodySize;
    std::unique_ptr<QNetworkReply> m_reply;
    QByteArray m_body;
    bool m_isComplete = false;
};

} // namespace Platform
