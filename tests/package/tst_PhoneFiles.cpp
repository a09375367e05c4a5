#include "support/Table.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace
{

QDir folder()
{
    return QDir(QStringLiteral(EXAMPLES "/phone"));
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no file %s", qPrintable(path));
    return file.readAll();
}

} // namespace

// The files that only the tools for phones read: whether those could read them.
class tst_PhoneFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isWellFormed_data()
    {
        addColumns<QString>("path");
        QDirIterator files(folder().path(), {u"*.xml"_s, u"*.in"_s}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            QTest::newRow(qPrintable(folder().relativeFilePath(path))) << path;
        }
    }
    void isWellFormed()
    {
        QFETCH(const QString, path);
        QXmlStreamReader reader(contents(path));
        while (!reader.atEnd()) {
            reader.readNext();
            const bool isValueMissing = reader.isEndElement() && reader.name() == "key"_L1
                && reader.readNextStartElement() && reader.name() == "key"_L1;
            QVERIFY2(!isValueMissing, "a key of a property list has no value");
        }
        QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    }

    void manifestNamesFilesThatAreThere()
    {
        QXmlStreamReader reader(contents(folder().filePath(u"android/AndroidManifest.xml.in"_s)));
        QStringList resources;
        while (!reader.atEnd()) {
            reader.readNext();
            for (const QXmlStreamAttribute &attribute : reader.attributes()) {
                const QString value = attribute.value().toString();
                if (value.startsWith(u'@') && value.contains(u'/'))
                    resources.append(u"android/res/%1.xml"_s.arg(value.sliced(1)));
            }
        }
        QVERIFY(!resources.isEmpty());
        for (const QString &resource : std::as_const(resources))
            QVERIFY2(folder().exists(resource), qPrintable(resource));
    }

    // What an application store refuses: an icon of another size or with transparent pixels.
    void iconServes()
    {
        const QDir icons(folder().filePath(u"ios/Assets.xcassets/AppIcon.appiconset"_s));
        const QJsonObject list = QJsonDocument::fromJson(contents(icons.filePath(u"Contents.json"_s))).object();
        const QJsonArray images = list["images"_L1].toArray();
        QVERIFY(!images.isEmpty());
        for (const auto entry : images) {
            const QJsonObject described = entry.toObject();
            const QImage icon(icons.filePath(described["filename"_L1].toString()));
            QCOMPARE(u"%1x%2"_s.arg(icon.width()).arg(icon.height()), described["size"_L1].toString());
            QVERIFY(!icon.hasAlphaChannel());
        }
    }
};

QTEST_GUILESS_MAIN(tst_PhoneFiles)
#include "tst_PhoneFiles.moc"
