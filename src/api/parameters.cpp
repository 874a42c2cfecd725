// Writing application parameters.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "api/KvApplicationManagerAP.h"
#include "frame/calling_frame.h"
#include "frame/public_constants.h"
#include "protocol/parameter_numbers.h"
#include "protocol/procedures.h"
#include "protocol/unsupported_param.h"

namespace applman {
namespace {

/// How a value is given by the host: its size in bytes (0 = any) and how it becomes a typed value. Values need no
/// alignment.
struct Form {
    std::int32_t size;
    TApplManValue (*read)(const void* value, std::int32_t valueSize);
};

template <class Scalar>
TApplManValue readScalar(const void* value, std::int32_t) {
    Scalar scalar{};
    std::memcpy(&scalar, value, sizeof scalar);
    return scalar;
}

TApplManValue readText(const void* value, std::int32_t) { return Text{static_cast<const char*>(value)}; }

/// A remainder of less than a word is not sent.
TApplManValue readWords(const void* value, std::int32_t valueSize) {
    std::vector<std::uint32_t> words(static_cast<std::size_t>(valueSize) / sizeof(std::uint32_t));
    if (!words.empty()) { std::memcpy(words.data(), value, words.size() * sizeof(std::uint32_t)); }
    return words;
}

const char* textOfList(const void* value, std::size_t index) {
    const char* text = nullptr;
    std::memcpy(&text, static_cast<const char*>(value) + index * sizeof text, sizeof text);
    return text;
}

/// The size of a list counts its texts.
TApplManValue readTexts(const void* value, std::int32_t valueSize) {
    std::vector<Text> texts;
    for (std::size_t index = 0; index < static_cast<std::size_t>(valueSize); ++index) {
        texts.emplace_back(textOfList(value, index));
    }
    return texts;
}

constexpr Form kWord{4, readScalar<std::uint32_t>};
constexpr Form kDouble{8, readScalar<double>};
constexpr Form kText{0, readText};
constexpr Form kWords{0, readWords};
constexpr Form kQuad{8, readScalar<std::int64_t>};
constexpr Form kTexts{0, readTexts};

struct Parameter {
    ParameterNumbers numbers;
    const Form& form;
};

constexpr std::array kParameters{
    Parameter{param::kParameter1001, kTexts},  Parameter{param::kParameter1002, kText},
    Parameter{param::kParameter1003, kText},   Parameter{param::kParameter1004, kQuad},
    Parameter{param::kParameter1005, kWords},  Parameter{param::kParameter1007, kText},
    Parameter{param::kParameter1008, kWord},   Parameter{param::kParameter1009, kWord},
    Parameter{param::kParameter1010, kWord},   Parameter{param::kParameter1011, kText},
    Parameter{param::kParameter3072, kWord},   Parameter{param::kParameter3073, kDouble},
    Parameter{param::kParameter3074, kDouble}, Parameter{param::kHostTime, kTexts},
};

static_assert(public_constants::areThoseOf(public_constants::kParams, kParameters,
                                           [](const Parameter& parameter) { return parameter.numbers.host; }));

const Parameter* findParameter(std::uint32_t paramId) {
    const auto* const found = std::find_if(kParameters.begin(), kParameters.end(), [&](const Parameter& parameter) {
        return parameter.numbers.host == paramId;
    });
    return found == kParameters.end() ? nullptr : found;
}

bool hasNullText(const Parameter& parameter, const void* value, std::int32_t valueSize) {
    if (&parameter.form != &kTexts) { return false; }
    for (std::size_t index = 0; index < static_cast<std::size_t>(valueSize); ++index) {
        if (textOfList(value, index) == nullptr) { return true; }
    }
    return false;
}

Status sendParameter(const Reporter& report, const Session& session, std::uint32_t applId, std::uint32_t targetParamId,
                     TApplManValue value) {
    Reply<TApplManResult> reply{session.client};
    const std::int32_t called = APPLMAN_SET_PARAM(
        session.client, report.pool(), {kMode, session.accessId, applId, targetParamId, std::move(value)}, reply);
    if (called != 0) { return report.failRemoteCall(); }
    acceptUnsupportedParamResult(report.pool(), reply->result, applId, targetParamId);
    return reply->result == kRefused ? report.fail(Msg::parameterNotSet, Status::parameter) : Status::ok;
}

Status setParameter(const Reporter& report, void* devHandle, void* accessResHandle, std::uint32_t applId,
                    std::uint32_t paramId, const void* value, std::int32_t valueSize) {
    if (value == nullptr) { return report.fail(Msg::invalidArgument, Status::argument); }
    if (valueSize < 0) { return report.fail(Msg::invalidSize, Status::size); }
    const Parameter* const parameter = findParameter(paramId);
    if (parameter == nullptr) { return report.fail(Msg::invalidParameter, Status::identifier); }
    const Form& form = parameter->form;
    if (form.size != 0 && valueSize != form.size) { return report.fail(Msg::invalidSize, Status::size); }
    if (hasNullText(*parameter, value, valueSize)) { return report.fail(Msg::invalidArgument, Status::argument); }
    return runFrame(report, devHandle, accessResHandle, [&](const Session& session) {
        return sendParameter(report, session, applId, parameter->numbers.target, form.read(value, valueSize));
    });
}

} // namespace
} // namespace applman

using namespace applman;

extern "C" std::int32_t KvApplMan_setApplParameter(KvCErrorListPool& pool, void* devHandle, void* accessResHandle,
                                                   std::uint32_t applId, std::uint32_t paramId, const void* value,
                                                   std::int32_t valueSize) noexcept {
    const Reporter report{pool, "KvApplMan_setApplParameter"};
    return guarded(report,
                   [&] { return setParameter(report, devHandle, accessResHandle, applId, paramId, value, valueSize); });
}
