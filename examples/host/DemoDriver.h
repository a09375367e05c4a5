#pragma once

#include "WindowDriver.h"

#include <QElapsedTimer>

// Goes the way of a user through the application, by touch alone: button, camera screen, shutter, ad screen. It sees
// what is in the window, saves a numbered picture of each screen and prints what came of it.
class DemoDriver
{
public:
    DemoDriver(QQuickWindow *window, const QString &folder);

    // The process's exit code: 0 when hotspots came, or the word that nothing matched; 1, with a message on the
    // standard error stream, when a step did not come in time.
    int run();

private:
    void openCamera();
    void photograph();
    void report();
    void reportHotspots(const QList<QQuickItem *> &hotspots);
    void save(const char *name);

    QList<QQuickItem *> hotspots() const;
    QString alertText() const;

    WindowDriver m_user;
    QString m_folder;
    QElapsedTimer m_sinceShutter;
    int m_saved = 0;
};
