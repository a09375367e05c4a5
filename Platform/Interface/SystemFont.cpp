#include "Platform/Interface/SystemFont.h"

#include <QGuiApplication>

namespace Platform
{

namespace
{

QFont face(qreal points, QFont::Weight weight)
{
    QFont font;
    QStringList families{QStringLiteral("Avenir Next"), QStringLiteral("Avenir"), QStringLiteral("Inter")};
    families += QGuiApplication::font().families();
    font.setFamilies(families);
    font.setStyleHint(QFont::SansSerif);
    font.setWeight(weight);
    font.setPixelSize(qMax(1, qRound(points)));
    return font;
}

} // namespace

QFont SystemFont::regular(qreal points)
{
    return face(points, QFont::Normal);
}

QFont SystemFont::medium(qreal points)
{
    return face(points, QFont::Medium);
}

QFont SystemFont::semibold(qreal points)
{
    return face(points, QFont::DemiBold);
}

} // namespace Platform
