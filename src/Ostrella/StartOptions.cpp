#include "Ostrella/StartOptions.h"

#include "Platform/AppBundle.h"
#include "Platform/DisplayProbe.h"

#include <QUrl>

namespace ostrella {

namespace {

constexpr const char* help = R"(Usage: ostrella [MODEL.stl…]

Opens Ostrella's window, or brings it to the front where it is open already,
and loads the body. Lengths are metres.

  --help
      This text.
  --has-display
      Opens nothing; succeeds where there is a display to open a window on.
  --version
      The version.
  --
      What follows are names of files, also if they begin with a dash.

ostrella-batch does runs without a window; see ostrella-batch --help.
)";

/// A file that starters on the Mac name themselves: the process, not a document.
bool isProcessNumber(const std::string& argument) {
    return argument.starts_with("-psn_");
}

std::filesystem::path fileOf(const std::string& argument) {
    if (argument.starts_with("file:")) {
        const QUrl address = QUrl::fromEncoded(QByteArray::fromStdString(argument));
        if (address.isLocalFile()) {
            return address.toLocalFile().toStdString();
        }
    }
    return argument;
}

} // namespace

std::variant<StartOptions, StartReply> parseStartOptions(
    const std::vector<std::string>& arguments) {
    StartOptions options;
    bool takesOptions = true;
    for (const std::string& argument : arguments) {
        const bool isOption = takesOptions && argument.size() > 1 && argument.front() == '-';
        if (!isOption) {
            options.files.push_back(fileOf(argument));
        } else if (argument == "--") {
            takesOptions = false;
        } else if (argument == "--has-display") {
            return StartReply{"", !DisplayProbe::canShowWindows()};
        } else if (argument == "--help" || argument == "-h") {
            return StartReply{help};
        } else if (argument == "--version") {
            return StartReply{"Ostrella " + AppBundle::version() + "\n"};
        } else if (!isProcessNumber(argument)) {
            return StartReply{"ostrella: there is no option " + argument +
                                  "; see ostrella --help. Runs without a window are "
                                  "ostrella-batch's.\n",
                true};
        }
    }
    return options;
}

} // namespace ostrella
