#include "Brevanto/ServerManager/BrevantoServerManager.h"
#include "Platform/Foundation/Exception.h"

#include <QTest>

using Manager = BrevantoServerManager;

class tst_RequestBodies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void escapes_data();
    void escapes();
    void joinsAForm_data();
    void joinsAForm();
    void joinsACacheKey_data();
    void joinsACacheKey();
    void raisesARangeErrorWithoutALastCharacter();
    void takesTheFirstNameOfASelector_data();
    void takesTheFirstNameOfASelector();
    void writesMultipartFields_data();
    void writesMultipartFields();
    void writesAnImagePart_data();
    void writesAnImagePart();
    void writesAFilePart();
};

namespace
{

const QByteArray separator = "\r\n--14737809831466499882746641449\r\n";

QVariantMap map(const QString &key, const QVariant &value)
{
    return {{key, value}};
}

} // namespace

void tst_RequestBodies::escapes_data()
{
    QTest::addColumn<QString>("string");
    QTest::addColumn<QString>("escaped");
    QTest::newRow("null") << QString() << QString();
    QTest::newRow("empty") << QStringLiteral("") << QString();
    QTest::newRow("unreserved") << QStringLiteral("azAZ09-._~") << QStringLiteral("azAZ09-._~");
    QTest::newRow("spaces") << QStringLiteral(" a  b ") << QStringLiteral("+a++b+");
    QTest::newRow("plus") << QStringLiteral("1+1") << QStringLiteral("1%2B1");
    QTest::newRow("reserved") << QStringLiteral(":/?@!$&'()*+,;=")
                              << QStringLiteral("%3A%2F%3F%40%21%24%26%27%28%29%2A%2B%2C%3B%3D");
    QTest::newRow("illegal") << QStringLiteral("#%[]<>\"{}|\\^`")
                             << QStringLiteral("%23%25%5B%5D%3C%3E%22%7B%7D%7C%5C%5E%60");
    QTest::newRow("escaped already") << QStringLiteral("%20") << QStringLiteral("%2520");
    QTest::newRow("controls") << QStringLiteral("\r\n\t\x7f") << QStringLiteral("%0D%0A%09%7F");
    QTest::newRow("outside ASCII") << QStringLiteral("é€😀") << QStringLiteral("%C3%A9%E2%82%AC%F0%9F%98%80");
}

void tst_RequestBodies::escapes()
{
    QFETCH(QString, string);
    QTEST(Manager::getPercentEscapedString(string), "escaped");
}

void tst_RequestBodies::joinsAForm_data()
{
    QTest::addColumn<QVariantMap>("params");
    QTest::addColumn<QString>("form");
    QTest::newRow("one") << map(QStringLiteral("ad_id"), QStringLiteral("42")) << QStringLiteral("ad_id=42");
    QTest::newRow("several, in the order of their keys")
        << QVariantMap{{QStringLiteral("b"), QStringLiteral("2")}, {QStringLiteral("a"), QStringLiteral("1")}}
        << QStringLiteral("a=1&b=2");
    QTest::newRow("nothing is escaped") << map(QStringLiteral("k k"), QStringLiteral("a&b=é"))
                                        << QStringLiteral("k k=a&b=é");
    QTest::newRow("number") << map(QStringLiteral("n"), 1.5) << QStringLiteral("n=1.5");
    QTest::newRow("truth") << map(QStringLiteral("t"), true) << QStringLiteral("t=1");
    QTest::newRow("empty text") << map(QStringLiteral("e"), QString()) << QStringLiteral("e=");
}

void tst_RequestBodies::joinsAForm()
{
    QFETCH(QVariantMap, params);
    QTEST(Manager::getStringFromParamsDict(params), "form");
}

void tst_RequestBodies::joinsACacheKey_data()
{
    QTest::addColumn<QVariantList>("array");
    QTest::addColumn<QString>("key");
    QTest::newRow("one") << QVariantList{QStringLiteral("getImage")} << QStringLiteral("getImage");
    QTest::newRow("two") << QVariantList{QStringLiteral("getImage"), QStringLiteral("http://h/a-b?c")}
                         << QStringLiteral("getImage-http://h/a-b?c");
    QTest::newRow("number") << QVariantList{QStringLiteral("ad"), 42} << QStringLiteral("ad-42");
}

