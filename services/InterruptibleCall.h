#pragma once

#include <memory>
#include <stop_token>
#include <type_traits>
#include <utility>

#include "platform/concurrency/Outcome.h"
#include "services/HelperThread.h"

namespace tessel {

/// Makes a blocking call that may never return, such as one that asks a disk which hangs, one that a stop
/// ends: the result waits for the function on a thread of its own and returns or throws what it does, or
/// throws CancellationError as soon as a stop is requested. The function is then left behind. Requires: it
/// owns everything that it uses.
template <typename Function>
auto interruptible(Function function) {
    return [function = std::move(function)](const std::stop_token& stop) {
        using Result = std::invoke_result_t<const Function&>;
        const auto outcome = std::make_shared<Outcome<Result>>();
        HelperThread helper([outcome, function] { *outcome = Outcome<Result>::of(function); });
        helper.begin();
        helper.wait(stop);
        return std::move(*outcome).value();
    };
}

}  // namespace tessel
