#include "CallRecorder.h"
#include "support/TestImages.h"

#include "Brevanto/ServerManager/ServerResponses.h"

#include <QTest>

namespace
{

enum class Target { Service, Elsewhere, Post };
enum class Transport { Data, DataAndError, Error, Nothing };

const QByteArray metaAnswer = R"({"status":{"code":0,"message":"Success"},"data":{"title":"T"}})";
const QByteArray matchesAnswer =
    R"({"status":{"code":0},"matches":[{"app_img":"a"},{"app_img":"b"},{"app_img":"a"},{}]})";
const QByteArray rejectedAnswer = R"({"status":{"code":3,"message":"Success"},"data":{}})";
const QByteArray shortAnswer = R"({"status_code":200,"status_txt":"OK","data":{"url":"http://s/1"}})";

std::optional<QByteArray> dataOf(Transport transport, const QByteArray &body)
{
    if (transport == Transport::Data || transport == Transport::DataAndError)
        return body;
    return std::nullopt;
}

std::optional<Platform::URLError> errorOf(Transport transport)
{
    if (transport == Transport::Error || transport == Transport::DataAndError)
        return Platform::URLError{Platform::URLError::Code::CannotConnect, {}};
    return std::nullopt;
}

QStringList one(const char *call)
{
    return {QString::fromLatin1(call)};
}

QuillfernServerParamsObject recorded(qint32 code, CallRecorder &recorder)
{
    QuillfernServerParamsObject params;
    params.setApiRequestCode(code);
    params.setCompletionBlock(recorder.completion<BrevantoServerResult>());
    params.setFailureBlock(recorder.failure());
    return params;
}

} // namespace

Q_DECLARE_METATYPE(Transport)
Q_DECLARE_METATYPE(Target)

class tst_ServerResponses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void verifies_data();
    void verifies();
    void handles_data();
    void handles();
    void toleratesEmptyBlocks();
};

void tst_ServerResponses::verifies_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("0") << QByteArray(R"({"status":{"code":0}})") << true;
    QTest::newRow("0.9, whose integer value is 0") << QByteArray(R"({"status":{"code":0.9}})") << true;
    QTest::newRow("the last of two equal keys counts") << QByteArray(R"({"status":{"code":1,"code":0}})") << true;
    QTest::newRow("1") << QByteArray(R"({"status":{"code":1}})") << false;
    QTest::newRow("-1") << QByteArray(R"({"status":{"code":-1}})") << false;
    QTest::newRow("huge") << QByteArray(R"({"status":{"code":1e300}})") << false;
    QTest::newRow("text") << QByteArray(R"({"status":{"code":"0"}})") << false;
    QTest::newRow("null") << QByteArray(R"({"status":{"code":null}})") << false;
    QTest::newRow("truth value") << QByteArray(R"({"status":{"code":false}})") << false;
    QTest::newRow("no code") << QByteArray(R"({"status":{}})") << false;
    QTest::newRow("no status") << QByteArray(R"({"code":0})") << false;
    QTest::newRow("status is no object") << QByteArray(R"({"status":0})") << false;
    QTest::newRow("status is a list") << QByteArray(R"({"status":[{"code":0}]})") << false;
    QTest::newRow("list") << QByteArray(R"([{"status":{"code":0}}])") << false;
    QTest::newRow("lone value") << QByteArray("0") << false;
    QTest::newRow("cut off") << QByteArray(R"({"status":{"code":0})") << false;
    QTest::newRow("no JSON") << QByteArray("<html>") << false;
    QTest::newRow("no bytes") << QByteArray("") << false;
    QTest::newRow("nested without end") << QByteArray(100000, '[') << false;
}

void tst_ServerResponses::verifies()
{
    QFETCH(QByteArray, body);
    QFETCH(bool, accepted);
    CallRecorder recorder;
    const auto params = recorded(BrevantoAPIRequestCodeImageSearch, recorder);
    handlePostResponse(params, body, std::nullopt);
    QCOMPARE(recorder.calls(), one(accepted ? "completion groups []" : "failure nil"));
}

