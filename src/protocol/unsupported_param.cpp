#include "protocol/unsupported_param.h"

#include <algorithm>
#include <array>

#include "frame/error_codes.h"
#include "protocol/procedures.h"

namespace applman {
namespace {

constexpr std::array<std::uint32_t, 9> kToleratedParameters{17, 23, 24, 28, 29, 30, 33, 34, 42}; // target numbers

bool mayBeUnsupported(std::uint32_t targetParamId) {
    return std::find(kToleratedParameters.begin(), kToleratedParameters.end(), targetParamId) !=
           kToleratedParameters.end();
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
