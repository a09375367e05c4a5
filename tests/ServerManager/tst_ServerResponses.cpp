#include "CallRecorder.h"
#include "support/Table.h"
#include "support/TestImages.h"

#include "Brevanto/ServerManager/ServerResponses.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

enum Target { Service, Elsewhere, Post };
enum Transport { Nothing, Data, Error, DataAndError };

const QByteArray metaAnswer = R"({"status":{"code":0,"message":"Success"},"data":{"title":"T"}})";
const QByteArray matchesAnswer =
    R"({"status":{"code":0},"matches":[{"app_img":"a"},{"app_img":"b"},{"app_img":"a"},{}]})";
const QByteArray rejectedAnswer = R"({"status":{"code":3,"message":"Success"},"data":{}})";
const QByteArray shortAnswer = R"({"status_code":200,"status_txt":"OK","data":{"url":"http://s/1"}})";

const Platform::URLError noConnection{Platform::URLError::Code::CannotConnect, u"nobody listens"_s};

} // namespace

class tst_ServerResponses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void handles_data()
    {
        addColumns<Target, qint32, QByteArray, QString, Transport>("target", "code", "body", "call", "transport");
        const auto row = [](const char *name, Target target, qint32 code, const QByteArray &body, const char *call,
                            Transport transport = Data) {
            QTest::newRow(name) << target << code << body << QString::fromLatin1(call) << transport;
        };
        const QByteArray image = TestImages::png(TestImages::quarters({4, 2}));

        row("metadata", Service, 0, metaAnswer, "completion match T");
        row("metadata of a poll", Service, 0, R"({"status":{"code":0,"message":"Poll data"},"data":{"title":"P"}})",
            "completion match P");
        row("metadata of an ad", Service, 0, R"({"status":{"code":0,"message":"Ad data"},"data":{"title":"A"}})",
            "completion match A");
        row("metadata, other case", Service, 0, R"({"status":{"code":0,"message":"success"},"data":{"title":"T"}})",
            "completion nil");
        row("metadata, no message", Service, 0, R"({"status":{"code":0},"data":{}})", "completion nil");
        row("metadata, no data", Service, 0, R"({"status":{"code":0,"message":"Success"}})", "completion nil");
        row("metadata, rejected", Service, 0, rejectedAnswer, "");
        row("metadata, no JSON", Service, 0, "oops", "");
        row("metadata, no bytes", Service, 0, "", "");
        row("code without an object", Service, 1, metaAnswer, "completion nil");
        row("groups by GET", Service, 4, matchesAnswer, "completion groups [2,1]");
        row("service, data and error", Service, 0, metaAnswer, "failure CannotConnect", DataAndError);
        row("service, error", Service, 0, {}, "failure CannotConnect", Error);
        row("service, nothing", Service, 0, {}, "", Nothing);

        row("image", Elsewhere, 1, image, "completion image 4x2");
        row("image, other bytes", Elsewhere, 1, metaAnswer, "failure nil");
        row("image, no bytes", Elsewhere, 1, "", "failure nil");
        row("image, data and error", Elsewhere, 1, image, "failure CannotConnect", DataAndError);
        row("image, error", Elsewhere, 1, {}, "failure CannotConnect", Error);
        row("image, nothing", Elsewhere, 1, {}, "", Nothing);

        row("short URL", Elsewhere, 2, shortAnswer, "completion url http://s/1");
        row("short URL, status code as text", Elsewhere, 2,
            R"({"status_code":"200","status_txt":"OK","data":{"url":"u"}})", "completion url u");
        row("short URL, stray status", Elsewhere, 2,
            R"({"status":"x","status_code":200,"status_txt":"OK","data":{"url":"u"}})", "completion url u");
        row("short URL, other status text", Elsewhere, 2, R"({"status_code":200,"status_txt":"ok","data":{"url":"u"}})",
            "completion nil");
        row("short URL, other status code", Elsewhere, 2, R"({"status_code":500,"status_txt":"OK","data":{"url":"u"}})",
            "completion nil");
        row("short URL, no status code", Elsewhere, 2, R"({"status_txt":"OK","data":{"url":"u"}})", "completion nil");
        row("short URL, empty", Elsewhere, 2, R"({"status_code":200,"status_txt":"OK","data":{"url":""}})",
            "completion nil");
        row("short URL, no text", Elsewhere, 2, R"({"status_code":200,"status_txt":"OK","data":{"url":5}})",
            "completion nil");
        row("short URL, no JSON", Elsewhere, 2, "oops", "completion nil");
        row("short URL, error", Elsewhere, 2, {}, "failure CannotConnect", Error);

        row("log", Elsewhere, 3, "anything", "completion nil");
        row("metadata from elsewhere", Elsewhere, 0, metaAnswer, "");
        row("groups from elsewhere", Elsewhere, 4, matchesAnswer, "");
        row("unknown code", Elsewhere, 77, metaAnswer, "");
        row("unknown code, error", Elsewhere, 77, {}, "failure CannotConnect", Error);

        row("POST, groups", Post, 4, matchesAnswer, "completion groups [2,1]");
        row("POST, no match", Post, 4, R"({"status":{"code":0},"matches":[]})", "completion groups []");
        row("POST, matches are null", Post, 4, R"({"status":{"code":0},"matches":null})", "completion groups []");
        row("POST, metadata by POST", Post, 0, metaAnswer, "completion match T");
        row("POST, code without an object", Post, 3, matchesAnswer, "completion nil");
        row("POST, rejected", Post, 4, rejectedAnswer, "failure nil");
        row("POST, data and error", Post, 4, matchesAnswer, "completion groups [2,1]", DataAndError);
        row("POST, rejected data and error", Post, 4, "", "failure nil", DataAndError);
        row("POST, error", Post, 4, {}, "failure CannotConnect", Error);
        row("POST, nothing", Post, 4, {}, "", Nothing);

        // The envelope.
        for (const char *body :
             {R"({"status":{"code":0}})", R"({"status":{"code":0.9}})", R"({"status":{"code":1,"code":0}})"})
            row(body, Post, 4, body, "completion groups []");
        for (const char *body :
             {R"({"status":{"code":1}})", R"({"status":{"code":-1}})", R"({"status":{"code":1e300}})",
              R"({"status":{"code":"0"}})", R"({"status":{"code":null}})", R"({"status":{"code":false}})",
              R"({"status":{}})", R"({"code":0})", R"({"status":0})", R"({"status":[{"code":0}]})",
              R"([{"status":{"code":0}}])", "0", R"({"status":{"code":0})", "<html>", ""})
            row(body, Post, 4, body, "failure nil");
        row("nested without end", Post, 4, QByteArray(100000, '['), "failure nil");
    }
    void handles()
    {
        QFETCH(qint32, code);
        QFETCH(Target, target);
        QFETCH(Transport, transport);
        QFETCH(QByteArray, body);
        CallRecorder recorder;
        QuillfernServerParamsObject params;
        params.setApiRequestCode(code);
        params.setCompletionBlock(recorder.completion<BrevantoServerResult>());
        params.setFailureBlock(recorder.failure());
        if (target == Service)
            params.setPartialURL(u"ads/getAd"_s);
        else
            params.setSeparateURL(u"http://elsewhere/"_s);
        std::optional<QByteArray> data;
        std::optional<Platform::URLError> error;
        if (transport & Data)
            data = body;
        if (transport & Error)
            error = noConnection;
        QFETCH(const QString, call);
        if (call.startsWith(u"failure"))
            QTest::ignoreMessage(QtInfoMsg,
                                 call == u"failure nil" ? "A request failed: its answer is not accepted"
                                                        : "A request failed: nobody listens");
        if (target == Post)
            handlePostResponse(params, data, error);
        else
            handleGetResponse(*BrevantoServerManager::create(), params, data, error);
        QCOMPARE(recorder.calls().join(u','), call);
    }

    void toleratesEmptyBlocks()
    {
        const auto manager = BrevantoServerManager::create();
        QuillfernServerParamsObject params;
        params.setPartialURL(u"ads/getAd"_s);
        handlePostResponse(params, metaAnswer, std::nullopt);
        handlePostResponse(params, std::nullopt, noConnection);
        handleGetResponse(*manager, params, metaAnswer, std::nullopt);
        handleGetResponse(*manager, params, std::nullopt, noConnection);
    }
};

QTEST_GUILESS_MAIN(tst_ServerResponses)
#include "tst_ServerResponses.moc"
