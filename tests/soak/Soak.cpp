#include "Soak.h"

#include "Brevanto/BrevantoClient.h"
#include "Brevanto/BrevantoPhotoGalleryVC.h"
#include "Brevanto/BrevantoRecentProductsVC.h"
#include "Platform/Interface/AlertController.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QQmlEngine>
#include <QTest>
#include <QThread>

#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

// How far the time moves on between two looks at a condition. With an answer on its way no faster than it comes.
constexpr auto fast = 60ms;
constexpr auto slow = 15ms;

// Until then caches, pools and the allocator's arenas grow to their size.
constexpr int warmUpCount = 200;

// Longer than a thread pool keeps an idle thread.
constexpr auto idleTime = 32s;

// The threads of the network ask for the time to the last.
ManualClock &sharedClock()
{
    static auto *clock = new ManualClock;
    return *clock;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw StepFailed(u"cannot read "_s + path);
    return file.readAll();
}

bool isRecents(const Platform::ViewController *screen)
{
    return qobject_cast<const BrevantoRecentProductsVC *>(screen) != nullptr;
}

} // namespace

Soak::Soak(const QString &service, qint64 servicePid, const QString &photoFolder, quint32 seed)
    : m_clock(sharedClock())
    , m_service(service)
    , m_servicePid(static_cast<pid_t>(servicePid))
    , m_window(QSize(320, 568)) // the smallest phone's, to draw it quickly
    , m_user(m_window.window(), WindowDriver::Manner::Touch)
    , m_random(seed)
{
    const QDir photos(photoFolder);
    for (const QString &name : photos.entryList({u"0*.jpg"_s, u"10-*.jpg"_s}, QDir::Files))
        m_ads.append(contentOf(photos.filePath(name)));
    m_nothing = contentOf(photos.filePath(u"13-recipe.jpg"_s));
    m_camera->scene = QImage::fromData(m_nothing).scaledToWidth(480);
    Platform::CaptureDevice::registerDevice(m_camera);
    // A virtual display takes pictures as fast as they come. The service needs the processor, too.
    QObject::connect(
        m_window.window(), &QQuickWindow::frameSwapped, m_window.window(), [] { QThread::msleep(8); },
        Qt::DirectConnection);
}

Soak::~Soak()
{
    kill(m_servicePid, SIGCONT);
}

bool Soak::run(int count, bool leaks)
{
    QElapsedTimer elapsed;
    elapsed.start();
    const int warmUp = std::min(warmUpCount, count / 2);
    Inventory first;
    for (int captures = 1; captures <= count; ++captures) {
        if (!m_screen)
            openCamera();
        capture();
        if (m_random.bounded(6) == 0)
            visitRecents();
        if (m_random.bounded(10) == 0)
            closeCamera();
        if (captures == warmUp)
            first = takeInventory(captures, {}, idleTime);
        else if (captures % 100 == 0 && captures < count)
            takeInventory(captures, {}, 0s);
    }
    const auto leftScreen = leaks ? std::make_unique<Platform::ViewController>() : nullptr;
    const auto leftFile = leaks ? std::make_unique<QFile>(u"/dev/null"_s) : nullptr;
    if (leftFile && !leftFile->open(QIODevice::ReadOnly))
        throw StepFailed("no file can be left behind");
    const Inventory last = takeInventory(count, first, idleTime);
    std::printf("%d captures in %lld s: %d ads, %d times nothing, %d failures, %d time-outs\n", count,
                static_cast<long long>(elapsed.elapsed() / 1000), m_outcomes.ads, m_outcomes.nothing,
                m_outcomes.failures, m_outcomes.timeOuts);
    const QStringList growth = warmUp == warmUpCount ? last.growth(first) : last.leftovers(first);
    for (const QString &line : growth)
        std::printf("Not flat: %s.\n", qPrintable(line));
    return growth.isEmpty();
}

void Soak::capture()
{
    const int dice = m_random.bounded(8); // ads more often than the rest
    useService(dice == 6 ? m_service + u"/nowhere"_s : m_service); // the first it does not know
    if (dice == 7 && !m_isAnswerDue) {
        timeOut();
    } else {
        shoot(dice == 5 ? m_nothing : m_ads[m_random.bounded(m_ads.size())]);
        kill(m_servicePid, SIGCONT);
        takeAnswer(slow);
        m_isAnswerDue = false;
    }
    int looks = 0;
    until(
        u"the camera is not live again"_s,
        [&] {
            const QQuickItem *answer = touchable(u"alertButton0"_s);
            if (answer && looks++ % 8 == 0)
                m_user.tap(m_user.centerOf(answer));
            return isCameraLive();
        },
        fast);
}

// One address at a time.
void Soak::useService(const QString &address)
{
    m_address.reset();
    m_address.emplace(address);
}

