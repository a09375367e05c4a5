#include "service/MatchService.h"

#include <opencv2/core/utility.hpp>

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QStandardPaths>

#include <malloc.h>

#include <csignal>
#include <cstdio>
#include <stdexcept>

namespace
{

struct Settings {
    MatchService::HttpServer::Options server;
    QString catalogue;
    QString cache;
};

unsigned number(const QCommandLineParser &parser, const QString &option, unsigned lowest, unsigned highest)
{
    bool isNumber = false;
    const unsigned value = parser.value(option).toUInt(&isNumber);
    if (!isNumber || value < lowest || value > highest) {
        throw std::runtime_error(
            QStringLiteral("--%1 takes a number from %2 to %3").arg(option).arg(lowest).arg(highest).toStdString());
    }
    return value;
}

Settings settingsFrom(const QCoreApplication &application)
{
    const QString cacheFolder = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation)
        + QStringLiteral("/brevanto-match-service");
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Answers photo uploads with the ads of a catalogue that they show."));
    parser.addHelpOption();
    parser.addOptions({
        {QStringLiteral("catalogue"), QStringLiteral("Folder of the ads."), QStringLiteral("folder"),
         QStringLiteral(BREVANTO_SERVICE_CATALOGUE)},
        {QStringLiteral("address"), QStringLiteral("Address to listen on."), QStringLiteral("address"),
         QStringLiteral("127.0.0.1")},
        {QStringLiteral("port"), QStringLiteral("Port to listen on; 0 takes a free one."), QStringLiteral("number"),
         QStringLiteral("8750")},
        {QStringLiteral("cache"), QStringLiteral("Folder that keeps what is known of the ads; empty for none."),
         QStringLiteral("folder"), cacheFolder},
        {QStringLiteral("timeout"),
         QStringLiteral("Seconds after which a silent connection is closed; a request, or an answer, may take three "
                        "times as long."),
         QStringLiteral("seconds"), QStringLiteral("10")},
        {QStringLiteral("connections"), QStringLiteral("Connections served at a time."), QStringLiteral("number"),
         QStringLiteral("64")},
    });
    parser.process(application);
    if (!parser.positionalArguments().isEmpty())
        throw std::runtime_error("Unknown argument " + parser.positionalArguments().first().toStdString());

    Settings settings;
    settings.server.address = parser.value(QStringLiteral("address"));
    settings.server.port = std::uint16_t(number(parser, QStringLiteral("port"), 0, 65535));
    settings.server.idleTimeout = std::chrono::seconds(number(parser, QStringLiteral("timeout"), 1, 3600));
    settings.server.requestTimeout = 3 * settings.server.idleTimeout;
    settings.server.connectionLimit = number(parser, QStringLiteral("connections"), 1, 10000);
    settings.catalogue = parser.value(QStringLiteral("catalogue"));
    settings.cache = parser.value(QStringLiteral("cache"));
    return settings;
}

} // namespace

int main(int argc, char **argv)
{
    // Blocked before any thread starts, so that the signals wait for sigwait below.
    sigset_t endings;
    sigemptyset(&endings);
    sigaddset(&endings, SIGINT);
    sigaddset(&endings, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &endings, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    // The pixels of a large photo go back to the system at once. The allocator would keep them for the thread that had
    // them, and each connection has a thread.
    mallopt(M_MMAP_THRESHOLD, 1 << 20);

    const QCoreApplication application(argc, argv);
    try {
        const Settings settings = settingsFrom(application);
        cv::setNumThreads(1);
        MatchService::Service service(MatchService::Catalogue(settings.catalogue),
                                      MatchService::FeatureCache(settings.cache));
        const MatchService::HttpServer server(settings.server, service);
        std::printf("listening on http://%s/\n", server.authority().constData());
        std::fflush(stdout);
        int signal = 0;
        sigwait(&endings, &signal);
        return 0;
    } catch (const std::exception &fault) {
        std::fprintf(stderr, "brevanto-match-service: %s\n", fault.what());
        return 1;
    }
}
