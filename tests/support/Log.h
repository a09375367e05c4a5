#pragma once

#include <QStringList>

// What `work` writes to the log, a text per message.
template <typename Work>
QStringList logOf(Work work)
{
    static QStringList *messages;
    QStringList lines;
    messages = &lines;
    const QtMessageHandler previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &text) { messages->append(text); });
    work();
    qInstallMessageHandler(previous);
    return lines;
}
