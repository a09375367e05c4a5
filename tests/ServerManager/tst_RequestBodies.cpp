#include "support/Table.h"

#include "Brevanto/ServerManager/BrevantoServerManager.h"
#include "Platform/Foundation/Exception.h"

#include <QTest>

using namespace Qt::StringLiterals;
using Manager = BrevantoServerManager;

// The texts that requests are made of. Whole bodies are looked at on the wire, by tst_ServerCalls.
class tst_RequestBodies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writes_data()
    {
        addColumns<QString, QString>("written", "expected");
        const auto escaped = [](const char *name, const QString &text, const char *expected) {
            QTest::newRow(name) << Manager::getPercentEscapedString(text) << QString::fromLatin1(expected);
        };
        escaped("null", {}, "");
        escaped("unreserved", u"azAZ09-._~"_s, "azAZ09-._~");
        escaped("spaces", u" a  b "_s, "+a++b+");
        escaped("plus", u"1+1"_s, "1%2B1");
        escaped("reserved", u":/?@!$&'()*+,;="_s, "%3A%2F%3F%40%21%24%26%27%28%29%2A%2B%2C%3B%3D");
        escaped("illegal", u"#%[]<>\"{}|\\^`"_s, "%23%25%5B%5D%3C%3E%22%7B%7D%7C%5C%5E%60");
        escaped("escaped already", u"%20"_s, "%2520");
        escaped("controls", u"\r\n\t\x7f"_s, "%0D%0A%09%7F");
        escaped("outside ASCII", u"é€😀"_s, "%C3%A9%E2%82%AC%F0%9F%98%80");

        const QString a = u"a"_s, b = u"b c"_s;
        const auto form = [](const char *name, const std::optional<QVariantMap> &params, const char *expected) {
            QTest::newRow(name) << Manager::getStringFromParamsDict(params) << QString::fromUtf8(expected);
        };
        form("no form", std::nullopt, "");
        form("form, by key", QVariantMap{{b, u"&=é"_s}, {a, u"1"_s}}, "a=1&b c=&=é");
        form("form of other values", QVariantMap{{a, 1.5}, {b, true}}, "a=1.5&b c=1");

        QTest::newRow("cache key") << Manager::getCacheKeyFromArray({a, 42, b}) << u"a-42-b c"_s;
        QTest::newRow("cache key of one") << Manager::getCacheKeyFromArray({a}) << a;
        QTest::newRow("selector") << Manager::getSelectorFirstName(u"getMeta:Category:"_s) << u"getMeta"_s;
    }
    void writes()
    {
        QFETCH(QString, written);
        QTEST(written, "expected");
    }

    void raisesARangeErrorWithoutALastCharacter()
    {
        QVERIFY_THROWS_EXCEPTION(Platform::Exception, Manager::getCacheKeyFromArray({}));
        QVERIFY_THROWS_EXCEPTION(Platform::Exception, Manager::getStringFromParamsDict(QVariantMap()));
    }
};

QTEST_APPLESS_MAIN(tst_RequestBodies)
#include "tst_RequestBodies.moc"
