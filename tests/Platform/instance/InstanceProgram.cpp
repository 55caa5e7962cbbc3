#include "Platform/SingleInstance.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdio>
#include <cstdlib>
#include <string>

#include <unistd.h>

using ostrella::HandOver;
using ostrella::SingleInstance;

namespace {

void say(const char* what, const HandOver& handOver) {
    std::string line = what;
    line += '|' + handOver.activationToken;
    for (const auto& document : handOver.documents) {
        line += '|' + document.string();
    }
    std::puts(line.c_str());
    std::fflush(stdout);
}

} // namespace

/// A start of an application: instance-program SOCKET PATIENCE_IN_MS [DOCUMENT]...
/// Says its role, and as the first what it is handed, until its input ends.
int main(int argc, char** argv) {
    constexpr unsigned lifetime = 120;
    alarm(lifetime);
    const QCoreApplication application(argc, argv);
    const HandOver own = HandOver::ofThisStart({argv + 3, argv + argc});
    SingleInstance instance(argv[1]);
    QObject::connect(&instance, &SingleInstance::handedOver,
        [](const HandOver& handOver) { say("handed", handOver); });
    switch (instance.start(own, std::chrono::milliseconds(std::atoi(argv[2])))) {
    case SingleInstance::Role::second:
        say("second", own);
        return EXIT_SUCCESS;
    case SingleInstance::Role::alone:
        say("alone", own);
        return EXIT_SUCCESS;
    case SingleInstance::Role::first:
        say("first", own);
        break;
    }
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &QCoreApplication::quit);
    return QCoreApplication::exec();
}
