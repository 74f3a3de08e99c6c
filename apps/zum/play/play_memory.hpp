// What one run of `zum play` leaves behind for the next one, in the user's settings.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "apps/zum/play/play_session.hpp"
#include "platform/native_window.hpp"

namespace zum {

// ---- [main] What cannot be read or written is left out: nobody misses a session for it.
/// Fills in what the user did not ask for: the device, a loop that is still there, sound and tempo.
void recall(PlaySession::Options& options);
std::optional<ScreenPlace> recallPlace();
void remember(PlaySession& session, const std::optional<ScreenPlace>& place);

}  // namespace zum
