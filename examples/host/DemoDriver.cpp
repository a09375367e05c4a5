#include "DemoDriver.h"

#include <QDir>

#include <algorithm>
#include <cstdio>

using namespace std::chrono_literals;

namespace
{

constexpr int firstHotspotTag = 11223344;

void print(const QString &line)
{
    std::puts(qPrintable(line));
    std::fflush(stdout);
}

// The title of the hotspot's match, as its control is called.
QString nameOf(QQuickItem *hotspot)
{
    QString name = WindowDriver::spokenName(hotspot);
    const QList<QQuickItem *> children = hotspot->childItems();
    for (QQuickItem *child : children) {
        if (name.isEmpty())
            name = nameOf(child);
    }
    return name;
}

// Where the picture lies within the view that shows it.
QRectF pictureRect(QQuickItem *imageView, const QList<QQuickItem *> &items)
{
    for (QQuickItem *item : items) {
        if (item->inherits("QQuickImage"))
            return item->mapRectToItem(imageView, item->boundingRect());
        const QRectF rect = pictureRect(imageView, item->childItems());
        if (!rect.isEmpty())
            return rect;
    }
    return {};
}

} // namespace

DemoDriver::DemoDriver(QQuickWindow *window, const QString &folder)
    : m_user(window, WindowDriver::Manner::Touch)
    , m_folder(folder)
{
}

int DemoDriver::run()
{
    try {
        if (!QDir().mkpath(m_folder))
            throw StepFailed("cannot make the folder for the pictures");
        openCamera();
        photograph();
        report();
        return 0;
    } catch (const StepFailed &failure) {
        std::fprintf(stderr, "Demo: %s.\n", failure.what());
        save("failure");
        return 1;
    }
}

void DemoDriver::openCamera()
{
    m_user.require([this] { return m_user.window()->isExposed(); }, QStringLiteral("the window did not open"));
    QQuickItem *button = m_user.requireItem(QStringLiteral("scanButton"));
    m_user.settle();
    save("host");
    m_user.activate(button);
}

void DemoDriver::photograph()
{
    QQuickItem *shutter = m_user.requireItem(QStringLiteral("captureButton"));
    m_user.settle();
    m_user.require([this] { return !alertText().isEmpty() || m_user.showsPicture(); },
                   QStringLiteral("the camera's picture did not come"));
    if (!alertText().isEmpty())
        throw StepFailed(QStringLiteral("the camera screen says: ") + alertText());
    m_user.require([shutter] { return shutter->isEnabled(); }, QStringLiteral("the shutter stayed disabled"));
    m_user.settle();
    save("camera");
    m_sinceShutter.start();
    m_user.activate(shutter);
}

void DemoDriver::report()
{
    m_user.require([this] { return !hotspots().isEmpty() || !alertText().isEmpty(); }, QStringLiteral("no answer came"),
                   40s);
    const qint64 elapsed = m_sinceShutter.elapsed();
    const QString alert = alertText();
    m_user.settle();
    if (hotspots().isEmpty()) {
        save("alert");
        if (!alert.startsWith(QLatin1StringView("No matches found")))
            throw StepFailed(alert);
        print(alert);
        return;
    }
    save("ad");
    reportHotspots(hotspots());
    print(QStringLiteral("From shutter to hotspots: %1 s").arg(static_cast<double>(elapsed) / 1000, 0, 'f', 2));
}

void DemoDriver::reportHotspots(const QList<QQuickItem *> &hotspots)
{
    QQuickItem *imageView = hotspots.constFirst()->parentItem();
    const QRectF image = pictureRect(imageView, imageView->childItems());
    print(QStringLiteral("%1 hotspots:").arg(hotspots.size()));
    for (QQuickItem *hotspot : hotspots) {
        const QPointF center = hotspot->mapRectToItem(imageView, hotspot->boundingRect()).center();
        const QPointF inWindow = imageView->mapToScene(center);
        print(QStringLiteral("  %1  at %2% across, %3% down; (%4, %5) points in the window")
                  .arg(nameOf(hotspot))
                  .arg(100 * (center.x() - image.x()) / image.width(), 0, 'f', 1)
                  .arg(100 * (center.y() - image.y()) / image.height(), 0, 'f', 1)
                  .arg(inWindow.x(), 0, 'f', 0)
                  .arg(inWindow.y(), 0, 'f', 0));
    }
}

void DemoDriver::save(const char *name)
{
    const QString path = QStringLiteral("%1/%2-%3.png").arg(m_folder).arg(++m_saved).arg(QLatin1StringView(name));
    if (m_user.picture().save(path))
        print(QStringLiteral("Saved %1").arg(path));
    else
        std::fprintf(stderr, "Demo: cannot write %s.\n", qPrintable(path));
}

// In the order of the matches.
QList<QQuickItem *> DemoDriver::hotspots() const
{
    QList<QQuickItem *> found;
    m_user.visit([&](QQuickItem *item) {
        if (item->inherits("BrevantoHotspotView") && item->property("tag").toInt() >= firstHotspotTag)
            found.append(item);
    });
    std::sort(found.begin(), found.end(), [](const QQuickItem *a, const QQuickItem *b) {
        return a->property("tag").toInt() < b->property("tag").toInt();
    });
    return found;
}

// Title and message of the alert on the screen; empty when there is none.
QString DemoDriver::alertText() const
{
    QStringList lines;
    for (const char *part : {"alertTitle", "alertMessage"}) {
        if (const QQuickItem *text = m_user.item(QLatin1StringView(part)))
            lines.append(text->property("text").toString());
    }
    return lines.join(QLatin1StringView(" - "));
}
