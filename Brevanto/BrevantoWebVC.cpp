#include "Brevanto/BrevantoWebVC.h"

#include "Brevanto/Utils/BrevantoUtils.h"
#include "Platform/Foundation/Log.h"
#include "Platform/Interface/AlertController.h"
#include "Platform/Interface/NavigationController.h"
#include "Platform/Interface/Window.h"

using Platform::BarButtonItem;

namespace
{

constexpr qreal spinnerSize = 20;

BarButtonItem iconButton(const Platform::Image &icon, const QString &name, std::function<void()> action)
{
    BarButtonItem button;
    button.picture = icon;
    button.accessibleName = name;
    button.action = std::move(action);
    return button;
}

void logBrowserOpened(bool success)
{
    Platform::log(success ? QStringLiteral("\n*******************\n\n Success \n\n*******************\n")
                          : QStringLiteral("\n*******************\n\n Fail \n\n*******************\n"));
}

} // namespace

std::unique_ptr<BrevantoWebVC> BrevantoWebVC::initWithUrlString(const QString &urlString)
{
    return std::unique_ptr<BrevantoWebVC>(new BrevantoWebVC(urlString));
}

BrevantoWebVC::BrevantoWebVC(QString urlString)
    : m_safari(safariButton())
    , m_close(closeButton())
    , m_back(backButton())
    , m_fwd(fwdButton())
    , m_reload(reloadButton())
    , m_urlString(std::move(urlString))
{
    updateToolbarItems();
}

// The page goes later, and tells of its end.
BrevantoWebVC::~BrevantoWebVC()
{
    if (m_webview)
        m_webview->disconnect(this);
}

void BrevantoWebVC::viewDidLoad()
{
    ViewController::viewDidLoad();
    Platform::Application::setStatusBarHidden(true);
    m_isShowingYoutubeVid = false;
    m_webview = new Platform::WebView(view()->bounds());
    m_webview->setAutoresizingMask(Platform::View::FlexibleWidth | Platform::View::FlexibleHeight);
    connect(m_webview, &Platform::WebView::didStartLoad, this, &BrevantoWebVC::webViewDidStartLoad);
    connect(m_webview, &Platform::WebView::didFinishLoad, this, &BrevantoWebVC::webViewDidFinishLoad);
    connect(m_webview, &Platform::WebView::didFailLoad, this, &BrevantoWebVC::webViewDidFailLoad);
    connect(m_webview, &Platform::WebView::historyChanged, this, &BrevantoWebVC::checkButtonAction);
    view()->addSubview(m_webview);
    if (m_urlString.isNull()) {
        m_webview->loadHtml(m_htmlString);
    } else if (isYoutube() && Platform::WebView::isLoadable(QUrl(m_urlString))) {
        m_youtubeHtmlString = youtubePage();
        m_webview->loadHtml(m_youtubeHtmlString);
    } else {
        m_webview->loadRequest(QUrl(m_urlString));
    }
}

void BrevantoWebVC::viewWillAppear(bool animated)
{
    ViewController::viewWillAppear(animated);
    if (Platform::NavigationController *stack = navigationController()) {
        stack->setToolbarHidden(false);
        stack->setNavigationBarHidden(true);
        stack->setToolbarStyle(Platform::NavigationBarAppearance::Style::Black);
    }
    delete m_spinnerView;
    m_spinnerView = new Platform::ActivityIndicator(Platform::ActivityIndicatorStyle::WhiteLarge);
    view()->addSubview(m_spinnerView);
    m_spinnerView->setFrame({0, 0, spinnerSize, spinnerSize});
    m_spinnerView->setCenter(view()->bounds().center());
    m_spinnerView->setAutoresizingMask(Platform::View::FlexibleLeftMargin | Platform::View::FlexibleRightMargin
                                       | Platform::View::FlexibleTopMargin | Platform::View::FlexibleBottomMargin);
    // White on the white of an empty page would not be seen.
    auto *backdrop = new Platform::View(m_spinnerView->bounds().adjusted(-14, -14, 14, 14));
    backdrop->setBackgroundColor(QColor(0, 0, 0, 150));
    backdrop->setCornerRadius(12);
    m_spinnerView->addSubview(backdrop);
    backdrop->setZ(-1);
    m_spinnerView->setHidesWhenStopped(true);
    m_spinnerView->startAnimating();
    // Seen again, with its page there since long.
    if (m_hasFirstLoadEnded)
        m_spinnerView->stopAnimating();
}

void BrevantoWebVC::viewDidAppear(bool animated)
{
    ViewController::viewDidAppear(animated);
    if (m_isShowingYoutubeVid)
        dismiss(true);
}

// The one appearance call that stays away from the base class.
void BrevantoWebVC::viewWillDisappear(bool)
{
    if (isYoutube())
        m_isShowingYoutubeVid = true;
}

bool BrevantoWebVC::isYoutube() const
{
    return m_urlString.contains(QLatin1StringView("youtube"), Qt::CaseInsensitive);
}

