// Answers of the service. The first byte picks the call that they answer, the rest is the body.
#include "fuzz/Require.h"

#include "Brevanto/ServerManager/BrevantoServerManager.h"
#include "Brevanto/ServerManager/QuillfernServerParamsObject.h"
#include "Brevanto/ServerManager/ServerResponses.h"
#include "Platform/Foundation/KeyedArchiver.h"

#include <QCoreApplication>

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argumentCount = 0;
    static const QCoreApplication application(argumentCount, nullptr); // ends the manager's threads
    if (size == 0)
        return 0;
    int completions = 0;
    int failures = 0;
    QuillfernServerParamsObject params;
    params.setApiRequestType(BrevantoAPIRequestTypePost);
    params.setApiRequestCode(data[0] % 6);
    params.setCompletionBlock([&](const BrevantoServerResult &result) {
        ++completions;
        const auto *groups = std::get_if<BrevantoMatchGroupList>(&result);
        if (!groups)
            return;
        for (const auto &group : *groups) {
            require(!group->adImageUrl().isNull(), "a group has an address");
            require(!group->listOfMatches().isEmpty(), "a group has matches");
            for (const auto &match : group->listOfMatches()) {
                require(match != nullptr, "a group holds no null match");
                match->galleryDataSource(); // built now, out of what came
            }
            constexpr qsizetype limit = 100'000;
            const QByteArray archive =
                Platform::KeyedArchiver::archivedData(QVariant::fromValue<Platform::CodablePointer>(group), limit);
            require(archive.size() <= limit, "an archive keeps to its limit");
        }
    });
    params.setFailureBlock([&](const std::optional<Platform::URLError> &) { ++failures; });
    const QByteArray body(reinterpret_cast<const char *>(data + 1), static_cast<qsizetype>(size - 1));
    handlePostResponse(params, body, std::nullopt);
    require(completions + failures <= 1, "an answer is told once");
    params.setApiRequestType(BrevantoAPIRequestTypeGet);
    const auto manager = BrevantoServerManager::sharedServerManager();
    for (const auto setAddress :
         {&QuillfernServerParamsObject::setPartialURL, &QuillfernServerParamsObject::setSeparateURL}) {
        QuillfernServerParamsObject called = params;
        (called.*setAddress)(QStringLiteral("address"));
        completions = failures = 0;
        handleGetResponse(*manager, called, body, std::nullopt);
        require(completions + failures <= 1, "an answer is told once");
    }
    return 0;
}
