#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtNetwork/QTcpSocket>

namespace TestSupport
{

struct HttpAnswer {
    int status = 0;
    QHash<QByteArray, QByteArray> headers;
    QByteArray body;

    QJsonObject json() const;
    /// The number under "code" in the envelope; -1 when there is none.
    int code() const;
};

/// The real service on a free port, ended by the destructor.
class ServiceProcess
{
public:
    /// Empty catalogue: the one that is shipped.
    explicit ServiceProcess(const QStringList &arguments = {}, const QString &catalogue = {});
    ~ServiceProcess();

    bool isListening() const { return m_port != 0; }
    quint16 port() const { return m_port; }
    /// Bytes of memory, now and at the most so far, where the system tells.
    qint64 memory() const;
    qint64 peakMemory() const;
    QString address() const { return QStringLiteral("http://127.0.0.1:%1/").arg(m_port); }
    /// Asks it to end and gives its exit code, -1 when it does not end by itself.
    int end();

private:
    QProcess m_process;
    quint16 m_port = 0;
};

/// One connection that says exactly what it is told to.
class RawClient
{
public:
    /// A slow one takes only what it sips.
    explicit RawClient(quint16 port, bool isSlow = false);

    void send(const QByteArray &bytes);
    /// Sends a byte every tenth of a second until the service closes the connection; whether it does so before the end.
    bool trickle(const QByteArray &bytes);
    /// Takes a few bytes of what has been sent and leaves the rest to wait in the network.
    void sip();
    /// The next answer; status 0 when the connection ended or nothing came in time. `isHead` expects no body.
    HttpAnswer receive(bool isHead = false);
    /// Whether the service has closed the connection, or does so in good time.
    bool isClosed();

private:
    bool readMore();

    QTcpSocket m_socket;
    QByteArray m_received;
};

/// The SDK's upload, byte for byte.
QByteArray uploadBody(const QByteArray &photo);
QByteArray uploadRequest(const QByteArray &body);
/// What the SDK makes of a photo before it uploads it.
QByteArray reducedPhoto(const QString &path);

HttpAnswer get(quint16 port, const QByteArray &target, const QByteArray &headers = {});
HttpAnswer post(quint16 port, const QByteArray &body);

} // namespace TestSupport
