#include "simulator/reply_layout.h"

#include <string>

#include "file_transfer/file_transfer_protocol.h"
#include "platform/xdr.h"
#include "protocol/procedure_numbers.h"
#include "protocol/records.h"
#include "simulator/replies.h"

namespace simulated_target {
namespace {

using namespace applman;

/// Fields in wire order: r result, w word, t text, e error list, v value, a array of words, f array of files,
/// x 16 words.
struct LayoutRow {
    std::uint32_t procedure;
    const char* fields;
};

constexpr const char* kPlainResult = "re";
constexpr LayoutRow kOtherLayouts[] = {
    {kGetParam, "rve"},       {kGetApplications, "rve"},
    {kAddFile2, "rtet"},      {kAddFile, "rtet"},
    {kGetFileList, "rwfe"},   {kOpenGroup, "wreww"},
    {kRegisterAppl, "rwtte"}, {kGetCoreIds, "wrea"},
    {kGetFlashParam, "rve"},  {kGetFlashApplications, "wreaxa"},
};

const char* layoutOf(std::uint32_t program, std::uint32_t procedure) {
    if (program != kApplManProgram) { return program == file_transfer::kProgram ? "r" : ""; }
    for (const LayoutRow& row : kOtherLayouts) {
        if (row.procedure == procedure) { return row.fields; }
    }
    return kPlainResult;
}

class FieldFinder {
public:
    FieldFinder(kvrpc::ByteSpan results, ReplyField wanted)
        : xdr_(Xdr::decoder(results)), size_(results.size()), wanted_(wanted) {}

    std::optional<std::size_t> find(const char* fields) {
        while (*fields != '\0' && !found_ && pass(*fields)) {
            ++fields;
        }
        return found_;
    }

private:
    void note(ReplyField field) {
        if (field == wanted_ && !found_ && xdr_.left() >= 4) { found_ = size_ - xdr_.left(); }
    }
    bool words(int count) {
        std::uint32_t word = 0;
        while (count > 0 && xdr_u_int(xdr_, word)) {
            --count;
        }
        return count == 0;
    }
    bool text() {
        note(ReplyField::text);
        std::string text;
        return xdr_string(xdr_, text);
    }
    bool bytes() {
        note(ReplyField::bytes);
        std::vector<std::uint8_t> bytes;
        return xdr_bytes(xdr_, bytes);
    }
    template <class Element>
    bool array(Element element) {
        note(ReplyField::array);
        std::uint32_t count = 0;
        if (!xdr_u_int(xdr_, count)) { return false; }
        while (count > 0 && element()) {
            --count;
        }
        return count == 0;
    }
    bool value() {
        note(ReplyField::tag);
        std::uint32_t tag = 0;
        if (!xdr_u_int(xdr_, tag)) { return false; }
        switch (tag) {
        case kTagWord:
            return words(1);
        case kTagText:
            return text();
        case kTagWords:
            return array([this] { return words(1); });
        case kTagTexts:
            return array([this] { return text(); });
        case kTagBytes:
            return bytes();
        case kTagQuads:
            return array([this] { return words(2); });
        default:
            return words(2);
        }
    }
    bool pass(char field) {
        switch (field) {
        case 't':
            return text();
        case 'e':
            note(ReplyField::errorList);
            return bytes();
        case 'v':
            return value();
        case 'a':
            return array([this] { return words(1); });
        case 'f':
            return array([this] { return text() && text() && text() && words(1); });
        case 'x':
            return words(16);
        case 'r':
            note(ReplyField::result);
            return words(1);
        default:
            return words(1);
        }
    }

    Xdr xdr_;
    const std::size_t size_;
    const ReplyField wanted_;
    std::optional<std::size_t> found_{};
};

} // namespace

std::optional<std::size_t> findField(std::uint32_t program, std::uint32_t procedure, kvrpc::ByteSpan results,
                                     ReplyField wanted) {
    return FieldFinder{results, wanted}.find(layoutOf(program, procedure));
}

std::vector<std::uint8_t> refusalResults(std::uint32_t program, std::uint32_t procedure,
                                         std::vector<std::uint8_t> errorList) {
    std::vector<std::uint8_t> results;
    Xdr xdr = Xdr::encoder(results);
    for (const char* field = layoutOf(program, procedure); *field != '\0'; ++field) {
        std::int32_t word = *field == 'r' ? kRefused : 0;
        if (*field == 'e') {
            xdr_bytes(xdr, errorList);
            continue;
        }
        const int count = *field == 'x' ? 16 : *field == 'v' ? 2 : 1; // of words; texts and arrays are empty
        for (int i = 0; i < count; ++i) {
            xdr_int(xdr, word);
        }
    }
    return results;
}

} // namespace simulated_target
