import QtQuick
import QtQuick.Controls.Basic as Controls
import QtQuick.Templates as T
import QtWebView
import Brevanto.Platform as Platform

// A page of the platform's web view under a thin bar that shows how far it has come. Phones draw their pages above
// everything of this window: there the bar stands above the page, and an alert makes the page go.
Item {
    id: root

    required property Platform.WebView webView
    // On desktops, the engine's own view, which says more than the one that all platforms share; else null.
    property Item engine: null
    readonly property bool canGoBack: page.canGoBack
    readonly property bool canGoForward: page.canGoForward
    readonly property bool loading: page.loading
    // Of the engine's numbers.
    readonly property var ownNavigations: ({ "typed": 1, "backOrForward": 3, "reload": 4 })
    readonly property int httpStatusDomain: 7
    // Engines have no plug-ins any more: what a text hands to one fills the page as a frame.
    readonly property string pluginsAsFrames: `
        for (const embed of document.querySelectorAll("embed[type='application/x-shockwave-flash']")) {
            const frame = document.createElement("iframe")
            frame.src = embed.src
            frame.allowFullscreen = true
            frame.style = "position: fixed; inset: 0; width: 100%; height: 100%; border: 0"
            embed.replaceWith(frame)
        }`

    function load(url: url) {
        page.url = url
    }
    function loadHtml(html: string) {
        page.loadHtml(html)
    }
    function reload() {
        page.reload()
    }
    function goBack() {
        page.goBack()
    }
    function goForward() {
        page.goForward()
    }

    // Whether a start was told whose end is still to be told.
    property bool isUnderWay: false

    function isHtml(url: url): bool {
        return /^(data|about):/.test(url.toString())
    }
    // Text loaded as a page has a data: address for the engine; pages cannot lead to one.
    function isAllowed(request: var): bool {
        if (webView.isLoadable(request.url))
            return true
        if (!request.isMainFrame)
            return /^(about|data|blob):/.test(request.url.toString())
        return isHtml(request.url) && Object.values(ownNavigations).includes(request.navigationType)
    }
    function connectEngine() {
        const found = page.children.length > 0 ? page.children[0] : null
        if (engine || !found || !found.navigationRequested)
            return
        engine = found
        engine.settings.errorPageEnabled = false
        engine.settings.showScrollBars = false
        engine.navigationRequested.connect(request => {
            if (!isAllowed(request))
                request.reject()
        })
        // There are no windows: what a tap opens in one takes the place of the page.
        engine.newWindowRequested.connect(request => {
            if (request.userInitiated && webView.isLoadable(request.requestedUrl))
                page.url = request.requestedUrl
        })
        engine.contextMenuRequested.connect(request => request.accepted = true)
        // A page asks the user nothing, be it once or without end.
        for (const question of [engine.javaScriptDialogRequested, engine.authenticationDialogRequested,
                                engine.fileDialogRequested, engine.colorDialogRequested]) {
            question.connect(request => {
                request.accepted = true
                request.dialogReject()
            })
        }
        engine.loadingChanged.connect(info => tell(info, info.errorDomain === httpStatusDomain))
    }
    function tell(info: var, isServersAnswer: bool) {
        if (!webView.isLoadable(info.url) && !isHtml(info.url)) {
            if (info.status === WebView.LoadStartedStatus) {
                if (!engine)
                    page.stop()
            } else if (isUnderWay) {
                // The server led to another address.
                isUnderWay = false
                webView.didFailLoad(info.errorString)
            }
            return
        }
        isUnderWay = info.status === WebView.LoadStartedStatus
        if (isHtml(info.url) && info.status === WebView.LoadSucceededStatus)
            page.runJavaScript(pluginsAsFrames)
        if (isUnderWay)
            webView.didStartLoad()
        else if (info.status === WebView.LoadSucceededStatus || isServersAnswer)
            webView.didFinishLoad()
        else
            webView.didFailLoad(info.errorString)
    }

    anchors.fill: parent

    WebView {
        id: page

        anchors.fill: parent
        anchors.topMargin: root.engine ? 0 : progress.height
        visible: root.engine || !T.Overlay.overlay || !T.Overlay.overlay.visible
        // The view tells of its history with the ends of loads alone; a page that is on its way counts before.
        onLoadProgressChanged: root.webView.historyChanged()
        onUrlChanged: root.webView.pageDidChangeUrl(url)
        onChildrenChanged: root.connectEngine()
        onLoadingChanged: loadRequest => {
            if (!root.engine)
                root.tell(loadRequest, false)
        }
        Component.onCompleted: root.connectEngine()
    }

    Controls.ProgressBar {
        id: progress

        objectName: "loadProgress"
        width: parent.width
        height: 3
        padding: 0
        to: 100
        // Something is seen from the start on.
        value: Math.max(8, page.loadProgress)
        opacity: page.loading ? 1 : 0
        Accessible.name: qsTr("Page loading")
        Accessible.ignored: !page.loading

        background: Rectangle {
            color: "#22000000"
        }
        contentItem: Item {
            Rectangle {
                width: parent.width * progress.visualPosition
                height: parent.height
                color: "#0a84ff"
                Behavior on width {
                    NumberAnimation { duration: 150 }
                }
            }
        }
        Behavior on opacity {
            NumberAnimation { duration: 250 }
        }
    }
}
