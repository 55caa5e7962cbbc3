#pragma once

#include "Batch/BatchOptions.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrella {

/// One option of the command line, declared once for its reading and for the help.
struct BatchOption {
    /// Without the dashes.
    std::string name;
    /// What stands for its value in the help; empty for a switch.
    std::string value;
    std::string help;
    /// Takes the value into the options. Throws UsageError.
    std::function<void(const std::string& word, BatchOptions& options)> apply;
};

/// Options under one heading of the help.
struct BatchOptionGroup {
    std::string_view title;
    std::vector<BatchOption> options;
};

/// All options in the order of the help.
std::vector<BatchOptionGroup> batchOptionGroups();

} // namespace ostrella
