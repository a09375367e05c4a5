#include "tests/service/ServiceProcess.h"

#include <QtCore/QBuffer>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>

using namespace Qt::StringLiterals;

namespace TestSupport
{

namespace
{

constexpr int patience = 60000;
const QByteArray boundary = "14737809831466499882746641449";

} // namespace

QJsonObject HttpAnswer::json() const
{
    return QJsonDocument::fromJson(body).object();
}

int HttpAnswer::code() const
{
    return json().value(u"status"_s).toObject().value(u"code"_s).toInt(-1);
}

ServiceProcess::ServiceProcess(const QStringList &arguments, const QString &catalogue)
{
    static const QTemporaryDir cache;
    QStringList all = {u"--port"_s, u"0"_s, u"--cache"_s, cache.path()};
    if (!catalogue.isEmpty())
        all << u"--catalogue"_s << catalogue;
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(MATCH_SERVICE_PROGRAM), all + arguments);
    while (m_process.state() != QProcess::NotRunning && !m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(patience))
            return;
    }
    const QByteArray line = m_process.readLine().trimmed();
    if (line.startsWith("listening on http://127.0.0.1:") && line.endsWith('/'))
        m_port = line.mid(line.lastIndexOf(':') + 1).chopped(1).toUShort();
}

ServiceProcess::~ServiceProcess()
{
    end();
}

int ServiceProcess::end()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.terminate();
        if (!m_process.waitForFinished(patience))
            m_process.kill();
        m_process.waitForFinished(patience);
    }
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

qint64 ServiceProcess::memory() const
{
    QFile file(u"/proc/%1/statm"_s.arg(m_process.processId()));
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toLongLong() * 4096 : 0;
}

qint64 ServiceProcess::peakMemory() const
{
    QFile file(u"/proc/%1/status"_s.arg(m_process.processId()));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray status = file.readAll();
    return status.mid(status.indexOf("VmHWM:") + 6).trimmed().split(' ').first().toLongLong() * 1024;
}

RawClient::RawClient(quint16 port, bool isSlow)
{
    if (isSlow) {
        m_socket.bind(QHostAddress::LocalHost);
        m_socket.setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption, 4096);
        m_socket.setReadBufferSize(512);
    }
    m_socket.connectToHost(u"127.0.0.1"_s, port);
    m_socket.waitForConnected(patience);
}

void RawClient::send(const QByteArray &bytes)
{
    m_socket.write(bytes);
    while (m_socket.bytesToWrite() > 0 && m_socket.waitForBytesWritten(patience)) { }
}

bool RawClient::trickle(const QByteArray &bytes)
{
    for (const char byte : bytes) {
        if (m_socket.state() != QAbstractSocket::ConnectedState)
            return true;
        send(QByteArray(1, byte));
        m_socket.waitForReadyRead(100);
    }
    return false;
}

void RawClient::sip()
{
    m_socket.readAll();
    m_socket.waitForReadyRead(0);
}

bool RawClient::readMore()
{
    const bool hasMore = m_socket.bytesAvailable() > 0 || m_socket.waitForReadyRead(patience);
    m_received += m_socket.readAll();
    return hasMore;
}

HttpAnswer RawClient::receive(bool isHead)
{
    HttpAnswer answer;
    qsizetype end = -1;
    while ((end = m_received.indexOf("\r\n\r\n")) < 0) {
        if (!readMore())
            return answer;
    }
    const QList<QByteArray> lines = m_received.left(end).split('\n');
    for (const QByteArray &line : lines.mid(1))
        answer.headers.insert(line.left(line.indexOf(':')).toLower(), line.mid(line.indexOf(':') + 1).trimmed());
    m_received.remove(0, end + 4);
    const qsizetype length = isHead ? 0 : answer.headers.value("content-length").toLongLong();
    while (m_received.size() < length) {
        if (!readMore())
            return answer;
    }
    answer.status = lines.first().split(' ').value(1).toInt();
    if (answer.status == 100)
        return receive(isHead);
    answer.body = m_received.left(length);
    m_received.remove(0, length);
    return answer;
}

bool RawClient::isClosed()
{
    QElapsedTimer timer;
    timer.start();
    while (m_socket.state() == QAbstractSocket::ConnectedState && timer.elapsed() < patience)
        m_socket.waitForReadyRead(200);
    return m_socket.state() != QAbstractSocket::ConnectedState;
}

QByteArray uploadBody(const QByteArray &photo)
{
    const QByteArray separator = "\r\n--" + boundary + "\r\n";
    QByteArray body = separator;
    const QList<std::pair<QByteArray, QByteArray>> fields = {
        {"osName", "iOS- 10.3"}, {"username", "dummy"}, {"phoneModel", "iPhone"}, {"appName", "Brevanto-2.3"}};
    for (const auto &[name, value] : fields)
        body += "Content-Disposition: form-data; name=\"" + name + "\"\r\n\r\n" + value + separator;
    return body + "Content-Disposition: form-data; name=\"uploadedfile\"; filename=\"image.jpg\""
        + "Content-Type: application/octet-stream\r\n\r\n" + photo + separator;
}

QByteArray uploadRequest(const QByteArray &body)
{
    return "POST /image/upload HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Type: multipart/form-data; boundary=" + boundary
        + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

QByteArray reducedPhoto(const QString &path)
{
    const QImage photo(path);
    if (photo.isNull())
        return {};
    const int width = photo.width() > photo.height() ? 640 : 480;
    const QImage small =
        photo.scaled(width, photo.height() * width / photo.width(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QBuffer buffer;
    small.convertToFormat(QImage::Format_Grayscale8).save(&buffer, "JPEG", 0);
    return buffer.data();
}

HttpAnswer get(quint16 port, const QByteArray &target, const QByteArray &headers)
{
    RawClient client(port);
    client.send("GET " + target + " HTTP/1.1\r\nHost: 127.0.0.1:" + QByteArray::number(port) + "\r\n" + headers
                + "\r\n");
    return client.receive();
}

HttpAnswer post(quint16 port, const QByteArray &body)
{
    RawClient client(port);
    client.send(uploadRequest(body));
    return client.receive();
}

} // namespace TestSupport
