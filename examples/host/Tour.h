#pragma once

#include "WindowDriver.h"

#include <QElapsedTimer>
#include <QUrl>

#include <vector>

class DemoNetwork;

// Everything in the application once: each screen, popover, alert and action, by touch or by keyboard alone; except
// what a camera that works and a service in order never show (alerts about permissions and about data that lacks).
// Leaves a numbered picture of each in a folder, and an index.html there that says what the pictures show. The camera
// has to see the photos of script/demo, in their order.
class Tour
{
public:
    // `network` and `servicePid`, the process of the match service, are there to be taken away and given back.
    Tour(QQuickWindow *window, WindowDriver::Manner manner, const QString &folder, DemoNetwork &network,
         qint64 servicePid);
    ~Tour();

    // The process's exit code: 0 when every step came about.
    int run();

private:
    class Opener;

    void host();
    void camera();
    void firstAd();
    void legend();
    void popover();
    void moreInformation();
    void video();
    void call();
    void gallery();
    void buy();
    void noMatch();
    void audio();
    void hotspotWithoutData();
    void offline();
    void silentService();
    void catalogue();
    void recents();
    void close();

    void photograph();
    void choose(const QString &hotspot, const QString &option);
    void waitForPage();
    void leaveAd();
    void pauseClip(const QString &hotspot);

    void removeOldPictures() const;
    // Takes the picture, once nothing moves, and checks that every control on it can be called by name.
    void show(const char *name, const QString &caption);
    void showAtOnce(const char *name, const QString &caption);
    void writeIndex() const;

    struct Picture {
        QString file;
        QString caption;
    };

    WindowDriver m_user;
    WindowDriver::Manner m_manner;
    QString m_folder;
    DemoNetwork &m_network;
    qint64 m_servicePid;
    std::unique_ptr<Opener> m_opener;
    std::vector<Picture> m_pictures;
    QElapsedTimer m_elapsed;
};
