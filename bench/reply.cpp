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
    registerTimed(name + "/ours", [reply] { return Made::groups(reply); });
    registerTimed(name + "/QJsonDocument", [reply] { return QJsonDocument::fromJson(reply); });
#ifdef BENCH_NLOHMANN
    if (archived(nlohmannGroups(reply)) != archived(Made::groups(reply)))
        qFatal("The other mapping makes other groups");
    registerTimed(name + "/nlohmann", [reply] { return nlohmannGroups(reply); });
#endif
}

} // namespace

int main(int argc, char **argv)
{
    registerReply(10'000);
    registerReply(100'000);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
