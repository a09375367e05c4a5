#include "Brevanto/Utils/BrevantoReachabilityManager.h"

#include "Brevanto/BrevantoConstants.h"
#include "Platform/Foundation/NotificationCenter.h"
#include "Platform/Interface/SystemFont.h"

#include <QCoreApplication>
#include <QMutex>
#include <QMutexLocker>

using namespace std::chrono_literals;

namespace
{

constexpr qreal bannerHeight = 30;
constexpr QColor lightGray(170, 170, 170);

struct Shared {
    QMutex lock;
    std::unique_ptr<BrevantoReachabilityManager> manager;
};

Shared &shared()
{
    static Shared instance;
    return instance;
}

} // namespace

BrevantoReachabilityManager *BrevantoReachabilityManager::instance()
{
    const QMutexLocker locker(&shared().lock);
    if (!shared().manager) {
        shared().manager.reset(new BrevantoReachabilityManager);
        // Views must not outlive the application object.
        qAddPostRoutine([] { shared().manager.reset(); });
    }
    return shared().manager.get();
}

BrevantoReachabilityManager::BrevantoReachabilityManager()
    : m_reachabilty(BrevantoReachability::reachabilityForInternetConnection())
{
    if (m_reachabilty)
        m_reachabilty->startNotifier();

    const QRectF frame(0, 0, kScreenWidth, bannerHeight);
    m_noNetworkView = new Platform::View(frame);
    m_noNetworkView->setParent(this); // else it would belong to the first screen that shows it
    m_noNetworkView->setBackgroundColor(lightGray);

    m_noNetworkLabel = new Platform::Label(frame);
    m_noNetworkLabel->setText(QStringLiteral("No internet connection"));
    m_noNetworkLabel->setTextColor(Qt::white);
    m_noNetworkLabel->setFont(Platform::SystemFont::medium(16));
    m_noNetworkLabel->setTextAlignment(Qt::AlignHCenter);
    m_noNetworkView->addSubview(m_noNetworkLabel);
}

BrevantoReachabilityManager::~BrevantoReachabilityManager() = default;

BrevantoReachabilityStatus BrevantoReachabilityManager::currentReachabilityStatus() const
{
    return m_reachabilty ? m_reachabilty->currentReachabilityStatus() : BrevantoReachabilityStatusNone;
}

void BrevantoReachabilityManager::addObserverForReachability(Platform::ViewController *controller)
{
    m_visibleViewController = controller;
    auto &center = Platform::NotificationCenter::defaultCenter();
    center.removeObserver(this, kBrevantoReachabilityChangedNotification);
    center.addObserver(this, kBrevantoReachabilityChangedNotification,
                       [this](const Platform::Notification &) { reachabiltyChangedNotification(); });
    reachabiltyChangedNotification();
}

void BrevantoReachabilityManager::removeObserverForReachability()
{
    if (isBannerShown())
        m_noNetworkView->removeFromSuperview();
    Platform::NotificationCenter::defaultCenter().removeObserver(this, kBrevantoReachabilityChangedNotification);
}

void BrevantoReachabilityManager::reachabiltyChangedNotification()
{
    if (!m_visibleViewController)
        return;
    const bool reachable = currentReachabilityStatus() != BrevantoReachabilityStatusNone;
    const Platform::AnimationOptions options{.duration = 300ms};
    if (reachable && isBannerShown()) {
        Platform::View::animate(options, [this] { m_noNetworkView->removeFromSuperview(); });
    } else if (!reachable && !isBannerShown()) {
        Platform::View::animate(options, [this] { m_visibleViewController->view()->addSubview(m_noNetworkView); });
    }
}

bool BrevantoReachabilityManager::isBannerShown() const
{
    return m_visibleViewController && m_noNetworkView->superview() == m_visibleViewController->view();
}

void BrevantoReachabilityManager::animateNoInternetConnectionLabel()
{
    // The growth goes on from what is seen. Of overlapping pulses the last one shrinks the text again.
    m_noNetworkLabel->setTransformScale(m_noNetworkLabel->scale());
    scaleLabel(1.5, [manager = QPointer(this), pulse = ++m_pulseCount](bool) {
        if (manager && manager->m_pulseCount == pulse)
            manager->scaleLabel(1.0, {});
    });
}

void BrevantoReachabilityManager::scaleLabel(qreal scale, std::function<void(bool)> completion)
{
    Platform::View::animate(
        {.duration = 500ms}, [this, scale] { m_noNetworkLabel->setTransformScale(scale); }, std::move(completion));
}
