#pragma once

#include "Brevanto/ServerManager/BrevantoServerManager.h"

// What becomes of the answer to a GET or a POST: decodes it and calls one block of the description, or none.
void handleGetResponse(BrevantoServerManager &manager, const QuillfernServerParamsObject &params,
                       const std::optional<QByteArray> &data, const std::optional<Platform::URLError> &error);
void handlePostResponse(const QuillfernServerParamsObject &params, const std::optional<QByteArray> &data,
                        const std::optional<Platform::URLError> &error);
