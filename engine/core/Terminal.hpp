#pragma once

namespace tarvik {

// Whether standard error is a terminal that understands colour sequences; makes it understand them where it
// must be asked to.
bool prepareColouredTerminal();

} // namespace tarvik
