#include "ObjectCensus.h"
#include "Soak.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QTimer>

#include <cstdio>

#include <malloc.h>

int main(int argc, char *argv[])
{
    // Blocks that live long, spread by chance over an arena for each of some twenty threads, hold whole pages there.
    // That is the allocator's, grows with anything that allocates, and would hide what is lost.
    mallopt(M_ARENA_MAX, 1);
    ObjectCensus::begin();
    qputenv("QSG_FIXED_ANIMATION_STEP", "1"); // transitions take their pictures, not their time
    QGuiApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{QStringLiteral("service"), QStringLiteral("Scheme, host and port."), QStringLiteral("address")},
                       {QStringLiteral("service-pid"), QStringLiteral("Its process."), QStringLiteral("number")},
                       {QStringLiteral("photos"), QStringLiteral("What the camera sees."), QStringLiteral("folder")},
                       {QStringLiteral("seed"), QStringLiteral("Of the user's whims."), QStringLiteral("number"),
                        QStringLiteral("1")},
                       {QStringLiteral("leak"), QStringLiteral("Leaves a screen and a file behind.")},
                       {QStringLiteral("count"), QStringLiteral("Captures to make."), QStringLiteral("number")}});
    parser.process(application);

    QTimer::singleShot(0, &application, [&parser] {
        try {
            Soak soak(parser.value(QStringLiteral("service")), parser.value(QStringLiteral("service-pid")).toLongLong(),
                      parser.value(QStringLiteral("photos")), parser.value(QStringLiteral("seed")).toUInt());
            const int count = parser.value(QStringLiteral("count")).toInt();
            QCoreApplication::exit(soak.run(count, parser.isSet(QStringLiteral("leak"))) ? 0 : 1);
        } catch (const StepFailed &failure) {
            std::printf("Soak: %s.\n", failure.what());
            QCoreApplication::exit(1);
        }
    });
    return QGuiApplication::exec();
}
