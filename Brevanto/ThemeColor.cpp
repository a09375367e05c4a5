#include "Brevanto/ThemeColor.h"

#include <QRegularExpression>

QColor ThemeColor::parsed(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("^\\s*(?:#|0x)*([0-9a-f]{1,8})(?![0-9a-f])"),
                                            QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = pattern.match(text.left(64));
    if (!match.hasMatch())
        return QColor(0, 114, 187);
    const quint32 value = match.captured(1).toUInt(nullptr, 16);
    return QColor((value >> 16) & 0xff, (value >> 8) & 0xff, value & 0xff);
}
