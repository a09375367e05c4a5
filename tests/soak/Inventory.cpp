#include "Inventory.h"

#include "ObjectCensus.h"

#include "Platform/Interface/ViewController.h"

#include <QDir>
#include <QFile>
#include <QQuickItem>

#include <malloc.h>
#include <unistd.h>

namespace
{

int itemsIn(const QQuickItem *item)
{
    int count = 1;
    const QList<QQuickItem *> children = item->childItems();
    for (const QQuickItem *child : children)
        count += itemsIn(child);
    return count;
}

qint64 residentMemory()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE) : 0;
}

QStringList grown(const char *what, qint64 before, qint64 after, qint64 allowance = 0)
{
    if (after <= before + allowance)
        return {};
    return {QStringLiteral("%1, %2 at first, %3 at last").arg(QLatin1StringView(what)).arg(before).arg(after)};
}

} // namespace

Inventory Inventory::of(QQuickWindow *window)
{
    Inventory inventory;
    window->releaseResources(); // pictures that Qt keeps in case they are shown again
    malloc_trim(0);
    inventory.resident = residentMemory();
    const struct mallinfo2 heap = mallinfo2();
    inventory.allocated = static_cast<qint64>(heap.uordblks + heap.hblkhd);
    inventory.threads = QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    for (const QString &name : descriptors.entryList(QDir::Files | QDir::System)) {
        ++inventory.files;
        if (QFile::symLinkTarget(descriptors.filePath(name)).contains(QLatin1StringView("socket:")))
            ++inventory.sockets;
    }
    inventory.items = itemsIn(window->contentItem());
    inventory.classes = ObjectCensus::classes();
    // Of each scene's file Qt keeps the context of the last instance, as an object only where something asked for one.
    inventory.objects = ObjectCensus::count() - inventory.classes.take("QQmlContext");
    inventory.screens = ObjectCensus::count(
        [](const QObject *object) { return qobject_cast<const Platform::ViewController *>(object) != nullptr; });
    return inventory;
}

QStringList Inventory::growth(const Inventory &first) const
{
    constexpr int part = 50;
    QStringList all = grown("memory", first.resident, resident, first.resident / part)
        + grown("allocated memory", first.allocated, allocated, first.allocated / part) + leftovers(first);
    const QStringList more = grown("objects", first.objects, objects);
    if (more.isEmpty())
        return all;
    for (auto of = classes.begin(); of != classes.end(); ++of)
        all += grown(of.key().constData(), first.classes.value(of.key()), of.value());
    return all + more;
}

QStringList Inventory::leftovers(const Inventory &first) const
{
    return grown("screens", first.screens, screens) + grown("items", first.items, items)
        + grown("threads", first.threads, threads) + grown("sockets", first.sockets, sockets)
        + grown("files", first.files, files);
}

QString Inventory::text() const
{
    return QStringLiteral("%1 MB, %2 MB allocated, %3 screens, %4 items, %5 objects, %6 threads, %7 sockets, %8 files")
        .arg(static_cast<double>(resident) / 1e6, 0, 'f', 1)
        .arg(static_cast<double>(allocated) / 1e6, 0, 'f', 2)
        .arg(screens)
        .arg(items)
        .arg(objects)
        .arg(threads)
        .arg(sockets)
        .arg(files);
}
