// The order of the calls in a routine is the order on the wire. A routine ends at the first primitive that fails and leaves
// the record as far as it came. It may throw, for a lack of memory: recordRoutine catches that. Counts from the wire are
// bounded by xdr_array, which is told the least size of an element where it is above 4 bytes.
#include "protocol/records.h"

#include <utility>

namespace applman {
namespace {

constexpr auto kWord = [](Xdr& x, std::uint32_t& value) { return xdr_u_int(x, value); };
constexpr auto kQuad = [](Xdr& x, std::int64_t& value) { return xdr_quad_t(x, value); };
constexpr auto kChar = [](Xdr& x, char& value) { return xdr_char(x, value); };
constexpr auto kText = [](Xdr& x, Text& value) { return xdr_string(x, value); };
constexpr auto kRecord = [](Xdr& x, auto& record) { return xdr_record(x, record); };

bool xdr_arm(Xdr& x, std::uint32_t& value) { return xdr_u_int(x, value); }
bool xdr_arm(Xdr& x, double& value) { return xdr_double(x, value); }
bool xdr_arm(Xdr& x, Text& value) { return xdr_string(x, value); }
bool xdr_arm(Xdr& x, std::vector<std::uint32_t>& value) { return xdr_array(x, value); }
bool xdr_arm(Xdr& x, std::int64_t& value) { return xdr_quad_t(x, value); }
bool xdr_arm(Xdr& x, std::vector<Text>& value) { return xdr_array(x, value, kText); }
bool xdr_arm(Xdr& x, std::vector<std::uint8_t>& value) { return xdr_bytes(x, value); }
bool xdr_arm(Xdr& x, std::vector<std::int64_t>& value) { return xdr_array(x, value, kQuad, 8); }

/// Makes the value hold the arm of `tag`; false for a tag that no arm has.
template <std::size_t... I>
bool emplaceArm(TApplManValue& value, std::uint32_t tag, std::index_sequence<I...>) {
    return ((I == tag ? (value.emplace<I>(), true) : false) || ...);
}

} // namespace

bool xdr_record(Xdr& x, TApplManValue& r) {
    auto tag = static_cast<std::int32_t>(r.index());
    if (!xdr_enum(x, tag)) { return false; }
    constexpr auto kArms = std::make_index_sequence<std::variant_size_v<TApplManValue>>{};
    if (x.decoding() && !emplaceArm(r, static_cast<std::uint32_t>(tag), kArms)) { return false; }
    return std::visit([&](auto& arm) { return xdr_arm(x, arm); }, r);
}

bool xdr_record(Xdr& x, TApplManOpenGroupRequest& r) { return xdr_u_int(x, r.accessId); }

bool xdr_record(Xdr& x, TApplManRequest& r) { return xdr_words(x, r.first, r.second, r.third); }

bool xdr_record(Xdr& x, TApplManPairRequest& r) { return xdr_words(x, r.accessId, r.second); }

bool xdr_record(Xdr& x, TApplManGetParamRequest& r) {
    return xdr_words(x, r.mode, r.accessId, r.applId, r.targetParamId);
}

bool xdr_record(Xdr& x, TApplManSetParamRequest& r) {
    return xdr_words(x, r.mode, r.accessId, r.applId, r.targetParamId) && xdr_record(x, r.value);
}

bool xdr_record(Xdr& x, TApplManSetFlashParamRequest& r) {
    return xdr_words(x, r.accessId, r.flashApplId, r.targetParamId) && xdr_record(x, r.value);
}

bool xdr_record(Xdr& x, TApplManRemoveFileRequest& r) {
    return xdr_words(x, r.mode, r.accessId, r.applId, r.fileType) && xdr_string(x, r.fileName);
}

bool xdr_record(Xdr& x, TApplManAddFileRequest& r) {
    return xdr_words(x, r.mode, r.accessId, r.applId, r.fileType) && xdr_string(x, r.sourcePath) &&
           xdr_string(x, r.targetPath) && xdr_string(x, r.targetName) && xdr_u_int(x, r.fileFlags);
}

bool xdr_record(Xdr& x, TApplManAddFileRecord& r) {
    return xdr_words(x, r.applId, r.fileType) && xdr_string(x, r.sourcePath) && xdr_string(x, r.targetPath) &&
           xdr_string(x, r.targetName) && xdr_u_int(x, r.fileFlags) && xdr_string(x, r.additionalText) &&
           xdr_vector(x, r.reserved, kWord) && xdr_string(x, r.finalText);
}

bool xdr_record(Xdr& x, TApplManAddFileRequest2& r) {
    return xdr_u_int(x, r.accessId) && xdr_pointer(x, r.file, kRecord);
}

bool xdr_record(Xdr& x, TApplManGroupPart& r) {
    return xdr_vector(x, r.words, kWord) && xdr_vector(x, r.reserved, kWord) && xdr_array(x, r.list);
}

bool xdr_record(Xdr& x, TApplManRegisterRequest& r) {
    return xdr_words(x, r.accessId, r.applNo) && xdr_record(x, r.group);
}

bool xdr_record(Xdr& x, TApplManFlashCommand& r) {
    return xdr_u_int(x, r.command) && xdr_quad_t(x, r.flashApplId) && xdr_vector(x, r.reserved, kWord) &&
           xdr_array(x, r.data, kChar);
}

bool xdr_record(Xdr& x, TApplManFlashRequest& r) { return xdr_u_int(x, r.accessId) && xdr_record(x, r.command); }

bool xdr_record(Xdr& x, TApplManResult& r) { return xdr_int(x, r.result) && xdr_bytes(x, r.errorList); }

bool xdr_record(Xdr& x, TApplManValueResult& r) {
    return xdr_int(x, r.result) && xdr_record(x, r.value) && xdr_bytes(x, r.errorList);
}

bool xdr_record(Xdr& x, TApplManRegisterResult& r) {
    return xdr_int(x, r.result) && xdr_int(x, r.applId) && xdr_string(x, r.firstText) && xdr_string(x, r.secondText) &&
           xdr_bytes(x, r.errorList);
}

bool xdr_record(Xdr& x, TApplManFileEntry& r) {
    return xdr_string(x, r.entryText1) && xdr_string(x, r.entryText2) && xdr_string(x, r.entryText3) &&
           xdr_u_int(x, r.entryWord);
}

bool xdr_record(Xdr& x, TApplManFileListResult& r) {
    return xdr_int(x, r.result) && xdr_int(x, r.errorCode) && xdr_array(x, r.files, kRecord, 16) &&
           xdr_bytes(x, r.errorList);
}

bool xdr_record(Xdr& x, TApplManAddFileResult& r) {
    return xdr_int(x, r.result) && xdr_string(x, r.targetPath) && xdr_bytes(x, r.errorList) &&
           xdr_string(x, r.targetName);
}

bool xdr_record(Xdr& x, TApplManGroupResult& r) {
    return xdr_u_int(x, r.first) && xdr_int(x, r.result) && xdr_bytes(x, r.errorList) &&
           xdr_words(x, r.targetGroupId1, r.targetGroupId2);
}

bool xdr_record(Xdr& x, TApplManCoreIdResult& r) {
    return xdr_u_int(x, r.first) && xdr_int(x, r.result) && xdr_bytes(x, r.errorList) && xdr_array(x, r.coreIds);
}

bool xdr_record(Xdr& x, TApplManFlashListResult& r) {
    return xdr_u_int(x, r.first) && xdr_int(x, r.result) && xdr_bytes(x, r.errorList) && xdr_array(x, r.flashApplIds) &&
           xdr_vector(x, r.words, kWord) && xdr_array(x, r.secondList);
}

} // namespace applman
