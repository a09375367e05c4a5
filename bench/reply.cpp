// The bytes of a service's answer to match groups, beside the parser alone and beside another one with the same
// mapping.

#include "Made.h"
#include "Timing.h"

#include "Platform/Foundation/KeyedArchiver.h"

#include "Brevanto/Model/BrevantoFields.h"
#include "Brevanto/ServerManager/BrevantoServerManager.h"

#include <QJsonDocument>

#ifdef BENCH_NLOHMANN
#include "NlohmannMapping.h"
#endif

namespace
{

#ifdef BENCH_NLOHMANN
QByteArray archived(const BrevantoMatchGroupList &groups)
{
    QVariantList list;
    for (const auto &group : groups)
        list.append(BrevantoFields::entry(group));
    return Platform::KeyedArchiver::archivedData(list);
}
#endif

void registerReply(int matches)
{
    const std::string name = std::to_string(matches) + " matches";
    const QByteArray reply = Made::reply(matches);
    registerUntilDone(name + "/ours", processorSeconds, [reply](const auto &done) {
        Made::handleReply(reply, [&done](const BrevantoMatchGroupList &) { done(); });
    });
    registerTimed(
        name + "/QJsonDocument", [reply] { return QJsonDocument::fromJson(reply); }, processorSeconds);
#ifdef BENCH_NLOHMANN
    registerUntilDone(name + "/nlohmann", processorSeconds, [reply](const auto &done) {
        nlohmannGroups(reply, [&done](const BrevantoMatchGroupList &) { done(); });
    });
#endif
}

// An answer of a hundred thousand matches is refused before it is parsed; what it would take shows how the time grows.
void registerGrowth(int matches)
{
    const QByteArray reply = Made::reply(matches);
    registerTimed(
        std::to_string(matches) + " matches/mapped",
        [reply] {
            const QJsonObject answer = QJsonDocument::fromJson(reply).object();
            return std::pair(answer,
                             BrevantoServerManager::parseObjectFromDict(answer, BrevantoAPIRequestCodeImageSearch));
        },
        processorSeconds);
}

} // namespace

int main(int argc, char **argv)
{
#ifdef BENCH_NLOHMANN
    const QByteArray few = Made::reply(100);
    nlohmannGroups(few, [&few](const BrevantoMatchGroupList &groups) {
        if (archived(groups) != archived(Made::groups(few)))
            qFatal("The other mapping makes other groups");
    });
#endif
    registerReply(10'000);
    registerGrowth(10'000);
    registerGrowth(100'000);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