void Soak::timeOut()
{
    shoot(m_ads.constFirst());
    until(
        u"no question came"_s, [this] { return m_user.showsText(u"Getting response might take more time"_s); }, 250ms);
    const QPointer<Platform::ViewController> question(top());
    remember(question);
    ++m_outcomes.timeOuts;
    const auto way = m_random.bounded(3);
    if (way == 0) // waits on, in vain
        takeAnswer(100ms);
    else if (way == 1) // photographs again; the answer may come in the place of the next one
        act(u"alertButton1"_s, [&] { return !question; });
    m_isAnswerDue = way == 1;
    kill(m_servicePid, SIGCONT);
    if (way == 2)
        takeAnswer(slow);
}

void Soak::takeAnswer(std::chrono::milliseconds step)
{
    const auto isTaken = [this] {
        const bool isAlertLeaving = !m_screen->presentedViewController() && m_user.item(u"alertButton0"_s);
        return !m_screen->isRequestOnProcess() && !m_user.item(u"spinnerView"_s) && !isAlertLeaving;
    };
    until(u"no answer came"_s, isTaken, step);
    if (qobject_cast<BrevantoAdVC *>(top())) {
        ++m_outcomes.ads;
        lookAtAd(m_screen);
        return;
    }
    // Failures are told in the place of the question that a time-out left; otherwise the camera stays still until the
    // screen comes again. Between two alerts there is a moment without one.
    const auto isToldOrLeft = [this] { return m_screen->presentedViewController() || isRecents(top()); };
    if (!m_screen->presentedViewController())
        act(u"recentsButton"_s, isToldOrLeft);
    if (isRecents(top())) {
        ++m_outcomes.failures;
        lookAtRecents();
        return;
    }
    bool hasFailed = false;
    until(
        u"nobody says what became of the photo"_s,
        [&] {
            hasFailed = m_user.showsText(u"Something went wrong!!"_s);
            return hasFailed || m_user.showsText(u"No matches found. Please retry by capturing a new image."_s);
        },
        fast);
    ++(hasFailed ? m_outcomes.failures : m_outcomes.nothing);
}

void Soak::openCamera()
{
    BrevantoClient::sharedClient()->showCameraScreen();
    m_screen = qobject_cast<BrevantoCameraVC *>(top());
    if (!m_screen)
        throw StepFailed("the camera screen did not come");
    m_engine = qmlEngine(m_screen->view());
    remember(m_screen);
    remember(m_screen->navigationController());
    until(
        u"the camera is not live"_s, [this] { return isCameraLive(); }, fast);
}

void Soak::closeCamera()
{
    if (!m_screen)
        return;
    act(u"closeButton"_s, [this] { return !m_window.root()->presentedViewController(); });
    until(
        u"the camera screen did not go"_s, [this] { return !m_screen; }, fast);
}

void Soak::visitRecents()
{
    act(u"recentsButton"_s, [this] { return isRecents(top()); });
    lookAtRecents();
}

void Soak::lookAtRecents()
{
    Platform::ViewController *recents = top();
    remember(recents);
    until(
        u"the recents did not come"_s, [this] { return !m_screen->isVisible(); }, fast);
    QPointer<QQuickItem> tile;
    m_user.visit([&](QQuickItem *item) {
        if (!tile && item->property("isCurrent").isValid())
            tile = item;
    });
    if (tile) {
        until(
            u"a tile did not open"_s,
            [&] {
                if (top() == recents && tile)
                    m_user.tap(m_user.centerOf(tile));
                return top() != recents;
            },
            fast);
        lookAtAd(recents);
    }
    goBackTo(m_screen);
}

void Soak::lookAtAd(Platform::ViewController *below)
{
    until(
        u"no ad came"_s, [this] { return qobject_cast<BrevantoAdVC *>(top()) != nullptr; }, slow);
    until(
        u"the ad did not move in"_s, [below] { return !below->isVisible(); }, fast);
    auto *ad = qobject_cast<BrevantoAdVC *>(top());
    remember(ad);
    until(
        u"no hotspot came"_s, [&] { return ad->view()->viewWithTag(BrevantoAdVC::firstHotspotTag) != nullptr; }, slow);
    if (m_random.bounded(2) == 0)
        lookAtOptions(ad);
    goBackTo(below);
}

void Soak::lookAtOptions(BrevantoAdVC *ad)
{
    const QQuickItem *marker = ad->view()->viewWithTag(BrevantoAdVC::firstHotspotTag);
    until(
        u"the hotspot offers nothing"_s,
        [&] {
            if (!ad->presentedViewController())
                m_user.tap(m_user.centerOf(marker));
            return ad->presentedViewController() != nullptr;
        },
        fast);
    remember(ad->presentedViewController());
    if (qobject_cast<Platform::AlertController *>(top()))
        return act(u"alertButton0"_s, [&] { return isSettledOn(ad); });
    if (touchable(u"Photo Gallery"_s))
        return lookAtGallery(ad);
    until(
        u"the options did not go"_s,
        [&] {
            if (top() != ad)
                m_user.press(Qt::Key_Escape);
            return isSettledOn(ad);
        },
        fast);
}

