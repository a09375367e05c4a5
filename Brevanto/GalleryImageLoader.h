#pragma once

#include "Platform/Graphics/Image.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>
#include <QStringList>

// Brings the images of a gallery. Those near the page on show are asked for at once, the others a few at a time and
// only until so many bytes have come that it becomes a burden. When those that are held become too many, the images
// farthest from the page on show are let go; they are asked for again when they are near. For the main thread only.
class GalleryImageLoader : public QObject
{
    Q_OBJECT

public:
    explicit GalleryImageLoader(const QStringList &addresses);

    // Whether a page is seen, or may be seen with the next move of the finger, while `current` is at the left edge:
    // what moves shows the page after it too.
    static bool isNear(int page, int current) { return page >= current - 1 && page <= current + 2; }

    // The page at the left edge. The first call starts the loading.
    void setPage(int page);

Q_SIGNALS:
    // Null when there is no such image. Never emitted from within setPage.
    void arrived(int index, const Platform::Image &image);
    // The image of that index is to be forgotten.
    void released(int index);

private:
    enum class State { Wanted, UnderWay, Done };

    void request(int index);
    void askAhead();
    void take(int index, const Platform::Image &image);
    void releaseFarthest();

    QStringList m_addresses;
    QList<State> m_states;
    QSet<int> m_askedAhead; // those under way that take a place
    QHash<int, qint64> m_held; // bytes of the images that have come
    qint64 m_heldSize = 0;
    int m_page = 0;
};
