#pragma once

#include <QFont>
#include <QObject>
#include <QtQmlIntegration>

namespace Platform
{

// The typeface of the platform's own controls, in the weights that they use; sizes in points of the screen. In scenes a
// singleton: SystemFont.medium(16).
class SystemFont : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    Q_INVOKABLE static QFont regular(qreal points);
    Q_INVOKABLE static QFont medium(qreal points);
    Q_INVOKABLE static QFont semibold(qreal points);
};

} // namespace Platform
