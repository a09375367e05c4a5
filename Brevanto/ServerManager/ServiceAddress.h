#pragma once

#include <QString>

// Where the service and the URL shortener live: constants of the build.
namespace ServiceAddress
{

// Base URL of the service.
QString baseURL();

// Address of the shortener's call, without a query.
QString shortenURL();

// Access token of the SDK at the shortener.
QString shortenerToken();

// Aims all requests that are built from now on at a test's own server, for as long as the object lives.
class Override
{
public:
    // `server` is its scheme, host and port, without a path.
    explicit Override(const QString &server);
    ~Override();

private:
    Q_DISABLE_COPY_MOVE(Override)
};

} // namespace ServiceAddress
