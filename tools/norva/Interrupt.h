/// Ctrl-C and other requests to end, kept until somebody asks for them.
#pragma once

namespace norva::tool {

/// From now on SIGINT, SIGTERM and SIGHUP are only noted, and a reader that goes away (SIGPIPE) or
/// a file size limit (SIGXFSZ) is an error of the write instead of the end of the process. System
/// calls that wait are interrupted.
void CatchSignals();

/// Whether a request to end has come.
bool Interrupted();

}  // namespace norva::tool
