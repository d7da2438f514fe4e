#pragma once

namespace KZ {

/// Hands one log record to the platform: to `__android_log_print` when the platform or the
/// program defines it, otherwise as one line to standard error. `priority` is 4 (information) or
/// 6 (error).
void platformLogPrint(int priority, const char* tag, const char* text);

}  // namespace KZ
