#include "Model/MatchFields.h"
#include "ServerManager/CallRecorder.h"
#include "support/RawServer.h"
#include "support/Table.h"

#include "Brevanto/Model/BrevantoCaptionedImage.h"
#include "Brevanto/Model/BrevantoCatalogueImage.h"
#include "Brevanto/Model/BrevantoMatchObject.h"
#include "Brevanto/Model/BrevantoRelatedContent.h"
#include "Brevanto/ServerManager/DeviceDescription.h"
#include "Brevanto/ServerManager/ServiceAddress.h"

#include <QCborMap>
#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

QString page(const QString &name)
{
    QFile file(QStringLiteral(DOCUMENTATION "/") + name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no page %s", qPrintable(name));
    return QString::fromUtf8(file.readAll());
}

// What `expression` captures first, wherever it matches.
QStringList captured(const QString &text, const QString &expression)
{
    QStringList captures;
    const QRegularExpression compiled(expression, QRegularExpression::MultilineOption);
    for (auto match = compiled.globalMatch(text); match.hasNext();)
        captures.append(match.next().captured(1));
    return captures;
}

// The blocks of a page in that language, as they stand there.
QStringList blocks(const QString &text, const QString &language)
{
    return captured(text, u"^```%1\\n([^`]*)^```$"_s.arg(language));
}

QStringList quoted(const QString &cell)
{
    return captured(cell, u"`([^`]*)`"_s);
}

// The cells of the rows of the tables that begin with a quoted text.
QList<QStringList> rows(const QString &text)
{
    QList<QStringList> rows;
    for (const QString &row : captured(text, u"^\\| (`.*) \\|$"_s))
        rows.append(row.split(u" | "_s));
    return rows;
}

QJsonValue fromJson(const QString &text)
{
    return QJsonDocument::fromJson("[" + text.toUtf8() + "]")[0];
}

QString toJson(const QJsonObject &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson());
}

QJsonObject mapped(const QString &key, const QJsonValue &value)
{
    const QJsonObject match{{key, value}};
    return filledFields(BrevantoMatch::populateMatchesUsingArray(QJsonArray{match}).value().constFirst());
}

// The texts in the objects of an example.
QStringList textsOfObjects(const QJsonValue &example)
{
    QStringList texts;
    const QJsonArray entries = example.toArray();
    for (const auto entry : entries) {
        const QJsonObject object = entry.toObject();
        for (const auto value : object)
            texts.append(value.toString());
    }
    return texts;
}

bool isOfKind(const QJsonValue &value, const QString &kind, bool isTakenAsSent)
{
    if (kind == "as sent"_L1)
        return isTakenAsSent;
    if (kind == "date"_L1 || kind.startsWith("text"_L1))
        return value.isString();
    if (kind == "number"_L1)
        return value.isDouble();
    if (kind == "true"_L1)
        return value == true;
    const QJsonArray entries = value.toArray();
    const QString className = quoted(kind).value(0);
    return kind.startsWith("list"_L1) && value.isArray()
        && std::all_of(entries.begin(), entries.end(), [&](const auto entry) {
               return className.isEmpty() ? entry.isString() : entry.toObject().value("0"_L1) == className;
           });
}

} // namespace

