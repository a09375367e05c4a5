#pragma once

#include <QColor>
#include <QString>

// The colour that a match's theme text names: hexadecimal RRGGBB, behind any of "0x" and "#". The default blue for text
// that names none.
namespace ThemeColor
{

QColor parsed(const QString &text);

} // namespace ThemeColor
