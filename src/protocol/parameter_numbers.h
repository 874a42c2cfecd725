// Numbers of the parameters that a target keeps, for both ends. Hosts have numbers of their own for them: of the items
// that they read and of the parameters that they write. Each pair of numbers stands here only.
#pragma once

#include <cstdint>

namespace applman {

struct ParameterNumbers {
    static constexpr std::uint32_t kNotForHosts = 0xFFFFFFFF;

    std::uint32_t target;
    std::uint32_t host = kNotForHosts; // infoId, paramId, or both
};

/// In ascending order of the target's numbers. What is named after its host number (kItem8, kParameter1002) means
/// something to the application or to the target only.
namespace param {

inline constexpr ParameterNumbers kItem21{1, 21};
inline constexpr ParameterNumbers kTargetFileName{3};  // under which the target wants the binary
inline constexpr ParameterNumbers kTargetDirectory{4}; // where it wants it
inline constexpr ParameterNumbers kFileName{5, 2};     // of the binary, as the host announces it
inline constexpr ParameterNumbers kDirectory{6, 3};    // likewise
inline constexpr ParameterNumbers kFileTime{7, 4};
inline constexpr ParameterNumbers kParameter1007{8, 1007};
inline constexpr ParameterNumbers kDownloadOption{10};
inline constexpr ParameterNumbers kState{11, 0};
inline constexpr ParameterNumbers kDownloadTime{12, 5};
inline constexpr ParameterNumbers kParameter1001{13, 1001};
inline constexpr ParameterNumbers kParameter1003{14, 1003};
inline constexpr ParameterNumbers kParameter1002{15, 1002};
inline constexpr ParameterNumbers kParameter1004{16, 1004};
inline constexpr ParameterNumbers kParameter1005{17, 1005};
inline constexpr ParameterNumbers kItem8{18, 8};
inline constexpr ParameterNumbers kItem9{19, 9};
inline constexpr ParameterNumbers kGroupSize{20, 10};
inline constexpr ParameterNumbers kItem11{21, 11};
inline constexpr ParameterNumbers kParameter1008{23, 1008};
inline constexpr ParameterNumbers kParameter1009{24, 1009};
inline constexpr ParameterNumbers kItem12{25, 12};
inline constexpr ParameterNumbers kItem13{26, 13};
inline constexpr ParameterNumbers kItem14{27, 14};
inline constexpr ParameterNumbers kParameter1010{28, 1010};
inline constexpr ParameterNumbers kGroupSerialNumbers{29, 15};
inline constexpr ParameterNumbers kGroupAddresses{30, 16};
inline constexpr ParameterNumbers kInitCalls{31, 2050}; // initialisation calls that a process wants
inline constexpr ParameterNumbers kItem17{32, 17};
inline constexpr ParameterNumbers kDownloadTimeText{33, 6};
inline constexpr ParameterNumbers kFileTimeText{34, 7};
inline constexpr ParameterNumbers kItem128{35, 128};
inline constexpr ParameterNumbers kItem18{36, 18};
inline constexpr ParameterNumbers kSerialNumber{37, 2051};
inline constexpr ParameterNumbers kItem19{38, 19};
inline constexpr ParameterNumbers kItem20{39, 20};
inline constexpr ParameterNumbers kCommandTimeout{40, 2055};
inline constexpr ParameterNumbers kInformationText{41, 22};
inline constexpr ParameterNumbers kParameter1011{42, 1011};
inline constexpr ParameterNumbers kHostTime{43, 3075}; // date text and zone text
inline constexpr ParameterNumbers kFlashValues{64, 1200};
inline constexpr ParameterNumbers kParameter3074{131, 3074};
inline constexpr ParameterNumbers kParameter3073{134, 3073};
inline constexpr ParameterNumbers kParameter3072{1024, 3072};
inline constexpr ParameterNumbers kItem2049{1025, 2049};
inline constexpr ParameterNumbers kStartTime{1026, 2052}; // of the target
inline constexpr ParameterNumbers kPresentTime{1027, 2053};
inline constexpr ParameterNumbers kItem2054{1028, 2054};

} // namespace param

} // namespace applman
