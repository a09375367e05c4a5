#include "Tour.h"

#include "DemoNetwork.h"

#include "Platform/Interface/Window.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <QTextStream>

#include <csignal>
#include <cstdio>

using namespace std::chrono_literals;

namespace
{

// The hotspots of the photographed ads that the tour goes to, by the titles of their matches.
const QString bottle = QStringLiteral("Zumbaro orange");
const QString bicycle = QStringLiteral("Velkesta Meridian 9");
const QString ride = QStringLiteral("Test ride");
const QString concert = QStringLiteral("Nattlund jazz nights");
const QString wall = QStringLiteral("Noodle house");
const QString failurePicture = QStringLiteral("failure.png");

} // namespace

// Stands in for the telephone and the browser, which would cover the window, and remembers what they were given.
class Tour::Opener final : public Platform::Application::URLOpener
{
public:
    Opener() { Platform::Application::setURLOpener(this); }
    ~Opener() override { Platform::Application::setURLOpener(nullptr); }

    bool canOpen(const QUrl &) override { return true; }
    void open(const QUrl &url, std::function<void(bool)> completion) override
    {
        lastOpened = url;
        if (completion)
            completion(true);
    }

    QUrl lastOpened;
};

Tour::Tour(QQuickWindow *window, WindowDriver::Manner manner, const QString &folder, DemoNetwork &network,
           qint64 servicePid)
    : m_user(window, manner)
    , m_manner(manner)
    , m_folder(folder)
    , m_network(network)
    , m_servicePid(servicePid)
    , m_opener(std::make_unique<Opener>())
{
}

Tour::~Tour() = default;

int Tour::run()
{
    m_elapsed.start();
    int code = 0;
    try {
        if (!QDir().mkpath(m_folder))
            throw StepFailed("cannot make the folder for the pictures");
        removeOldPictures();
        host();
        camera();
        firstAd();
        legend();
        popover();
        moreInformation();
        video();
        call();
        gallery();
        buy();
        leaveAd();
        noMatch();
        audio();
        hotspotWithoutData();
        offline();
        silentService();
        catalogue();
        recents();
        close();
    } catch (const StepFailed &failure) {
        std::fprintf(stderr, "Tour: %s.\n", failure.what());
        m_user.picture().save(m_folder + QLatin1Char('/') + failurePicture);
        code = 1;
    }
    writeIndex();
    std::printf("%zu pictures in %.1f s\n", m_pictures.size(), static_cast<double>(m_elapsed.elapsed()) / 1000);
    return code;
}

void Tour::host()
{
    m_user.require([this] { return m_user.window()->isExposed(); }, QStringLiteral("the window did not open"));
    m_user.requireControl(QStringLiteral("Scan an ad"));
    show("host", QStringLiteral("The host application, with the button that shows the camera screen"));
}

void Tour::camera()
{
    m_user.activate(QStringLiteral("Scan an ad"));
    m_user.requireControl(QStringLiteral("Take photo"));
    show("camera", QStringLiteral("The camera screen; its splash has faded"));
    m_user.activate(QStringLiteral("Flash"));
    show("camera-flash", QStringLiteral("The flash is on"));
    m_user.activate(QStringLiteral("Framing guide"));
    show("camera-guide", QStringLiteral("The framing guide, switched by the button at the top right"));
    m_user.activate(QStringLiteral("Framing guide"));
    m_user.activate(QStringLiteral("Flash"));
    const bool isTouched = m_manner == WindowDriver::Manner::Touch;
    const QPointF middle(m_user.window()->width() / 2.0, m_user.window()->height() / 2.0);
    if (isTouched) {
        m_user.pinch(middle, 80, 160);
    } else {
        for (int i = 0; i < 3; ++i)
            m_user.press(Qt::Key_Plus);
    }
    show("camera-zoom", QStringLiteral("Two fingers, or the plus key, zoom the camera"));
    if (isTouched) {
        m_user.pinch(middle, 200, 60);
    } else {
        for (int i = 0; i < 3; ++i)
            m_user.press(Qt::Key_Minus);
    }
}

