#pragma once

#include <chrono>
#include <filesystem>

/// A new version is started by the one before, which waits for a sign of life of it: a byte through
/// a socket whose descriptor the new one finds in its environment.
namespace ostrella::UpdateRestart {

inline constexpr const char* variable = "OSTRELLA_UPDATE_WATCH";

/// Starts a program that lives on without this process, and waits until it has confirmed. False if
/// it cannot be started, ends before, or lets the patience run out; it has ended then.
bool startAndWatch(const std::filesystem::path& program, std::chrono::milliseconds patience);

/// Starts a program that lives on without this process. False if the system refuses.
bool start(const std::filesystem::path& program);

/// Early in main(): takes the descriptor out of the environment, so that no child finds it.
void adoptWatch();
/// Whether somebody waits for this process to confirm.
bool isWatched();
/// Tells whoever waits that this process has come up; nothing otherwise, and the second time.
void confirm();

} // namespace ostrella::UpdateRestart
