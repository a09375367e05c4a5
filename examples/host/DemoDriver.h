#pragma once

#include <QElapsedTimer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>

#include <functional>
#include <memory>

class QPointingDevice;

// Goes the way of a user through the application, by touch alone: button, camera screen, shutter, ad screen. It sees
// what is in the window, saves a numbered picture of each screen and prints what came of it.
class DemoDriver
{
public:
    DemoDriver(QQuickWindow *window, const QString &folder);
    ~DemoDriver();

    // The process's exit code: 0 when hotspots came, or the word that nothing matched; 1, with a message on the
    // standard error stream, when a step did not come in time.
    int run();

private:
    void openCamera();
    void photograph();
    void report();
    void reportHotspots(const QList<QQuickItem *> &hotspots);

    // Each of these ends the run with `what` when its bound passes.
    void require(const std::function<bool()> &condition, const char *what, std::chrono::milliseconds bound);
    QQuickItem *requireItem(const QString &objectName, const char *what);

    void tap(const QQuickItem *item);
    void settle();
    void save(const char *name);

    QList<QQuickItem *> hotspots() const;
    QString alertText() const;

    QQuickWindow *m_window;
    QString m_folder;
    std::unique_ptr<QPointingDevice> m_finger;
    QElapsedTimer m_sinceShutter;
    int m_saved = 0;
};