void Tour::firstAd()
{
    photograph();
    m_user.requireControl(bottle);
    show("ad", QStringLiteral("The recognised ad, with a pulsing hotspot for each of its matches"));
}

void Tour::legend()
{
    m_user.activate(QStringLiteral("Information"));
    m_user.requireText(QStringLiteral("Watch a video of the product"));
    show("legend", QStringLiteral("What the kinds of action mean: the info button's sheet"));
    const auto isOpen = [this] { return m_user.showsText(QStringLiteral("Call the brand")); };
    m_user.activate(QStringLiteral("Call the brand"));
    m_user.require([&] { return !isOpen(); }, QStringLiteral("the sheet did not go"));
    m_user.settle();
    m_user.activate(QStringLiteral("Information"));
    m_user.require(isOpen, QStringLiteral("the sheet did not come again"));
    m_user.settle();
    m_user.activate(m_user.requireItem(QStringLiteral("arrowButton")));
    m_user.require([&] { return !isOpen(); }, QStringLiteral("the sheet did not go by its arrow"));
}

void Tour::popover()
{
    m_user.settle();
    m_user.activate(bottle);
    m_user.requireText(QStringLiteral("More Information"));
    show("options", QStringLiteral("A tapped hotspot offers the actions that its match carries"));
    m_user.press(Qt::Key_Escape);
    m_user.require([this] { return !m_user.showsText(QStringLiteral("More Information")); },
                   QStringLiteral("the options did not go"));
}

void Tour::moreInformation()
{
    choose(bottle, QStringLiteral("More Information"));
    waitForPage();
    show("web", QStringLiteral("More Information: the page in the web viewer"));
    m_user.activate(QStringLiteral("Reload"));
    waitForPage();
    const QString question = QStringLiteral("Do you want to Open in Safari ?");
    m_user.activate(QStringLiteral("Open in browser"));
    m_user.requireText(question);
    show("web-browser", QStringLiteral("The page can be handed to the browser"));
    m_user.activate(QStringLiteral("Cancel"));
    m_user.require([&] { return !m_user.showsText(question); }, QStringLiteral("the question did not go"));
    m_user.settle();
    m_user.activate(QStringLiteral("Open in browser"));
    m_user.requireText(question);
    m_user.settle();
    m_user.activate(QStringLiteral("Open"));
    m_user.require([this] { return !m_opener->lastOpened.isEmpty(); }, QStringLiteral("nothing was handed over"));
    m_user.settle();
    m_user.activate(QStringLiteral("Close"));
}

void Tour::video()
{
    choose(bottle, QStringLiteral("Video"));
    pauseClip(bottle);
    show("video", QStringLiteral("Video: the player, with its controls"));
    m_user.activate(QStringLiteral("Play"));
    m_user.require([this] { return m_user.control(bottle) != nullptr; },
                   QStringLiteral("the player did not close at the end of the clip"), 40s);
}

void Tour::call()
{
    choose(bottle, QStringLiteral("Make Call"));
    m_user.require([this] { return m_opener->lastOpened.scheme() == QLatin1StringView("tel"); },
                   QStringLiteral("no number was called"));
    show("call", QStringLiteral("Make Call hands %1 to the telephone").arg(m_opener->lastOpened.toString()));
}

void Tour::gallery()
{
    choose(bottle, QStringLiteral("Photo Gallery"));
    m_user.requireControl(QStringLiteral("Next image"));
    show("gallery", QStringLiteral("Photo Gallery: the first image, with its caption"));
    m_user.activate(QStringLiteral("Next image"));
    show("gallery-next", QStringLiteral("The next image"));
    const QPointF middle(m_user.window()->width() / 2.0, m_user.window()->height() / 2.0);
    const bool isTouched = m_manner == WindowDriver::Manner::Touch;
    const auto zoom = [&](Qt::Key key) {
        if (isTouched)
            m_user.doubleTap(middle);
        else
            m_user.press(key);
    };
    zoom(Qt::Key_Plus);
    show("gallery-zoom", QStringLiteral("A double tap, or the plus key, zooms"));
    zoom(Qt::Key_Minus);
    m_user.settle();
    if (isTouched)
        m_user.swipe(middle + QPointF(120, 0), middle - QPointF(120, 0));
    else
        m_user.press(Qt::Key_Right);
    show("gallery-last", QStringLiteral("The last image"));
    m_user.activate(QStringLiteral("Close"));
}

