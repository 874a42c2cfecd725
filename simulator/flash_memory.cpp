#include "simulator/flash_memory.h"

#include "protocol/parameter_numbers.h"
#include "simulator/target_messages.h"

namespace simulated_target {
namespace {

using applman::TApplManValue;
using applman::Text;
namespace param = applman::param;

Failure unknownFlashApplication(std::uint32_t id) { return message(Code::unknownFlashApplication, {id}); }

} // namespace

FlashMemory::FlashMemory(const std::map<std::uint32_t, std::string>& applications) {
    for (const auto& [id, name] : applications) {
        applications_[id].name = name;
    }
}

std::vector<std::uint32_t> FlashMemory::ids() const {
    std::vector<std::uint32_t> all;
    for (const auto& [id, application] : applications_) {
        all.push_back(id);
    }
    return all;
}

const std::string* FlashMemory::nameOf(std::int64_t id) const {
    if (id < 0 || id > 0xFFFFFFFF) { return nullptr; }
    const auto found = applications_.find(static_cast<std::uint32_t>(id));
    return found == applications_.end() ? nullptr : &found->second.name;
}

Failure FlashMemory::read(std::uint32_t id, std::uint32_t number, TApplManValue& value) const {
    const auto found = applications_.find(id);
    if (found == applications_.end()) { return unknownFlashApplication(id); }
    const FlashApplication& application = found->second;
    switch (number) {
    case param::kFileName.target:
        value = Text{application.name};
        return {};
    case param::kInformationText.target:
        value = Text{"Simulated flash application " + application.name};
        return {};
    case param::kFlashValues.target:
        value = application.values;
        return {};
    default:
        return message(Code::unknownParameter, {number, id});
    }
}

Failure FlashMemory::write(std::uint32_t id, std::uint32_t number, const TApplManValue& value) {
    const auto found = applications_.find(id);
    if (found == applications_.end()) { return unknownFlashApplication(id); }
    if (number != param::kFlashValues.target) { return message(Code::unknownParameter, {number, id}); }
    const auto* const values = std::get_if<applman::kTagQuads>(&value);
    if (values == nullptr) {
        return message(Code::wrongValueType,
                       {number, std::uint32_t{applman::kTagQuads}, static_cast<std::uint32_t>(value.index())});
    }
    found->second.values = *values;
    return {};
}

Failure FlashMemory::clear(std::int64_t id) {
    if (nameOf(id) == nullptr) { return unknownFlashApplication(static_cast<std::uint32_t>(id)); }
    applications_.erase(static_cast<std::uint32_t>(id));
    return {};
}

} // namespace simulated_target
