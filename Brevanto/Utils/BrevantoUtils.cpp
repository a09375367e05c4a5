#include "Brevanto/Utils/BrevantoUtils.h"

#include "Platform/Foundation/Log.h"
#include "Platform/Foundation/UserDefaults.h"

#include <QDebug>
#include <QPainter>

namespace
{

constexpr int iconSize = 27;

QString loadedOnceKey()
{
    return QStringLiteral("isAppLoadedOnce");
}

// Lets `draw` paint an icon in a space with its origin at the bottom left.
template <typename Draw>
Platform::Image drawIcon(Draw draw)
{
    QImage bitmap = BrevantoUtils::getContextRef();
    QPainter painter(&bitmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(0, iconSize);
    painter.scale(1, -1);
    draw(painter);
    painter.end();
    return Platform::Image(bitmap);
}

Platform::Image triangleIcon(const QPointF &a, const QPointF &b, const QPointF &c)
{
    return drawIcon([&](QPainter &painter) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::black);
        painter.drawPolygon(QPolygonF{a, b, c});
    });
}

void replaceAll(QString &text, QLatin1StringView before, QLatin1StringView after)
{
    while (text.contains(before))
        text.replace(before, after);
}

} // namespace

std::unique_ptr<Platform::AlertController> BrevantoUtils::getAlertController(const QString &title,
                                                                             const QString &message)
{
    auto alert = std::make_unique<Platform::AlertController>(title, message);
    alert->addAction({QStringLiteral("OK"), Platform::AlertActionStyle::Default, {}});
    return alert;
}

std::unique_ptr<Platform::AlertController> BrevantoUtils::getNoNetworkAlert()
{
    return getAlertController(QStringLiteral("No Internet Connection"),
                              QStringLiteral("Please check your network settings"));
}

std::unique_ptr<Platform::AlertController> BrevantoUtils::getSomethingWentWrongAlert()
{
    return getAlertController(QStringLiteral("Brevanto"), QStringLiteral("Something went wrong!!"));
}

void BrevantoUtils::addSpinnerToView(Platform::View *view, Platform::ActivityIndicatorStyle style)
{
    QString line;
    QDebug(&line).nospace() << "Inside addWhiteSpinner for view : " << view;
    Platform::log(line);
    if (view->viewWithTag(spinnerTag))
        return;
    auto *spinner = new Platform::ActivityIndicator(style);
    spinner->setHidesWhenStopped(true);
    view->addSubview(spinner);
    const QSizeF free = view->frame().size() - spinner->frame().size();
    spinner->setFrame(QRectF(QPointF(free.width() / 2, free.height() / 2), spinner->frame().size()));
    spinner->setAutoresizingMask(Platform::View::FlexibleLeftMargin | Platform::View::FlexibleRightMargin
                                 | Platform::View::FlexibleTopMargin | Platform::View::FlexibleBottomMargin);
    view->bringSubviewToFront(spinner);
    spinner->setTag(spinnerTag);
    spinner->startAnimating();
}

void BrevantoUtils::removeSpinnerFromView(Platform::View *view)
{
    auto *spinner = qobject_cast<Platform::ActivityIndicator *>(view->viewWithTag(spinnerTag));
    if (!spinner)
        return;
    spinner->stopAnimating();
    spinner->removeFromSuperview();
    spinner->deleteLater();
}

QString BrevantoUtils::stringByRemovingExtraWhiteSpaces(const QString &string)
{
    if (string.isNull())
        return {};
    QString text = string;
    text.replace(QLatin1StringView("<BR>"), QLatin1StringView("<br>"));
    text.replace(QLatin1StringView("<BR/>"), QLatin1StringView("<br>"));
    text.replace(QLatin1StringView("<br/>"), QLatin1StringView("<br>"));
    text.replace(QLatin1StringView("<br><br>"), QLatin1StringView("<br>"));
    text.replace(QLatin1StringView("<br>"), QLatin1StringView("\n"));
    text = std::move(text).trimmed();
    replaceAll(text, QLatin1StringView("  "), QLatin1StringView(" "));
    replaceAll(text, QLatin1StringView("\n\n"), QLatin1StringView("\n"));
    // Spaces that come from tabs stay.
    text.replace(QLatin1Char('\t'), QLatin1Char(' '));
    text.replace(QLatin1StringView("\n"), QLatin1StringView("<br>"));
    return text;
}

QImage BrevantoUtils::getContextRef()
{
    QImage bitmap(iconSize, iconSize, QImage::Format_RGBA8888_Premultiplied);
    bitmap.fill(Qt::transparent);
    return bitmap;
}

Platform::Image BrevantoUtils::closeCGImageRef()
{
    return drawIcon([](QPainter &painter) {
        painter.setPen(QPen(Qt::white, 4, Qt::SolidLine, Qt::FlatCap));
        painter.drawLine(8, 6, 24, 20);
        painter.drawLine(24, 6, 8, 20);
    });
}

Platform::Image BrevantoUtils::backArrowCGImageRef()
{
    return triangleIcon({8, 13}, {24, 4}, {24, 22});
}

Platform::Image BrevantoUtils::forwardArrowCGImageRef()
{
    return triangleIcon({16, 13}, {0, 4}, {0, 22});
}

bool BrevantoUtils::isAppLoadedOnce()
{
    return Platform::UserDefaults::boolForKey(loadedOnceKey());
}

void BrevantoUtils::setIsAppLoadedOnce(bool isLoaded)
{
    Platform::UserDefaults::setBool(isLoaded, loadedOnceKey());
    Platform::UserDefaults::synchronize();
}