void Tour::buy()
{
    choose(bottle, QStringLiteral("Buy it now"));
    waitForPage();
    show("buy", QStringLiteral("Buy it now: the shop's page"));
    m_user.activate(QStringLiteral("Close"));
}

void Tour::noMatch()
{
    photograph();
    m_user.requireText(QStringLiteral("No matches found"));
    show("no-match", QStringLiteral("A photo of nothing in the catalogue"));
    m_user.activate(m_user.requireItem(QStringLiteral("alertButton0")));
}

void Tour::audio()
{
    photograph();
    m_user.requireControl(concert);
    choose(concert, QStringLiteral("Audio"));
    pauseClip(concert);
    show("audio", QStringLiteral("Audio: the player without a picture"));
    m_user.activate(QStringLiteral("Close"));
    m_user.requireControl(concert);
    leaveAd();
}

void Tour::hotspotWithoutData()
{
    photograph();
    m_user.requireControl(wall);
    m_user.settle();
    m_user.activate(wall);
    m_user.requireText(QStringLiteral("Hotspot data not available."));
    show("no-data", QStringLiteral("A hotspot whose match carries nothing"));
    m_user.activate(m_user.requireItem(QStringLiteral("alertButton0")));
}

void Tour::offline()
{
    m_network.setReachable(false);
    show("offline", QStringLiteral("The network is gone: a banner, on whichever screen is shown"));
    m_network.setReachable(true);
    leaveAd();
}

void Tour::silentService()
{
    kill(static_cast<pid_t>(m_servicePid), SIGSTOP);
    photograph();
    show("uploading", QStringLiteral("Waiting for the answer"));
    const auto isOver = [this] { return m_user.showsText(QStringLiteral("Something went wrong!!")); };
    const auto isAsking = [this] { return m_user.showsText(QStringLiteral("Getting response might take more time")); };
    m_user.require([&] { return isAsking() || isOver(); }, QStringLiteral("the silence was not told"), 20s);
    QTest::qWait(200); // it fades in, and does not stay long enough to settle
    showAtOnce("time-out", QStringLiteral("The answer is late; half a second on, the request is given up"));
    m_user.require(isOver, QStringLiteral("the request did not end"));
    show("failure-alert", QStringLiteral("The service did not answer"));
    kill(static_cast<pid_t>(m_servicePid), SIGCONT);
    m_user.activate(m_user.requireItem(QStringLiteral("alertButton0")));
}

void Tour::catalogue()
{
    photograph();
    choose(bicycle, QStringLiteral("Photo Gallery"));
    m_user.requireControl(QStringLiteral("Buy"));
    show("catalogue", QStringLiteral("A gallery whose images can be bought"));
    m_user.activate(QStringLiteral("Buy"));
    waitForPage();
    show("catalogue-shop", QStringLiteral("What the image's button leads to"));
    m_user.activate(QStringLiteral("Close"));
    m_user.requireControl(QStringLiteral("Buy"));
    m_user.settle();
    m_user.activate(QStringLiteral("Close"));
    choose(ride, QStringLiteral("Video"));
    waitForPage();
    show("video-page", QStringLiteral("Video of a video site: its page"));
    m_user.activate(QStringLiteral("Close"));
    m_user.requireControl(ride);
    leaveAd();
}

