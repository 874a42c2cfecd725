#include "file_adding.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "applications.h"
#include "failure.h"

namespace tool {
namespace {

using kvapplman::Application;
using kvapplman::Target;

namespace fs = std::filesystem;

std::uint64_t sizeOf(const fs::path& source) {
    std::error_code ignored;
    if (!fs::is_directory(source, ignored)) {
        return fs::is_regular_file(source, ignored) ? fs::file_size(source, ignored) : 0;
    }
    std::uint64_t all = 0;
    for (const auto& entry : fs::recursive_directory_iterator(source, ignored)) {
        if (entry.is_regular_file(ignored)) { all += entry.file_size(ignored); }
    }
    return all;
}

std::uint32_t typeOf(const FileAdding& what, const fs::path& source) {
    std::error_code ignored;
    const auto usual =
        fs::is_directory(source, ignored) ? KV_APPLMAN_FILE_TYPE_DIRECTORY : KV_APPLMAN_FILE_TYPE_WITH_FALLBACK;
    return what.type.value_or(static_cast<std::uint32_t>(usual));
}

void addFile(WorkerLink& link, const Application& application, const FileAdding& what, const fs::path& source) {
    const std::string name = targetNameOf(what, source);
    const std::uint64_t size = sizeOf(source);
    kvapplman::FileOptions options = what.options;
    options.progress = [&](const kvapplman::Progress& progress) {
        link.checkpoint();
        link.tell({{"event", "progress"},
                   {"name", name},
                   {"fraction", progress.fraction},
                   {"bytes", static_cast<std::uint64_t>(progress.fraction * static_cast<double>(size))},
                   {"totalBytes", size}});
    };
    link.checkpoint();
    link.tell({{"event", "adding"}, {"name", name}});
    application.loadFile(source, typeOf(what, source), options);
    link.tell({{"event", "added"}, {"name", name}});
}

std::vector<std::string> namesOn(const Application& application) {
    std::vector<std::string> names;
    for (const kvapplman::AddedFile& file : application.files()) {
        names.push_back(file.name);
    }
    return names;
}

void addFiles(WorkerLink& link, const FileAdding& what) {
    Target target{what.device.address, what.device.serialNumber};
    target.onMessages([&](const char* function, const kvapplman::Messages& messages) {
        link.tell(eventOf("warning", {ExitCode::done, {}, function, KV_APPLMAN_OK, messages}));
    });
    checkBoot(target, what.common);
    const Application application = applicationOf(target, what.application);
    link.tell({{"event", "application"}, {"id", application.id()}, {"before", namesOn(application)}});
    for (const fs::path& source : what.sources) {
        addFile(link, application, what, source);
    }
}

void removeFiles(WorkerLink& link, const Device& device, std::uint32_t id, const std::vector<std::string>& names) {
    const Target target{device.address, device.serialNumber};
    const Application application = target.application(id);
    for (const kvapplman::AddedFile& file : application.files()) {
        if (std::ranges::find(names, file.name) == names.end()) { continue; }
        application.removeFile(file.name, file.type);
        link.tell({{"event", "removed"}, {"name", file.name}});
    }
    link.tell({{"event", "clean"}});
}

/// What an exception of the library or of the tool says becomes an event.
template <class Work>
Job telling(Work work) {
    return [work = std::move(work)](WorkerLink& link) {
        try {
            work(link);
        } catch (const std::exception& thrown) { link.tell(eventOf("failed", failureOf(thrown))); }
    };
}

} // namespace

std::string targetNameOf(const FileAdding& what, const fs::path& source) {
    if (!what.options.targetName.empty()) { return what.options.targetName; }
    const fs::path name = source.has_filename() ? source.filename() : source.parent_path().filename();
    return kvapplman::toUtf8(name);
}

Job fileAddingJob(FileAdding what) {
    return telling([what = std::move(what)](WorkerLink& link) { addFiles(link, what); });
}

Job fileRemovingJob(Device device, std::uint32_t id, std::vector<std::string> names) {
    return telling([device = std::move(device), id, names = std::move(names)](WorkerLink& link) {
        removeFiles(link, device, id, names);
    });
}

} // namespace tool
