#pragma once

#include "Platform/Interface/ActivityIndicator.h"
#include "Platform/Interface/ViewController.h"
#include "Platform/Interface/WebView.h"

// The web viewer: one address over the whole screen, with a toolbar to close it, reload, hand the page to the system's
// browser and move through the pages visited. To be presented in a navigation stack of its own.
//
// An address that contains "youtube" is not loaded itself; a page that embeds its player is. Such a viewer closes
// itself when it is seen again after another screen has covered it, the player's full screen for one.
class BrevantoWebVC : public Platform::ViewController
{
    Q_OBJECT

public:
    // Null: shows htmlString, and there is nothing to hand to the browser.
    static std::unique_ptr<BrevantoWebVC> initWithUrlString(const QString &urlString);
    ~BrevantoWebVC() override;

    const Platform::BarButtonItem &safari() const { return m_safari; }
    const Platform::BarButtonItem &close() const { return m_close; }
    const Platform::BarButtonItem &back() const { return m_back; }
    const Platform::BarButtonItem &fwd() const { return m_fwd; }
    const Platform::BarButtonItem &reload() const { return m_reload; }

    QString urlString() const { return m_urlString; }
    // The page to show when there is no address; to be set before the screen is shown.
    QString htmlString() const { return m_htmlString; }
    void setHtmlString(const QString &htmlString) { m_htmlString = htmlString; }
    Platform::WebView *webview() const { return m_webview; }
    bool isShowingYoutubeVid() const { return m_isShowingYoutubeVid; }
    void setIsShowingYoutubeVid(bool isShowing) { m_isShowingYoutubeVid = isShowing; }
    // The page that embeds the player; null for other addresses.
    QString youtubeHtmlString() const { return m_youtubeHtmlString; }
    Platform::ActivityIndicator *spinnerView() const { return m_spinnerView; }

    // A new item on each call.
    Platform::BarButtonItem closeButton();
    Platform::BarButtonItem backButton();
    Platform::BarButtonItem reloadButton();
    Platform::BarButtonItem fwdButton();
    Platform::BarButtonItem safariButton();
    static Platform::BarButtonItem flexiSpaceButton();

    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    void viewDidAppear(bool animated) override;
    void viewWillDisappear(bool animated) override;

    // Sets the back and forward buttons by where the web view can go.
    void checkButtonAction();
    // The back key: to the page before, and from the first one out of the viewer.
    bool goBack() override;
    void goToPageBefore();
    void goFwd();
    void refresh();
    // Asks whether the system's browser shall open the page, and has it do so.
    void openSafari();
    void closeMVC();

private:
    explicit BrevantoWebVC(QString urlString);

    bool isYoutube() const;
    QString youtubePage() const;
    void webViewDidStartLoad();
    void webViewDidFinishLoad();
    void webViewDidFailLoad();
    void endSpinner();
    void updateToolbarItems();

    Platform::BarButtonItem m_safari;
    Platform::BarButtonItem m_close;
    Platform::BarButtonItem m_back;
    Platform::BarButtonItem m_fwd;
    Platform::BarButtonItem m_reload;
    QString m_urlString;
    QString m_htmlString;
    Platform::WebView *m_webview = nullptr; // a subview of the root view
    bool m_isShowingYoutubeVid = false;
    QString m_youtubeHtmlString;
    QPointer<Platform::ActivityIndicator> m_spinnerView;
    bool m_hasFirstLoadEnded = false;
};