void Tour::recents()
{
    m_user.settle();
    m_user.activate(QStringLiteral("Recents"));
    m_user.requireControl(concert);
    show("recents", QStringLiteral("Recents: the ads seen, the latest first"));
    m_user.activate(concert);
    m_user.requireControl(QStringLiteral("Information"));
    m_user.settle();
    m_user.requireControl(concert);
    show("recents-ad", QStringLiteral("An ad opened again from the recents"));
    leaveAd();
    m_user.settle();
    m_user.press(Qt::Key_Escape);
    m_user.requireControl(QStringLiteral("Take photo"));
}

void Tour::close()
{
    m_user.settle();
    m_user.activate(QStringLiteral("Close"));
    m_user.requireControl(QStringLiteral("Scan an ad"));
    show("back", QStringLiteral("Back in the host application"));
}

void Tour::photograph()
{
    m_user.settle();
    m_user.activate(QStringLiteral("Take photo"));
}

void Tour::choose(const QString &hotspot, const QString &option)
{
    m_user.requireControl(hotspot);
    m_user.settle();
    m_user.activate(hotspot);
    m_user.requireControl(option);
    m_user.settle();
    m_user.activate(option);
}

void Tour::waitForPage()
{
    m_user.requireControl(QStringLiteral("Reload"));
    m_user.require([this] { return !m_user.item(QStringLiteral("loadProgress")) && m_user.showsPicture(); },
                   QStringLiteral("the page did not come"));
}

void Tour::leaveAd()
{
    m_user.settle();
    m_user.activate(QStringLiteral("Back"));
    m_user.require([this] { return m_user.control(QStringLiteral("Information")) == nullptr; },
                   QStringLiteral("the ad screen did not go"));
}

// Short clips end while their picture is taken.
void Tour::pauseClip(const QString &hotspot)
{
    m_user.requireControl(QStringLiteral("Pause"));
    m_user.require([&] { return m_user.control(hotspot) == nullptr; },
                   QStringLiteral("the player does not fill the screen"));
    m_user.activate(QStringLiteral("Pause"));
    m_user.requireControl(QStringLiteral("Play"));
}

void Tour::removeOldPictures() const
{
    QDir folder(m_folder);
    const QStringList old = folder.entryList({QStringLiteral("[0-9][0-9]-*.png"), failurePicture}, QDir::Files);
    for (const QString &file : old)
        folder.remove(file);
}

void Tour::show(const char *name, const QString &caption)
{
    m_user.settle();
    showAtOnce(name, caption);
}

void Tour::showAtOnce(const char *name, const QString &caption)
{
    const QString file =
        QStringLiteral("%1-%2.png").arg(m_pictures.size() + 1, 2, 10, QLatin1Char('0')).arg(QLatin1StringView(name));
    if (!m_user.picture().save(m_folder + QLatin1Char('/') + file))
        throw StepFailed(QStringLiteral("cannot write ") + file);
    m_pictures.push_back({file, caption});
    const QStringList nameless = m_user.namelessControls();
    if (!nameless.isEmpty())
        throw StepFailed(
            QStringLiteral("%1: controls without a name: %2").arg(file, nameless.join(QStringLiteral(", "))));
}

void Tour::writeIndex() const
{
    QFile file(m_folder + QStringLiteral("/index.html"));
    if (!file.open(QIODevice::WriteOnly)) {
        std::fprintf(stderr, "Tour: cannot write %s.\n", qPrintable(file.fileName()));
        return;
    }
    QTextStream page(&file);
    page << "<!doctype html><meta charset=\"utf-8\"><title>Brevanto</title>\n"
            "<style>body{font:15px sans-serif;margin:24px}figure{display:inline-block;width:260px;margin:0 16px 24px 0;"
            "vertical-align:top}img{width:100%;border:1px solid #ccc;border-radius:12px}</style>\n";
    for (const Picture &picture : m_pictures) {
        page << "<figure><img src=\"" << picture.file << "\" alt=\"\"><figcaption>" << picture.caption.toHtmlEscaped()
             << "</figcaption></figure>\n";
    }
}
