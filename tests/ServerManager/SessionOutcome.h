#pragma once

#include "Platform/Network/URLSession.h"

#include <future>
#include <memory>
#include <optional>

// What a session told about one request.
struct Outcome {
    std::optional<QByteArray> data;
    std::optional<Platform::URLResponse> response;
    std::optional<Platform::URLError> error;
};

inline std::future<Outcome> start(Platform::URLSession &session, const Platform::URLRequest &request)
{
    const auto promise = std::make_shared<std::promise<Outcome>>();
    session.dataTask(request, [promise](const auto &data, const auto &response, const auto &error) {
        promise->set_value(Outcome{data, response, error});
    });
    return promise->get_future();
}

inline Outcome outcome(Platform::URLSession &session, const Platform::URLRequest &request)
{
    return start(session, request).get();
}

inline QByteArray dataOf(const Outcome &outcome)
{
    if (outcome.error)
        qWarning("%s", qUtf8Printable(outcome.error->description));
    return outcome.data.value_or(QByteArray("no data"));
}

inline Platform::URLRequest get(const QString &url)
{
    Platform::URLRequest request;
    request.url = QUrl(url);
    return request;
}
