#include "Brevanto/GalleryImageLoader.h"

#include "Brevanto/ServerManager/BrevantoServerManager.h"
#include "Platform/Foundation/Clock.h"
#include "Platform/Foundation/DispatchQueue.h"

#include <algorithm>
#include <chrono>

namespace
{

// A server is asked for six things at a time, and a request's time counts from when it is made: connections stay free
// for the page that the user turns to.
constexpr int mostAskedAhead = 2;
// An answer that only drips, or never comes, must not hold up all the others.
constexpr std::chrono::seconds patience{15};
constexpr qint64 mostHeldByAskingAhead = qint64{64} * 1024 * 1024;
constexpr qint64 mostHeld = qint64{128} * 1024 * 1024;

} // namespace

GalleryImageLoader::GalleryImageLoader(const QStringList &addresses)
    : m_addresses(addresses)
    , m_states(addresses.size(), State::Wanted)
{
}

void GalleryImageLoader::setPage(int page)
{
    m_page = page;
    for (int index = 0; index < m_states.size(); ++index) {
        if (m_states.at(index) == State::Wanted && isNear(index, page))
            request(index);
    }
    askAhead();
}

void GalleryImageLoader::request(int index)
{
    m_states[index] = State::UnderWay;
    const QPointer<QObject> self(this);
    BrevantoServerManager::sharedServerManager()->getImage(
        m_addresses.at(index),
        [self, this, index](const Platform::Image &image) {
            Platform::DispatchQueue::mainAsync(self, [this, index, image] { take(index, image); });
        },
        [self, this, index](const std::optional<Platform::URLError> &) {
            Platform::DispatchQueue::mainAsync(self, [this, index] { take(index, {}); });
        });
}

// The nearest first.
void GalleryImageLoader::askAhead()
{
    const auto count = static_cast<int>(m_states.size());
    for (int step = 0; step < 2 * count; ++step) {
        if (m_askedAhead.size() >= mostAskedAhead || m_heldSize >= mostHeldByAskingAhead)
            return;
        const int index = m_page + (step % 2 == 0 ? step / 2 : -(step + 1) / 2);
        if (index < 0 || index >= count || m_states.at(index) != State::Wanted)
            continue;
        m_askedAhead.insert(index);
        request(index);
        Platform::Clock::current().after(patience, this, [this, index] {
            if (m_askedAhead.remove(index))
                askAhead();
        });
    }
}

void GalleryImageLoader::take(int index, const Platform::Image &image)
{
    m_states[index] = State::Done;
    m_askedAhead.remove(index);
    if (!image.isNull()) {
        m_held.insert(index, image.byteCount());
        m_heldSize += image.byteCount();
    }
    Q_EMIT arrived(index, image);
    while (m_heldSize > mostHeld)
        releaseFarthest();
    askAhead();
}

void GalleryImageLoader::releaseFarthest()
{
    const QList<int> indices = m_held.keys();
    const int farthest = *std::max_element(
        indices.begin(), indices.end(), [this](int a, int b) { return std::abs(a - m_page) < std::abs(b - m_page); });
    m_heldSize -= m_held.take(farthest);
    m_states[farthest] = State::Wanted;
    Q_EMIT released(farthest);
}
