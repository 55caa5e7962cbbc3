#include "ConfigValue.h"
#include "Failure.h"
#include "Run.h"

#include <fmt/format.h>
#include <omp.h>

#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>

#include <unistd.h>

namespace {

constexpr const char* banner =
    "Ostrella preview solver: a stand-in for SU2_CFD, its figures are indicative.\n";

int fail(const std::string& reason) {
    fmt::print("\nError: {}\n\n{:-^73}\n", reason, " Error Exit ");
    std::fflush(stdout);
    return 1;
}

/// Threads that wait must sleep: spinning ones ruin each other's time slices on a busy machine, a
/// hundredfold. The OpenMP library reads this setting when it is loaded, so the program starts
/// itself anew with it; where that fails it runs on as it is.
void sleepWhileWaiting(char** argv) {
    if (std::getenv("OMP_WAIT_POLICY"))
        return;
    setenv("OMP_WAIT_POLICY", "passive", 1);
    execv("/proc/self/exe", argv);
}

} // namespace

int main(int argc, char** argv) {
    sleepWhileWaiting(argv);
    std::fputs(banner, stdout);
    std::fflush(stdout);
    std::string configuration;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "-h" || word == "--help") {
            fmt::print("Usage: ostrella-preview-solver [-t THREADS] CONFIGURATION\n");
            return 0;
        }
        if (word == "-t" || word == "--threads") {
            double threads = 0;
            if (++i == argc || !ostrella::preview::readNumber(argv[i], threads) || threads < 1 ||
                threads > 4096)
                return fail("-t needs a number of threads.");
            omp_set_num_threads(static_cast<int>(threads));
        } else if (word.size() > 1 && word.front() == '-') {
            return fail(fmt::format("There is no option {}.", word));
        } else if (!configuration.empty()) {
            return fail("One configuration file is expected.");
        } else {
            configuration = word;
        }
    }
    if (configuration.empty())
        return fail("Name a configuration file: ostrella-preview-solver run.cfg");
    try {
        return ostrella::preview::run(configuration);
    } catch (const ostrella::preview::Failure& failure) {
        return fail(failure.what());
    } catch (const std::bad_alloc&) {
        return fail("There is not enough memory for this mesh.");
    } catch (const std::exception& error) {
        return fail(error.what());
    }
}
