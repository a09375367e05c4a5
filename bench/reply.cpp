// The bytes of a service's answer to match groups, beside the parser alone and beside another one with the same
// mapping.

#include "Made.h"
#include "Timing.h"

#include "Platform/Foundation/KeyedArchiver.h"

#include "Brevanto/Model/BrevantoFields.h"

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
    registerReply(100'000);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