void Soak::lookAtGallery(BrevantoAdVC *ad)
{
    act(u"Photo Gallery"_s, [this] { return qobject_cast<BrevantoPhotoGalleryVC *>(top()) != nullptr; });
    remember(top());
    until(
        u"the gallery did not come"_s, [&] { return !ad->isVisible(); }, fast);
    if (const QQuickItem *next = touchable(u"Next image"_s)) {
        m_user.tap(m_user.centerOf(next));
        QElapsedTimer seen;
        seen.start();
        until(
            u"time stands still"_s, [&] { return seen.elapsed() > 150; }, slow);
    }
    act(u"Close"_s, [&] { return isSettledOn(ad); });
}

void Soak::goBackTo(Platform::ViewController *screen)
{
    act(u"Back"_s, [&] { return isSettledOn(screen); });
}

void Soak::shoot(const QByteArray &photo)
{
    until(
        u"the camera is not live"_s, [this] { return isCameraLive(); }, fast);
    m_camera->jpeg = photo;
    kill(m_servicePid, SIGSTOP); // so that nobody overlooks a quick answer
    int looks = 0;
    int taps = 0;
    until(
        u"the photo was not sent"_s,
        [&] {
            if (m_screen->isRequestOnProcess())
                return true;
            // The answer to the photo before may be taken for this one's before anybody looks. The camera rests then.
            if (m_isAnswerDue && (top() != m_screen || ++looks > 1000))
                return true;
            const QQuickItem *shutter = touchable(u"captureButton"_s);
            if (shutter && m_camera->isDelivering() && taps++ % 50 == 0)
                m_user.tap(m_user.centerOf(shutter));
            return false;
        },
        fast);
}

void Soak::until(const QString &what, const Condition &condition, std::chrono::milliseconds step) const
{
    const auto isSo = [&] {
        if (condition())
            return true;
        m_clock.advance(step);
        return condition(); // before what follows hides it
    };
    if (QTest::qWaitFor(isSo, 60000))
        return;
    m_window.grab(u"soak"_s);
    throw StepFailed(u"%1; on top is %2"_s.arg(what, QString::fromLatin1(top()->metaObject()->className())));
}

void Soak::act(const QString &name, const Condition &effect)
{
    int looks = 0;
    until(
        u"\"%1\" did nothing"_s.arg(name),
        [&] {
            if (effect())
                return true;
            const QQuickItem *control = touchable(name);
            if (control && looks++ % 8 == 0)
                m_user.tap(m_user.centerOf(control));
            return false;
        },
        fast);
}

QQuickItem *Soak::touchable(const QString &name) const
{
    QQuickItem *found = m_user.item(name);
    if (!found)
        found = m_user.control(name);
    return found && found->isEnabled() ? found : nullptr;
}

bool Soak::isSettledOn(const Platform::ViewController *screen) const
{
    return top() == screen && std::all_of(m_seen.begin(), m_seen.end(), [screen](const auto &other) {
               return !other || other == screen || !other->isVisible()
                   || qobject_cast<Platform::NavigationController *>(other);
           });
}

bool Soak::isCameraLive() const
{
    return m_screen && isSettledOn(m_screen) && m_camera->isDelivering() && m_user.item(u"captureButton"_s)
        && m_user.item(u"captureButton"_s)->isEnabled();
}

Platform::ViewController *Soak::top() const
{
    return m_window.platform()->topmostViewController();
}

void Soak::remember(Platform::ViewController *screen)
{
    m_seen.removeIf([](const auto &seen) { return !seen; });
    if (!m_seen.contains(screen))
        m_seen.append(screen);
}

Inventory Soak::takeInventory(int captures, const std::optional<Inventory> &first, std::chrono::milliseconds bound)
{
    closeCamera();
    m_clock.advance(5min);
    m_engine->collectGarbage();
    // Idle threads of pools end by themselves, and idle connections by the service; the first time nobody knows how
    // many.
    Inventory inventory;
    const auto isAsAtFirst = [&] {
        inventory = Inventory::of(m_window.window());
        return first && inventory.objects <= first->objects && inventory.leftovers(*first).isEmpty();
    };
    (void)QTest::qWaitFor(isAsAtFirst, static_cast<int>(bound.count()));
    std::printf("%5d captures: %s\n", captures, qPrintable(inventory.text()));
    std::fflush(stdout);
    return inventory;
}
