// Loads and unloads the library, which this program is not linked with: bench_loading loading library=PATH times=NUMBER.
// It is linked with the platform, as a host that loads the library at run time is.
#include <dlfcn.h>

#include "KvPlatformHost.h"
#include "harness/measurement.h"
#include "harness/scenario.h"

namespace {

void measureLoading(const bench::Arguments& arguments) {
    KvPlatform_deletePool(KvPlatform_createPool());
    std::vector<double> loading(arguments.count("times"));
    std::vector<double> unloading(loading.size());
    for (std::size_t i = 0; i < loading.size(); ++i) {
        const auto begin = bench::Clock::now();
        void* const library = dlopen(arguments.text("library").c_str(), RTLD_NOW);
        const auto loaded = bench::Clock::now();
        bench::expect(library != nullptr, "it is loaded");
        bench::expect(dlsym(library, "KvApplMan_startAppl") != nullptr, "it is the library");
        const auto before = bench::Clock::now();
        const int status = dlclose(library);
        unloading[i] = bench::Microseconds{bench::Clock::now() - before}.count();
        loading[i] = bench::Microseconds{loaded - begin}.count();
        bench::expect(status == 0, "it is unloaded");
    }
    bench::expect(dlopen(arguments.text("library").c_str(), RTLD_NOW | RTLD_NOLOAD) == nullptr,
                  "nothing is left of it");
    bench::report("load_us", bench::quantile(loading, 0.5));
    bench::report("unload_us", bench::quantile(unloading, 0.5));
}

constexpr bench::Scenario kScenarios[] = {{"loading", measureLoading}};

} // namespace

int main(int count, char** arguments) { return bench::runScenario(kScenarios, count, arguments); }
