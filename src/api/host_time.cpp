#include "api/host_time.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "api/KvApplicationManagerAP.h"
#include "frame/error_codes.h"
#include "frame/messages.h"
#include "frame/status.h"
#include "frame/temporary_list.h"
#include "platform/host_interface.h"
#include "platform/host_system.h"
#include "protocol/parameter_numbers.h"
#include "protocol/procedures.h"

namespace applman {
namespace {

constexpr std::uint32_t kLocalTimeOfDevice = 20; // parameter of a device handle

// English whatever the host's locale is.
constexpr std::array kWeekdays{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr std::array kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

using TimeText = std::array<char, 64>;

constexpr std::int64_t kFirstYear = 1900; // of std::tm

/// "Sun, 06 Nov 1994 08:49:37 GMT"
TimeText dateText(const std::tm& utc) {
    TimeText text{};
    std::snprintf(text.data(), text.size(), "%s, %02d %s %lld %02d:%02d:%02d GMT",
                  kWeekdays[static_cast<std::size_t>(utc.tm_wday)], utc.tm_mday,
                  kMonths[static_cast<std::size_t>(utc.tm_mon)], static_cast<long long>(utc.tm_year + kFirstYear),
                  utc.tm_hour, utc.tm_min, utc.tm_sec);
    return text;
}

/// "+01:00": how far local time is ahead of UTC.
TimeText zoneText(std::int64_t now, std::tm utc, const std::tm& local) {
    utc.tm_isdst = local.tm_isdst;
    const auto offset = static_cast<std::int32_t>(now - host_system::timeFromLocal(utc)); // seconds
    TimeText text{};
    std::snprintf(text.data(), text.size(), "%+03d:%02d", offset / 3600, std::abs(offset % 3600) / 60);
    return text;
}

/// "YYYYMMDDhhmm.ss"
TimeText localTimeText(const std::tm& local) {
    TimeText text{};
    std::snprintf(text.data(), text.size(), "%lld%02d%02d%02d%02d.%02d",
                  static_cast<long long>(local.tm_year + kFirstYear), local.tm_mon + 1, local.tm_mday, local.tm_hour,
                  local.tm_min, local.tm_sec);
    return text;
}

bool needsAnotherWay(const KvCErrorListPool& reported, std::int32_t sent) {
    return sent == numberOf(Status::parameter) &&
           (hasCode(reported, kTargetUnknownProcess) || hasCode(reported, codeOf(Msg::parameterNotSet)));
}

} // namespace

void setHostTimeParameters(KvCErrorListPool& pool, void* devHandle, void* accessResHandle) {
    const std::int64_t now = host_system::currentTime();
    const std::tm utc = host_system::utcTime(now);
    const std::tm local = host_system::localTime(now);
    const CollectedList reported{pool};
    if (!reported) { return; }

    const TimeText date = dateText(utc);
    const TimeText zone = zoneText(now, utc, local);
    const std::array texts{date.data(), zone.data()};
    const std::int32_t sent =
        KvApplMan_setApplParameter(reported.pool(), devHandle, accessResHandle, kApplicationManager,
                                   param::kHostTime.host, texts.data(), static_cast<std::int32_t>(texts.size()));
    if (needsAnotherWay(reported.pool(), sent)) {
        reported.pool().reset();
        const TimeText text = localTimeText(local);
        const auto length = static_cast<std::uint32_t>(std::char_traits<char>::length(text.data()) + 1);
        KvHIM_setParam(pool, devHandle, kLocalTimeOfDevice, length, text.data());
    }
}

} // namespace applman
