#pragma once

#include <QByteArray>
#include <QFile>

// How much more memory this process has held at any moment than when the watch began. Always 0 where the system does
// not tell, and under the sanitizers, which hold on to what was freed.
class MemoryWatch
{
public:
    static constexpr qint64 mebibyte = 1024 * 1024;
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    static constexpr bool isMeaningful = false;
#else
    static constexpr bool isMeaningful = true;
#endif

    MemoryWatch()
    {
        begin();
    }

    void begin()
    {
        QFile file(QStringLiteral("/proc/self/clear_refs"));
        if (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            file.write("5"); // what is held now becomes the peak
        m_start = value("VmRSS:");
    }

    qint64 growth() const
    {
        return isMeaningful ? value("VmHWM:") - m_start : 0;
    }

private:
    static qint64 value(const QByteArray &name)
    {
        QFile file(QStringLiteral("/proc/self/status"));
        if (!file.open(QIODevice::ReadOnly))
            return 0;
        const QByteArray status = file.readAll();
        const qsizetype at = status.indexOf(name);
        return at < 0 ? 0 : status.mid(at + name.size()).trimmed().split(' ').first().toLongLong() * 1024;
    }

    qint64 m_start = 0;
};
