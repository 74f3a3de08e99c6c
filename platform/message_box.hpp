// The one way to tell a user of a failure that must be seen.
#pragma once

namespace zum {

/// [main] Shows `text` under the caption. Without a window system it goes to standard error.
void showMessage(const char* caption, const char* text);
/// [main] The same with OK and Cancel: true for OK. Without a window system nobody can say so.
bool askMessage(const char* caption, const char* text);

}  // namespace zum
