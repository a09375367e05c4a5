#pragma once

#include "service/HttpServer.h"

#include <optional>

namespace MatchService
{

/// Gives out the pictures, media and pages below one folder, whole or the one byte range that was asked for.
class StaticFiles
{
public:
    explicit StaticFiles(const QString &folder);

    /// Nothing when the path names no file that is meant to be given out, or one that lies outside the folder.
    std::optional<HttpResponse> answer(const HttpRequest &request) const;

private:
    QString resolved(const QString &path) const;

    QString m_folder;
};

} // namespace MatchService
