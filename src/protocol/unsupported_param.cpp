#include "protocol/unsupported_param.h"

#include <algorithm>
#include <array>

#include "frame/error_codes.h"
#include "protocol/parameter_numbers.h"
#include "protocol/procedures.h"

namespace applman {
namespace {

constexpr std::array kTolerated{
    param::kParameter1005,  param::kParameter1008, param::kParameter1009,
    param::kParameter1010,  param::kParameter1011, param::kGroupSerialNumbers,
    param::kGroupAddresses, param::kFileTimeText,  param::kDownloadTimeText,
};

bool mayBeUnsupported(std::uint32_t targetParamId) {
    return std::any_of(kTolerated.begin(), kTolerated.end(),
                       [&](const ParameterNumbers& numbers) { return numbers.target == targetParamId; });
}

} // namespace

bool hasUnsupportedParamCode(const KvCErrorListPool& pool) { return hasCode(pool, kTargetUnsupportedParameter); }

void acceptUnsupportedParamResult(KvCErrorListPool& pool, std::int32_t& result, std::uint32_t applId,
                                  std::uint32_t targetParamId) {
    if (result != kRefused || applId == kApplicationManager || !mayBeUnsupported(targetParamId)) { return; }
    if (!hasUnsupportedParamCode(pool)) { return; }
    result = 0;
    pool.reset();
}

} // namespace applman