void tst_RequestBodies::joinsACacheKey()
{
    QFETCH(QVariantList, array);
    QTEST(Manager::getCacheKeyFromArray(array), "key");
}

void tst_RequestBodies::raisesARangeErrorWithoutALastCharacter()
{
    const auto raised = [](const std::function<void()> &block) {
        try {
            block();
        } catch (const Platform::Exception &exception) {
            return exception.name() == Platform::Exception::Name::Range;
        }
        return false;
    };
    QVERIFY(raised([] { Manager::getCacheKeyFromArray({}); }));
    QVERIFY(raised([] { Manager::getStringFromParamsDict(QVariantMap()); }));
    QCOMPARE(Manager::getStringFromParamsDict(std::nullopt), QString());
}

void tst_RequestBodies::takesTheFirstNameOfASelector_data()
{
    QTest::addColumn<QString>("selector");
    QTest::addColumn<QString>("name");
    QTest::newRow("keywords") << QStringLiteral("getMeta:Category:WithCompletionBlock:andFailureBlock:")
                              << QStringLiteral("getMeta");
    QTest::newRow("no keyword") << QStringLiteral("init") << QStringLiteral("init");
}

void tst_RequestBodies::takesTheFirstNameOfASelector()
{
    QFETCH(QString, selector);
    QTEST(Manager::getSelectorFirstName(selector), "name");
}

void tst_RequestBodies::writesMultipartFields_data()
{
    QTest::addColumn<QVariantMap>("params");
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("empty") << QVariantMap() << separator;
    QTest::newRow("text") << map(QStringLiteral("username"), QStringLiteral("dümmy"))
                          << separator + "Content-Disposition: form-data; name=\"username\"\r\n\r\nd\xc3\xbcmmy"
            + separator;
    QTest::newRow("a number is left out")
        << QVariantMap{{QStringLiteral("a"), 7}, {QStringLiteral("b"), QStringLiteral("")}}
        << separator + "Content-Disposition: form-data; name=\"b\"\r\n\r\n" + separator;
    QTest::newRow("a list is left out") << map(QStringLiteral("a"), QStringList{QStringLiteral("x")}) << separator;
}

void tst_RequestBodies::writesMultipartFields()
{
    QFETCH(QVariantMap, params);
    QTEST(Manager::getDataToSendFromParamsDict(params), "data");
    QCOMPARE(Manager::getDataToSendFromParamsDict(std::nullopt), separator);
}

void tst_RequestBodies::writesAnImagePart_data()
{
    QTest::addColumn<qint32>("code");
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("image search") << 4 << QByteArray("uploadedfile");
    QTest::newRow("any other call") << 0 << QByteArray("(null)");
}

void tst_RequestBodies::writesAnImagePart()
{
    QFETCH(qint32, code);
    QFETCH(QByteArray, name);
    const QByteArray bytes("\0\r\n\xff--%1%2", 11);
    QuillfernServerParamsObject params;
    params.setApiRequestCode(code);
    const QByteArray header = "Content-Disposition: form-data; name=\"" + name
        + "\"; filename=\"image.jpg\"Content-Type: application/octet-stream\r\n\r\n";
    QCOMPARE(Manager::getDataToSendForImageData(bytes, QStringLiteral("image.jpg"), params),
             header + bytes + separator);
    QCOMPARE(Manager::getDataToSendForImageData(std::nullopt, QStringLiteral("image.jpg"), params), header + separator);
}

void tst_RequestBodies::writesAFilePart()
{
    QCOMPARE(Manager::getDataToSendForFileData(QByteArray("line\n"), QStringLiteral("log.txt")),
             "Content-Disposition: form-data; name=\"log\"; filename=\"log.txt\"Content-Type: "
             "application/octet-stream\r\n\r\nline\n"
                 + separator);
}

QTEST_GUILESS_MAIN(tst_RequestBodies)
#include "tst_RequestBodies.moc"
