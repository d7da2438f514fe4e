#pragma once

#include <string>

namespace palm {

/// Sends the library's log records to standard error too.
void setVerbose(bool verbose);

/// The newest non-empty error record of the library, for the message about a failed call.
std::string lastError();

}  // namespace palm
