#include "DemoDriver.h"

#include <QAccessible>
#include <QDir>
#include <QImage>
#include <QPointingDevice>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <stdexcept>

using namespace std::chrono_literals;

namespace
{

constexpr int firstHotspotTag = 11223344;

struct StepFailed : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// On the screen: shown, and with a size. Screens below the top one are hidden by their navigation stack.
bool isShown(const QQuickItem *item)
{
    return item->isVisible() && item->width() > 0 && item->height() > 0;
}

void visit(QQuickItem *item, const std::function<void(QQuickItem *)> &visitor)
{
    if (!item->isVisible())
        return;
    visitor(item);
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *child : children)
        visit(child, visitor);
}

QQuickItem *shownItem(const QQuickWindow *window, const QString &objectName)
{
    QQuickItem *found = nullptr;
    visit(window->contentItem(), [&](QQuickItem *item) {
        if (item->objectName() == objectName && isShown(item))
            found = item;
    });
    return found;
}

void print(const QString &line)
{
    std::puts(qPrintable(line));
    std::fflush(stdout);
}

// What assistive technology calls the hotspot: the title of its match.
QString spokenName(QQuickItem *hotspot)
{
    QString name;
    visit(hotspot, [&name](QQuickItem *item) {
        QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(item);
        if (name.isEmpty() && spoken && spoken->role() == QAccessible::Button)
            name = spoken->text(QAccessible::Name);
    });
    return name;
}

// Where the picture lies within the view that shows it.
QRectF pictureRect(QQuickItem *imageView)
{
    QRectF rect;
    visit(imageView, [&](QQuickItem *item) {
        if (item->inherits("QQuickImage"))
            rect = item->mapRectToItem(imageView, item->boundingRect());
    });
    return rect;
}

// Whether the middle of the window shows a picture rather than one colour.
bool showsPicture(const QImage &shot)
{
    const QRect middle(shot.width() / 4, shot.height() / 3, shot.width() / 2, shot.height() / 4);
    const QRgb first = shot.pixel(middle.topLeft());
    for (int y = middle.top(); y < middle.bottom(); y += 7) {
        for (int x = middle.left(); x < middle.right(); x += 7) {
            if (std::abs(qGray(shot.pixel(x, y)) - qGray(first)) > 12)
                return true;
        }
    }
    return false;
}

} // namespace

DemoDriver::DemoDriver(QQuickWindow *window, const QString &folder)
    : m_window(window)
    , m_folder(folder)
    , m_finger(QTest::createTouchDevice())
{
}

DemoDriver::~DemoDriver() = default;

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
    require([this] { return m_window->isExposed(); }, "the window did not open", 20s);
    const QQuickItem *button = requireItem(QStringLiteral("scanButton"), "the button is not there");
    settle();
    save("host");
    tap(button);
}

void DemoDriver::photograph()
{
    const QQuickItem *shutter = requireItem(QStringLiteral("captureButton"), "the camera screen did not come");
    settle();
    require([this] { return !alertText().isEmpty() || showsPicture(m_window->grabWindow()); },
            "the camera's picture did not come", 20s);
    if (!alertText().isEmpty())
        throw StepFailed("the camera screen says: " + alertText().toStdString());
    require([shutter] { return shutter->isEnabled(); }, "the shutter stayed disabled", 10s);
    settle();
    save("camera");
    m_sinceShutter.start();
    tap(shutter);
}

void DemoDriver::report()
{
    require([this] { return !hotspots().isEmpty() || !alertText().isEmpty(); }, "no answer came", 40s);
    const qint64 elapsed = m_sinceShutter.elapsed();
    const QString alert = alertText();
    settle();
    if (hotspots().isEmpty()) {
        save("alert");
        if (!alert.startsWith(QLatin1StringView("No matches found")))
            throw StepFailed(alert.toStdString());
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
    const QRectF image = pictureRect(imageView);
    print(QStringLiteral("%1 hotspots:").arg(hotspots.size()));
    for (QQuickItem *hotspot : hotspots) {
        const QPointF center = hotspot->mapRectToItem(imageView, hotspot->boundingRect()).center();
        const QPointF inWindow = imageView->mapToScene(center);
        print(QStringLiteral("  %1  at %2% across, %3% down; (%4, %5) points in the window")
                  .arg(spokenName(hotspot))
                  .arg(100 * (center.x() - image.x()) / image.width(), 0, 'f', 1)
                  .arg(100 * (center.y() - image.y()) / image.height(), 0, 'f', 1)
                  .arg(inWindow.x(), 0, 'f', 0)
                  .arg(inWindow.y(), 0, 'f', 0));
    }
}

void DemoDriver::require(const std::function<bool()> &condition, const char *what, std::chrono::milliseconds bound)
{
    if (!QTest::qWaitFor(condition, static_cast<int>(bound.count())))
        throw StepFailed(what);
}

QQuickItem *DemoDriver::requireItem(const QString &objectName, const char *what)
{
    require([&] { return shownItem(m_window, objectName) != nullptr; }, what, 20s);
    return shownItem(m_window, objectName);
}

void DemoDriver::tap(const QQuickItem *item)
{
    const QPoint place = item->mapToScene(item->boundingRect().center()).toPoint();
    QTest::touchEvent(m_window, m_finger.get()).press(0, place, m_window);
    QTest::touchEvent(m_window, m_finger.get()).release(0, place, m_window);
}

// Waits until transitions are over: two pictures in a row are the same. A screen that never rests is taken as it is.
void DemoDriver::settle()
{
    QImage last;
    for (int i = 0; i < 20; ++i) {
        const QImage now = m_window->grabWindow();
        if (now == last)
            return;
        last = now;
        QTest::qWait(100);
    }
}

void DemoDriver::save(const char *name)
{
    const QString path = QStringLiteral("%1/%2-%3.png").arg(m_folder).arg(++m_saved).arg(QLatin1StringView(name));
    if (m_window->grabWindow().save(path))
        print(QStringLiteral("Saved %1").arg(path));
    else
        std::fprintf(stderr, "Demo: cannot write %s.\n", qPrintable(path));
}

// In the order of the matches.
QList<QQuickItem *> DemoDriver::hotspots() const
{
    QList<QQuickItem *> found;
    visit(m_window->contentItem(), [&](QQuickItem *item) {
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
        if (const QQuickItem *text = shownItem(m_window, QLatin1StringView(part)))
            lines.append(text->property("text").toString());
    }
    return lines.join(QLatin1StringView(" - "));
}
