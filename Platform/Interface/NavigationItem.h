#pragma once

#include "Platform/Graphics/Image.h"

#include <QColor>
#include <QList>
#include <QObject>
#include <QSizeF>
#include <QString>
#include <QUrl>
#include <QtQmlIntegration>

#include <functional>

namespace Platform
{

// The platform's own items, each with its glyph and name.
enum class SystemItem { FlexibleSpace = 5, Action = 9, Refresh = 13 };

// A button in a navigation bar or toolbar, or a fixed or flexible space between buttons.
struct BarButtonItem {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(QString accessibleName MEMBER accessibleName CONSTANT)
    Q_PROPERTY(QSizeF size MEMBER size CONSTANT)
    Q_PROPERTY(bool enabled MEMBER enabled CONSTANT)
    Q_PROPERTY(bool isSpace MEMBER isSpace CONSTANT)
    Q_PROPERTY(bool isFlexible MEMBER isFlexible CONSTANT)

public:
    QUrl image;
    Image picture = {}; // shape of a glyph, shown in the bar's tint colour when there is no address
    QString accessibleName = {};
    QSizeF size = {}; // points; a space's width may be negative, which moves its neighbour outwards
    bool enabled = true;
    bool isSpace = false;
    bool isFlexible = false; // a space that takes its share of the room left
    std::function<void()> action = {};

    // Address of the image, or of the picture in that colour.
    Q_INVOKABLE QUrl source(const QColor &tintColor) const;

    static BarButtonItem fixedSpace(qreal width);
    static BarButtonItem flexibleSpace();
    static BarButtonItem systemItem(SystemItem item, std::function<void()> action = {});
    // Runs the action of the item at that place, if it is an enabled button.
    static void activate(const QList<BarButtonItem> &items, int index);
};

// What one screen shows in the navigation bar of its stack.
class NavigationItem : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY changed)
    Q_PROPERTY(QList<Platform::BarButtonItem> leftBarButtonItems READ leftBarButtonItems NOTIFY changed)
    Q_PROPERTY(QList<Platform::BarButtonItem> rightBarButtonItems READ rightBarButtonItems NOTIFY changed)

public:
    using QObject::QObject;

    QString title() const { return m_title; }
    void setTitle(const QString &title);
    QList<BarButtonItem> leftBarButtonItems() const { return m_left; }
    void setLeftBarButtonItems(const QList<BarButtonItem> &items);
    QList<BarButtonItem> rightBarButtonItems() const { return m_right; }
    void setRightBarButtonItems(const QList<BarButtonItem> &items);

    // The bar's button at that place was activated.
    Q_INVOKABLE void activateLeft(int index);
    Q_INVOKABLE void activateRight(int index);

Q_SIGNALS:
    void changed();

private:
    QString m_title;
    QList<BarButtonItem> m_left;
    QList<BarButtonItem> m_right;
};

} // namespace Platform