void tst_ServerResponses::handles_data()
{
    QTest::addColumn<qint32>("code");
    QTest::addColumn<Transport>("transport");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<Target>("target");
    const auto row = [](const char *name, Target target, qint32 code, const QByteArray &body, const QStringList &calls,
                        Transport transport = Transport::Data) {
        QTest::newRow(name) << code << transport << body << calls << target;
    };
    const QByteArray image = TestImages::png(TestImages::quarters({4, 2}));

    row("metadata", Target::Service, 0, metaAnswer, one("completion match T"));
    row("metadata of a poll", Target::Service, 0, R"({"status":{"code":0,"message":"Poll data"},"data":{"title":"P"}})",
        one("completion match P"));
    row("metadata of an ad", Target::Service, 0, R"({"status":{"code":0,"message":"Ad data"},"data":{"title":"A"}})",
        one("completion match A"));
    row("metadata, other case", Target::Service, 0, R"({"status":{"code":0,"message":"success"},"data":{"title":"T"}})",
        one("completion nil"));
    row("metadata, no message", Target::Service, 0, R"({"status":{"code":0},"data":{}})", one("completion nil"));
    row("metadata, no data", Target::Service, 0, R"({"status":{"code":0,"message":"Success"}})", one("completion nil"));
    row("metadata, rejected", Target::Service, 0, rejectedAnswer, {});
    row("metadata, no JSON", Target::Service, 0, "oops", {});
    row("metadata, no bytes", Target::Service, 0, "", {});
    row("code without an object", Target::Service, 1, metaAnswer, one("completion nil"));
    row("groups by GET", Target::Service, 4, matchesAnswer, one("completion groups [2,1]"));
    row("service, data and error", Target::Service, 0, metaAnswer, one("failure CannotConnect"),
        Transport::DataAndError);
    row("service, error", Target::Service, 0, {}, one("failure CannotConnect"), Transport::Error);
    row("service, nothing", Target::Service, 0, {}, {}, Transport::Nothing);

    row("image", Target::Elsewhere, 1, image, one("completion image 4x2"));
    row("image, other bytes", Target::Elsewhere, 1, metaAnswer, one("failure nil"));
    row("image, no bytes", Target::Elsewhere, 1, "", one("failure nil"));
    row("image, data and error", Target::Elsewhere, 1, image, one("failure CannotConnect"), Transport::DataAndError);
    row("image, error", Target::Elsewhere, 1, {}, one("failure CannotConnect"), Transport::Error);
    row("image, nothing", Target::Elsewhere, 1, {}, {}, Transport::Nothing);

    row("short URL", Target::Elsewhere, 2, shortAnswer, one("completion url http://s/1"));
    row("short URL, status code as text", Target::Elsewhere, 2,
        R"({"status_code":"200","status_txt":"OK","data":{"url":"u"}})", one("completion url u"));
    row("short URL, stray status", Target::Elsewhere, 2,
        R"({"status":"x","status_code":200,"status_txt":"OK","data":{"url":"u"}})", one("completion url u"));
    row("short URL, other status text", Target::Elsewhere, 2,
        R"({"status_code":200,"status_txt":"ok","data":{"url":"u"}})", one("completion nil"));
    row("short URL, other status code", Target::Elsewhere, 2,
        R"({"status_code":500,"status_txt":"OK","data":{"url":"u"}})", one("completion nil"));
    row("short URL, no status code", Target::Elsewhere, 2, R"({"status_txt":"OK","data":{"url":"u"}})",
        one("completion nil"));
    row("short URL, empty", Target::Elsewhere, 2, R"({"status_code":200,"status_txt":"OK","data":{"url":""}})",
        one("completion nil"));
    row("short URL, no text", Target::Elsewhere, 2, R"({"status_code":200,"status_txt":"OK","data":{"url":5}})",
        one("completion nil"));
    row("short URL, no JSON", Target::Elsewhere, 2, "oops", one("completion nil"));
    row("short URL, error", Target::Elsewhere, 2, {}, one("failure CannotConnect"), Transport::Error);

    row("log", Target::Elsewhere, 3, "anything", one("completion nil"));
    row("metadata from elsewhere", Target::Elsewhere, 0, metaAnswer, {});
    row("groups from elsewhere", Target::Elsewhere, 4, matchesAnswer, {});
    row("unknown code", Target::Elsewhere, 77, metaAnswer, {});
    row("unknown code, error", Target::Elsewhere, 77, {}, one("failure CannotConnect"), Transport::Error);

    row("POST, groups", Target::Post, 4, matchesAnswer, one("completion groups [2,1]"));
    row("POST, no match", Target::Post, 4, R"({"status":{"code":0},"matches":[]})", one("completion groups []"));
    row("POST, no list of matches", Target::Post, 4, R"({"status":{"code":0}})", one("completion groups []"));
    row("POST, matches are null", Target::Post, 4, R"({"status":{"code":0},"matches":null})",
        one("completion groups []"));
    row("POST, metadata by POST", Target::Post, 0, metaAnswer, one("completion match T"));
    row("POST, code without an object", Target::Post, 3, matchesAnswer, one("completion nil"));
    row("POST, rejected", Target::Post, 4, rejectedAnswer, one("failure nil"));
    row("POST, no JSON", Target::Post, 4, "oops", one("failure nil"));
    row("POST, data and error", Target::Post, 4, matchesAnswer, one("completion groups [2,1]"),
        Transport::DataAndError);
    row("POST, rejected data and error", Target::Post, 4, "", one("failure nil"), Transport::DataAndError);
    row("POST, error", Target::Post, 4, {}, one("failure CannotConnect"), Transport::Error);
    row("POST, nothing", Target::Post, 4, {}, {}, Transport::Nothing);
}

void tst_ServerResponses::handles()
{
    QFETCH(qint32, code);
    QFETCH(Target, target);
    QFETCH(Transport, transport);
    QFETCH(QByteArray, body);
    CallRecorder recorder;
    auto params = recorded(code, recorder);
    if (target == Target::Service)
        params.setPartialURL(QStringLiteral("ads/getAd"));
    else
        params.setSeparateURL(QStringLiteral("http://elsewhere/"));
    if (target == Target::Post)
        handlePostResponse(params, dataOf(transport, body), errorOf(transport));
    else
        handleGetResponse(*BrevantoServerManager::create(), params, dataOf(transport, body), errorOf(transport));
    QTEST(recorder.calls(), "calls");
}

void tst_ServerResponses::toleratesEmptyBlocks()
{
    const auto manager = BrevantoServerManager::create();
    QuillfernServerParamsObject params;
    params.setPartialURL(QStringLiteral("ads/getAd"));
    handlePostResponse(params, metaAnswer, std::nullopt);
    handlePostResponse(params, std::nullopt, errorOf(Transport::Error));
    handleGetResponse(*manager, params, metaAnswer, std::nullopt);
    handleGetResponse(*manager, params, std::nullopt, errorOf(Transport::Error));
}

QTEST_GUILESS_MAIN(tst_ServerResponses)
#include "tst_ServerResponses.moc"