// Whether what docs/ says of bytes, keys and answers is what the library sends, writes and reads.
class tst_Documentation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCoreApplication::setApplicationVersion(u"1.0"_s); }

    void init()
    {
        m_address = std::make_unique<ServiceAddress::Override>(m_server.url(QString()));
        m_manager = BrevantoServerManager::create();
    }
    void cleanup()
    {
        m_manager.reset();
        m_address.reset();
    }

    void uploadIsWhatTheProtocolShows()
    {
        m_manager->postCapturedImageData("\xff\xd8", nullptr, nullptr);
        QTRY_COMPARE(m_server.requestCount(), 1);
        const RawServer::Request request = m_server.requests().constFirst();
        QCOMPARE(QString::fromLatin1(request.method + " <base>" + request.target.mid(1)),
                 captured(m_protocol, u"^`(POST [^`]*)`"_s)[0]);
        QCOMPARE(QString::fromLatin1("Content-Type: " + request.headers.value("content-type")),
                 captured(m_protocol, u"`(Content-Type: multipart[^`]*)`"_s)[0]);

        for (const QString &name : {u"Accept-Encoding"_s, u"Accept-Language"_s, u"User-Agent"_s})
            QCOMPARE(name + u": "_s + QString::fromLatin1(request.headers.value(name.toLower().toLatin1())),
                     captured(m_protocol, u"`(%1: [^`]*)`"_s.arg(name)).value(0));

        QByteArray documented = blocks(m_protocol, {}).value(0).remove(u'\n').toUtf8();
        documented.replace("␍␊", "\r\n");
        documented.replace("<the JPEG's bytes>", "\xff\xd8");
        documented.replace("\nPhone\r", '\n' + DeviceDescription::model().toUtf8() + '\r');
        documented.replace("Linux- 6.1",
                           (DeviceDescription::systemName() + u"- "_s + DeviceDescription::systemVersion()).toUtf8());
        // The fields come in no fixed order.
        const auto parts = [](const QByteArray &body) {
            QStringList pieces = QString::fromLatin1(body).split(u"\r\n--14737809831466499882746641449\r\n"_s);
            std::sort(pieces.begin() + 1, pieces.end() - 2);
            return pieces;
        };
        QCOMPARE(parts(request.body), parts(documented));
    }

    // Each documented answer is given to the documented request for it.
    void answersAreUnderstood_data()
    {
        addColumns<int, QString, QString>("number", "request", "outcome");
        QTest::newRow("upload") << 0 << u"image/upload"_s << u"completion groups [1]"_s;
        QTest::newRow("ad") << 1 << u"ads/getAd"_s << u"completion match Castle"_s;
        QTest::newRow("short address") << 2 << u"v3/shorten"_s << u"completion url https://s.example/x1"_s;
    }
    void answersAreUnderstood()
    {
        QFETCH(int, number);
        QFETCH(QString, request);
        const QStringList answers = blocks(m_protocol, u"json"_s);
        QCOMPARE(answers.size(), 3);
        m_server.setAnswer(RawServer::Answer::json(answers[number].toUtf8()));
        CallRecorder recorder;
        if (number == 0)
            m_manager->postCapturedImageData("jpeg", recorder.completion<std::optional<BrevantoMatchGroupList>>(),
                                             recorder.failure());
        else if (number == 1)
            m_manager->getMeta(u"a b"_s, 0, recorder.completion<std::shared_ptr<BrevantoMatch>>(), recorder.failure());
        else
            m_manager->getShortenedURLFor(u"a b"_s, recorder.completion<QString>(), recorder.failure());
        QTRY_COMPARE(recorder.calls().size(), 1);
        QTEST(recorder.calls()[0], "outcome");

        QString line = captured(m_protocol, u"^`([A-Z]+ <[^`]*%1[^`]*)`"_s.arg(request)).value(0);
        line.replace(u"<base>"_s, u"/"_s).remove(u"<BREVANTO_SHORTENER_ENDPOINT>"_s);
        line.replace(u"<BREVANTO_SHORTENER_TOKEN>"_s, ServiceAddress::shortenerToken());
        line.replace(QRegularExpression(u"<percent-escaped [a-z]+>"_s), u"a+b"_s);
        const RawServer::Request sent = m_server.requests().constLast();
        QCOMPARE(QString::fromLatin1(sent.method + ' ' + sent.target), line);
    }

    // The documented keys are those that are read, their examples are of use, and only what is taken as sent may be of
    // any kind.
    void keysAreThoseThatAreRead()
    {
        QStringList documented;
        for (const QStringList &row : rows(m_protocol)) {
            QCOMPARE(row.size(), 4);
            const QStringList keys = quoted(row[0]), examples = quoted(row[3]);
            for (const QString &key : keys) {
                const QString example = examples.value(keys.indexOf(key), examples.constLast());
                const QJsonObject fields = mapped(key, fromJson(example));
                QVERIFY2(!fields.isEmpty(), qPrintable(key + u": "_s + example));

                // The keys of the objects in a list: those of the example, and those that the text names.
                QStringList texts = textsOfObjects(fromJson(example));
                QJsonObject object;
                for (const QString &name : row[1] == "list of objects"_L1 ? quoted(row[2]) : QStringList()) {
                    if (name.endsWith(u':'))
                        continue;
                    object.insert(name, QString(name + u'!'));
                    texts.append(name + u'!');
                }
                const QString kept = toJson(fields) + toJson(mapped(key, QJsonArray{object}));
                for (const QString &text : texts)
                    QVERIFY2(kept.contains(text), qPrintable(key + u": "_s + text));

                const bool isTakenAsSent = mapped(key, true).toVariantMap().values().contains(true);
                QVERIFY2(isTakenAsSent == (row[1] == "as sent"_L1), qPrintable(key));
                documented.append(key);
            }
        }
        QStringList read;
        for (const std::string_view name : BrevantoMatchObject::names)
            read.append(QString::fromLatin1(name.data(), qsizetype(name.size())));
        documented.sort();
        QCOMPARE(documented, read);
    }

    void archiveHoldsWhatItsPageSays()
    {
        const QString text = page(u"archive-format.md"_s);
        QMap<QString, QList<QString>> written;
        for (const Platform::CodablePointer &record : std::initializer_list<Platform::CodablePointer>{
                 std::make_shared<BrevantoMatchGroup>(), std::make_shared<BrevantoMatch>(),
                 std::make_shared<BrevantoCaptionedImage>(), std::make_shared<BrevantoCatalogueImage>(),
                 std::make_shared<BrevantoRelatedContent>()}) {
            const QCborMap map = QCborValue::fromCbor(archived(record)).toMap();
            QCOMPARE(map.value(0).toString(), record->className());
            for (const QCborValue &key : map.keys()) {
                if (key.isString())
                    written[record->className()].append(key.toString());
            }
        }
        const QStringList keysOfMatch = written.take(u"BrevantoMatch"_s); // in a table of their own
        QStringList documented;
        for (const QStringList &row : rows(text)) {
            const QString name = quoted(row[0])[0];
            const QStringList keys = written.take(name);
            if (!keys.isEmpty())
                QCOMPARE(quoted(row[1]).first(keys.size()), keys);
            else if (name != "BrevantoMatch"_L1)
                documented.append(name);
        }
        QCOMPARE(documented, keysOfMatch);
        QVERIFY2(written.isEmpty(), qPrintable(written.keys().join(u' ')));
    }

    // Which of the service's keys fill a field of the archive, and with what.
    void archiveSaysWhereFieldsComeFrom()
    {
        QHash<QString, QJsonValue> samples{
            {u"relatedArticleLinks"_s,
             fromJson(uR"([{"url":"polls:1"},{"url":"quiz:2"},{"url":"ads:3"},{"url":"4"}])"_s)},
            {u"relatedContentIdentifiers"_s, fromJson(uR"(["quiz-1","polls-2"])"_s)}};
        for (const QStringList &row : rows(m_protocol)) {
            const QStringList keys = quoted(row[0]), examples = quoted(row[3]);
            for (qsizetype i = 0; i < keys.size(); ++i) {
                if (!samples.contains(keys[i]))
                    samples.insert(keys[i], fromJson(examples.value(i, examples.constLast())));
            }
        }
        QMap<QString, QMap<QString, QJsonValue>> filled; // fields, and the service's keys for each
        for (auto sample = samples.cbegin(); sample != samples.cend(); ++sample) {
            const QJsonObject fields = mapped(sample.key(), sample.value());
            for (auto field = fields.begin(); field != fields.end(); ++field)
                filled[field.key()].insert(sample.key(), field.value());
        }
        for (const QStringList &row : rows(page(u"archive-format.md"_s))) {
            if (row.size() != 3)
                continue;
            const QString key = quoted(row[0])[0];
            QStringList documented = quoted(row[2]);
            documented.sort();
            const QStringList keys = filled[key].keys();
            if (row[2].endsWith("else the first image"_L1))
                QVERIFY2(std::includes(keys.begin(), keys.end(), documented.begin(), documented.end()),
                         qPrintable(key));
            else
                QVERIFY2(keys == documented, qPrintable(key + u": "_s + keys.join(u' ')));
            for (const QString &from : documented)
                QVERIFY2(isOfKind(filled[key][from], row[1], mapped(from, true)[key] == true),
                         qPrintable(key + u" of "_s + from + u" is no "_s + row[1]));
        }
    }

private:
    const QString m_protocol = page(u"service-protocol.md"_s);
    RawServer m_server;
    std::unique_ptr<ServiceAddress::Override> m_address;
    std::shared_ptr<BrevantoServerManager> m_manager;
};

QTEST_GUILESS_MAIN(tst_Documentation)
#include "tst_Documentation.moc"
