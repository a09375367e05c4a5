#include "Brevanto/ServerManager/BrevantoServerManager.h"
#include "Platform/Foundation/Exception.h"

#include <QTest>

using Manager = BrevantoServerManager;

// The texts that requests are made of. Whole bodies are looked at on the wire, by tst_ServerCalls.
class tst_RequestBodies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writes_data();
    void writes();
    void raisesARangeErrorWithoutALastCharacter();
};

void tst_RequestBodies::writes_data()
{
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("expected");
    const auto escaped = [](const char *name, const QString &text, const char *expected) {
        QTest::newRow(name) << Manager::getPercentEscapedString(text) << QString::fromLatin1(expected);
    };
    escaped("null", {}, "");
    escaped("unreserved", QStringLiteral("azAZ09-._~"), "azAZ09-._~");
    escaped("spaces", QStringLiteral(" a  b "), "+a++b+");
    escaped("plus", QStringLiteral("1+1"), "1%2B1");
    escaped("reserved", QStringLiteral(":/?@!$&'()*+,;="), "%3A%2F%3F%40%21%24%26%27%28%29%2A%2B%2C%3B%3D");
    escaped("illegal", QStringLiteral("#%[]<>\"{}|\\^`"), "%23%25%5B%5D%3C%3E%22%7B%7D%7C%5C%5E%60");
    escaped("escaped already", QStringLiteral("%20"), "%2520");
    escaped("controls", QStringLiteral("\r\n\t\x7f"), "%0D%0A%09%7F");
    escaped("outside ASCII", QStringLiteral("é€😀"), "%C3%A9%E2%82%AC%F0%9F%98%80");

    const QString a = QStringLiteral("a"), b = QStringLiteral("b c");
    const auto form = [](const char *name, const std::optional<QVariantMap> &params, const char *expected) {
        QTest::newRow(name) << Manager::getStringFromParamsDict(params) << QString::fromUtf8(expected);
    };
    form("no form", std::nullopt, "");
    form("form, by key", QVariantMap{{b, QStringLiteral("&=é")}, {a, QStringLiteral("1")}}, "a=1&b c=&=é");
    form("form of other values", QVariantMap{{a, 1.5}, {b, true}}, "a=1.5&b c=1");

    QTest::newRow("cache key") << Manager::getCacheKeyFromArray({a, 42, b}) << QStringLiteral("a-42-b c");
    QTest::newRow("cache key of one") << Manager::getCacheKeyFromArray({a}) << a;
    QTest::newRow("selector") << Manager::getSelectorFirstName(QStringLiteral("getMeta:Category:"))
                              << QStringLiteral("getMeta");
}

void tst_RequestBodies::writes()
{
    QFETCH(QString, written);
    QTEST(written, "expected");
}

void tst_RequestBodies::raisesARangeErrorWithoutALastCharacter()
{
    QVERIFY_THROWS_EXCEPTION(Platform::Exception, Manager::getCacheKeyFromArray({}));
    QVERIFY_THROWS_EXCEPTION(Platform::Exception, Manager::getStringFromParamsDict(QVariantMap()));
}

QTEST_APPLESS_MAIN(tst_RequestBodies)
#include "tst_RequestBodies.moc"
