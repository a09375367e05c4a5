#pragma once

#include "service/Catalogue.h"
#include "service/FeatureCache.h"
#include "service/HttpServer.h"
#include "service/Recognizer.h"
#include "service/ShortLinks.h"
#include "service/StaticFiles.h"

#include <memory>

class QSemaphore;

namespace MatchService
{

/// The service's answers: photos are recognised, records and files of the catalogue given out, addresses shortened.
class Service : public HttpHandler
{
public:
    /// Reads the pictures of all ads. Throws std::runtime_error that names a picture that cannot be read.
    Service(Catalogue catalogue, const FeatureCache &cache);
    ~Service() override;

    bool takesBody(const HttpRequest &request) const override;
    HttpResponse answer(const HttpRequest &request) override;
    HttpResponse refusal(int status, const QString &reason) const override;

private:
    HttpResponse upload(const HttpRequest &request);
    HttpResponse adData(const HttpRequest &request) const;
    HttpResponse shorten(const HttpRequest &request);
    HttpResponse redirect(const HttpRequest &request) const;

    Catalogue m_catalogue;
    Recognizer m_recognizer;
    StaticFiles m_files;
    ShortLinks m_links;
    /// As many photos are decoded and recognised at a time as there are cores.
    std::unique_ptr<QSemaphore> m_cores;
};

} // namespace MatchService
