// The records of the application-manager RPC program. Each has one routine that encodes and decodes it, field by field in
// wire order. Records own their parts: one that is {} is cleared, and thereby freed.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/xdr.h"

namespace applman {

using Text = std::optional<std::string>; // absent in a cleared record; never absent once decoded

/// The index of the alternative is the tag on the wire.
using TApplManValue = std::variant<std::uint32_t,              // 0
                                   double,                     // 1
                                   Text,                       // 2
                                   std::vector<std::uint32_t>, // 3
                                   std::int64_t,               // 4
                                   std::vector<Text>,          // 5
                                   std::vector<std::uint8_t>,  // 6
                                   std::vector<std::int64_t>>; // 7
enum ValueTag : std::size_t {
    kTagWord = 0,
    kTagDouble = 1,
    kTagText = 2,
    kTagWords = 3,
    kTagQuad = 4,
    kTagTexts = 5,
    kTagBytes = 6,
    kTagQuads = 7,
};

// --- requests

/// Procedure 17: the access ID alone.
struct TApplManOpenGroupRequest {
    std::uint32_t accessId{};
};

/// Procedures 3 to 9, 13, 16: mode, access ID, application. Procedure 11 has the target state and procedure 25
/// (access ID, flash application, target parameter) other words in the same places.
struct TApplManRequest {
    std::uint32_t first{};
    std::uint32_t second{};
    std::uint32_t third{};
};

/// Procedures 22, 23, 29: application. Procedure 19: kind. Procedure 24: 1.
struct TApplManPairRequest {
    std::uint32_t accessId{};
    std::uint32_t second{};
};

struct TApplManGetParamRequest {
    std::uint32_t mode{};
    std::uint32_t accessId{};
    std::uint32_t applId{};
    std::uint32_t targetParamId{};
};

struct TApplManSetParamRequest {
    std::uint32_t mode{};
    std::uint32_t accessId{};
    std::uint32_t applId{};
    std::uint32_t targetParamId{};
    TApplManValue value{};
};

struct TApplManSetFlashParamRequest {
    std::uint32_t accessId{};
    std::uint32_t flashApplId{};
    std::uint32_t targetParamId{};
    TApplManValue value{};
};

struct TApplManRemoveFileRequest {
    std::uint32_t mode{};
    std::uint32_t accessId{};
    std::uint32_t applId{};
    std::uint32_t fileType{};
    std::string fileName{};
};

struct TApplManAddFileRequest {
    std::uint32_t mode{};
    std::uint32_t accessId{};
    std::uint32_t applId{};
    std::uint32_t fileType{};
    std::string sourcePath{};
    std::string targetPath{};
    std::string targetName{};
    std::uint32_t fileFlags{};
};

struct TApplManAddFileRecord {
    std::uint32_t applId{};
    std::uint32_t fileType{};
    std::string sourcePath{};
    std::string targetPath{};
    std::string targetName{};
    std::uint32_t fileFlags{};
    std::string additionalText{};
    std::array<std::uint32_t, 8> reserved{};
    std::string finalText{};
};

struct TApplManAddFileRequest2 {
    std::uint32_t accessId{};
    std::optional<TApplManAddFileRecord> file{};
};

struct TApplManGroupPart {
    std::array<std::uint32_t, 5> words{};
    std::array<std::uint32_t, 7> reserved{};
    std::vector<std::uint32_t> list{};
};

struct TApplManRegisterRequest {
    std::uint32_t accessId{};
    std::uint32_t applNo{};
    TApplManGroupPart group{};
};

struct TApplManFlashCommand {
    std::uint32_t command{};
    std::int64_t flashApplId{};
    std::array<std::uint32_t, 16> reserved{};
    std::vector<char> data{};
};

struct TApplManFlashRequest {
    std::uint32_t accessId{};
    TApplManFlashCommand command{};
};

// --- replies; every one carries the target's serialised error list

using ErrorListBytes = std::vector<std::uint8_t>;

struct TApplManResult {
    std::int32_t result{};
    ErrorListBytes errorList{};
};

struct TApplManValueResult {
    std::int32_t result{};
    TApplManValue value{};
    ErrorListBytes errorList{};
};

struct TApplManRegisterResult {
    std::int32_t result{};
    std::int32_t applId{};
    Text firstText{};
    Text secondText{};
    ErrorListBytes errorList{};
};

struct TApplManFileEntry {
    Text entryText1{};
    Text entryText2{};
    Text entryText3{};
    std::uint32_t entryWord{};
};

struct TApplManFileListResult {
    std::int32_t result{};
    std::int32_t errorCode{};
    std::vector<TApplManFileEntry> files{};
    ErrorListBytes errorList{};
};

struct TApplManAddFileResult {
    std::int32_t result{};
    Text targetPath{};
    ErrorListBytes errorList{};
    Text targetName{};
};

struct TApplManGroupResult {
    std::uint32_t first{};
    std::int32_t result{};
    ErrorListBytes errorList{};
    std::uint32_t targetGroupId1{};
    std::uint32_t targetGroupId2{};
};

struct TApplManCoreIdResult {
    std::uint32_t first{};
    std::int32_t result{};
    ErrorListBytes errorList{};
    std::vector<std::uint32_t> coreIds{};
};

struct TApplManFlashListResult {
    std::uint32_t first{};
    std::int32_t result{};
    ErrorListBytes errorList{};
    std::vector<std::uint32_t> flashApplIds{};
    std::array<std::uint32_t, 16> words{};
    std::vector<std::uint32_t> secondList{};
};

bool xdr_record(Xdr& x, TApplManValue& r);
bool xdr_record(Xdr& x, TApplManOpenGroupRequest& r);
bool xdr_record(Xdr& x, TApplManRequest& r);
bool xdr_record(Xdr& x, TApplManPairRequest& r);
bool xdr_record(Xdr& x, TApplManGetParamRequest& r);
bool xdr_record(Xdr& x, TApplManSetParamRequest& r);
bool xdr_record(Xdr& x, TApplManSetFlashParamRequest& r);
bool xdr_record(Xdr& x, TApplManRemoveFileRequest& r);
bool xdr_record(Xdr& x, TApplManAddFileRequest& r);
bool xdr_record(Xdr& x, TApplManAddFileRecord& r);
bool xdr_record(Xdr& x, TApplManAddFileRequest2& r);
bool xdr_record(Xdr& x, TApplManGroupPart& r);
bool xdr_record(Xdr& x, TApplManRegisterRequest& r);
bool xdr_record(Xdr& x, TApplManFlashCommand& r);
bool xdr_record(Xdr& x, TApplManFlashRequest& r);
bool xdr_record(Xdr& x, TApplManResult& r);
bool xdr_record(Xdr& x, TApplManValueResult& r);
bool xdr_record(Xdr& x, TApplManRegisterResult& r);
bool xdr_record(Xdr& x, TApplManFileEntry& r);
bool xdr_record(Xdr& x, TApplManFileListResult& r);
bool xdr_record(Xdr& x, TApplManAddFileResult& r);
bool xdr_record(Xdr& x, TApplManGroupResult& r);
bool xdr_record(Xdr& x, TApplManCoreIdResult& r);
bool xdr_record(Xdr& x, TApplManFlashListResult& r);

} // namespace applman
