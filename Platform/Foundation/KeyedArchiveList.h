#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>
#include <vector>

class QIODevice;

namespace Platform
{

// An archive whose root is a list, handled as bytes: its elements can be told apart, moved and written again without
// being decoded. All views refer to the archive's memory.
class KeyedArchiveList
{
public:
    struct Element {
        QByteArrayView bytes;
        // The text that the element holds under the key asked for, in UTF-8; nothing when it holds none there or is no
        // record of the class asked for.
        std::optional<QByteArrayView> text;
    };

    // The elements of the list, those that are records of the class with their text under `key`; nothing when the
    // archive cannot be decoded or its root is not a list.
    static std::optional<std::vector<Element>> elements(QByteArrayView archive, const QString &className,
                                                        QLatin1StringView key);

    // Writes an archive of these elements. False when the device fails.
    static bool write(const std::vector<Element> &elements, QIODevice &device);
};

} // namespace Platform
