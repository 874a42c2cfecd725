// flash list, info, set, load, clear
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "command.h"
#include "each_device.h"
#include "items.h"
#include "numbers.h"

namespace tool {
namespace {

using kvapplman::FlashApplication;
using kvapplman::Item;
using kvapplman::Target;

struct Wishes {
    std::string id{};
    std::vector<std::string> words{};
};

std::shared_ptr<Wishes> addFlashApplication(CLI::App& app) {
    auto wishes = std::make_shared<Wishes>();
    app.add_option("ID", wishes->id, "its ID in flash memory")->type_name("")->required();
    return wishes;
}

using AskFlash = std::function<Told(const FlashApplication& application)>;

ExitCode askFlash(Context& context, const std::string& text, const AskFlash& ask) {
    const auto id = wordFrom(text);
    if (!id) { throw Failed(ExitCode::usage, "\"" + text + "\" is no ID. kvapplman flash list shows them."); }
    return askEachDevice(context, [&](const Target& target) {
        Told told = ask(target.flashApplication(*id));
        told.fields["id"] = *id;
        return told;
    });
}

std::string doneText(const FlashApplication& application, const char* done) {
    return "flash application " + std::to_string(application.id()) + " " + done + "\n";
}

Told listFlash(const Target& target) {
    Json list = Json::array();
    std::vector<std::vector<std::string>> table{{"ID", "NAME", "INFORMATION"}};
    for (const std::uint32_t id : target.flashApplicationIds()) {
        const FlashApplication application = target.flashApplication(id);
        const std::string name = application.info<Item::fileName>();
        const std::string information = application.info<Item::informationText>();
        list.push_back({{"id", id}, {"name", name}, {"information", information}});
        table.push_back({std::to_string(id), name, information});
    }
    if (list.empty()) {
        return {{{"applications", list}}, "no application in flash memory\n", "KvApplMan_getFlashApplications"};
    }
    return {{{"applications", list}}, tableOf(table)};
}

} // namespace

Action bindFlashList(CLI::App&) {
    return [](Context& context) { return askEachDevice(context, listFlash); };
}

Action bindFlashInfo(CLI::App& app) {
    const auto wishes = addFlashApplication(app);
    app.add_option("ITEM", wishes->words, "names or numbers of items; without any, all that there are")->type_name("");
    return [wishes](Context& context) {
        return askFlash(context, wishes->id, [&](const FlashApplication& application) {
            return toldOf(readItems(application, wishes->words));
        });
    };
}

Action bindFlashSet(CLI::App& app) {
    const auto wishes = addFlashApplication(app);
    app.add_option("VALUE", wishes->words, "its values, whole numbers of 64 bits")->type_name("")->required();
    return [wishes](Context& context) {
        const kvapplman::Value values = valueFrom(kvapplman::Kind::quads, wishes->words);
        return askFlash(context, wishes->id, [&](const FlashApplication& application) {
            application.setValues(std::get<std::vector<std::int64_t>>(values));
            return Told{{{"values", jsonOf(values)}}, doneText(application, "has its values")};
        });
    };
}

Action bindFlashLoad(CLI::App& app) {
    const auto wishes = addFlashApplication(app);
    return [wishes](Context& context) {
        return askFlash(context, wishes->id, [](const FlashApplication& application) {
            application.load();
            return Told{Json::object(), doneText(application, "is loaded")};
        });
    };
}

Action bindFlashClear(CLI::App& app) {
    const auto wishes = addFlashApplication(app);
    return [wishes](Context& context) {
        return askFlash(context, wishes->id, [](const FlashApplication& application) {
            application.clear();
            return Told{Json::object(), doneText(application, "is cleared")};
        });
    };
}

} // namespace tool