QString BrevantoWebVC::youtubePage() const
{
    QString address = m_urlString;
    address.replace(QLatin1StringView("watch?v="), QLatin1StringView("v/"), Qt::CaseInsensitive);
    // Not part of any address as it should be; in the page they would end the attribute and begin another element.
    for (const char16_t character : {u'"', u'<', u'>'})
        address.replace(QChar(character), QString::fromLatin1(QUrl::toPercentEncoding(QString(QChar(character)))));
    const QSizeF size = m_webview->frame().size();
    QString page;
    page += QLatin1StringView("<html><head>");
    page += QLatin1StringView("<style type=\"text/css\">");
    page += QLatin1StringView("body {");
    page += QLatin1StringView("background-color: transparent;");
    page += QLatin1StringView("color: white;");
    page += QLatin1StringView("}");
    page += QLatin1StringView("</style>");
    page += QLatin1StringView(R"(</head><body style="margin:0">)");
    page += QLatin1StringView(R"(<embed id="yt" src=")") + address
        + QLatin1StringView("\" type=\"application/x-shockwave-flash\"");
    page += QLatin1StringView("width=\"") + QString::number(size.width(), 'f', 6) + QLatin1StringView("\" height=\"")
        + QString::number(size.height(), 'f', 6) + QLatin1StringView("\"></embed>");
    page += QLatin1StringView("</body></html>");
    return page;
}

void BrevantoWebVC::webViewDidStartLoad()
{
    Platform::Application::setNetworkActivityIndicatorVisible(true);
}

void BrevantoWebVC::webViewDidFinishLoad()
{
    if (m_webview->isLoading())
        return;
    Platform::Application::setNetworkActivityIndicatorVisible(false);
    endSpinner();
    checkButtonAction();
}

void BrevantoWebVC::webViewDidFailLoad()
{
    endSpinner();
}

void BrevantoWebVC::endSpinner()
{
    m_hasFirstLoadEnded = true;
    if (m_spinnerView)
        m_spinnerView->stopAnimating();
}

void BrevantoWebVC::checkButtonAction()
{
    const bool canGoBack = m_webview->canGoBack();
    const bool canGoForward = m_webview->canGoForward();
    if (m_back.enabled == canGoBack && m_fwd.enabled == canGoForward)
        return;
    m_back.enabled = canGoBack;
    m_fwd.enabled = canGoForward;
    updateToolbarItems();
}

void BrevantoWebVC::updateToolbarItems()
{
    QList<BarButtonItem> items{m_close, flexiSpaceButton(), m_reload, flexiSpaceButton()};
    if (!m_urlString.isNull())
        items << m_safari << flexiSpaceButton();
    items << m_back << flexiSpaceButton() << m_fwd;
    setToolbarItems(items);
}

bool BrevantoWebVC::goBack()
{
    if (m_webview->canGoBack())
        goToPageBefore();
    else
        closeMVC();
    return true;
}

void BrevantoWebVC::goToPageBefore()
{
    m_webview->goBack();
    checkButtonAction();
}

void BrevantoWebVC::goFwd()
{
    m_webview->goForward();
    checkButtonAction();
}

void BrevantoWebVC::refresh()
{
    if (m_urlString.isNull())
        m_webview->loadHtml(m_htmlString);
    else if (!m_youtubeHtmlString.isNull())
        m_webview->loadHtml(m_youtubeHtmlString);
    else
        m_webview->reload();
}

void BrevantoWebVC::openSafari()
{
    auto alert =
        std::make_unique<Platform::AlertController>(QString(), QStringLiteral("Do you want to Open in Safari ?"));
    alert->addAction({QStringLiteral("Cancel"), Platform::AlertActionStyle::Cancel, {}});
    alert->addAction({QStringLiteral("Open"), Platform::AlertActionStyle::Default, [self = QPointer(this)] {
                          const QUrl url = self ? self->webview()->url() : QUrl();
                          if (Platform::Application::canOpenURL(url))
                              Platform::Application::openURL(url, logBrowserOpened);
                      }});
    present(std::move(alert), true);
}

void BrevantoWebVC::closeMVC()
{
    dismiss(true);
    Platform::Application::setNetworkActivityIndicatorVisible(false);
}

BarButtonItem BrevantoWebVC::closeButton()
{
    return iconButton(BrevantoUtils::closeCGImageRef(), tr("Close"), [this] { closeMVC(); });
}

BarButtonItem BrevantoWebVC::backButton()
{
    BarButtonItem button = iconButton(BrevantoUtils::backArrowCGImageRef(), tr("Back"), [this] { goToPageBefore(); });
    button.enabled = false;
    return button;
}

BarButtonItem BrevantoWebVC::reloadButton()
{
    return BarButtonItem::systemItem(Platform::SystemItem::Refresh, [this] { refresh(); });
}

BarButtonItem BrevantoWebVC::fwdButton()
{
    BarButtonItem button = iconButton(BrevantoUtils::forwardArrowCGImageRef(), tr("Forward"), [this] { goFwd(); });
    button.enabled = false;
    return button;
}

BarButtonItem BrevantoWebVC::safariButton()
{
    BarButtonItem button = BarButtonItem::systemItem(Platform::SystemItem::Action, [this] { openSafari(); });
    button.accessibleName = tr("Open in browser");
    return button;
}

BarButtonItem BrevantoWebVC::flexiSpaceButton()
{
    return BarButtonItem::systemItem(Platform::SystemItem::FlexibleSpace);
}
