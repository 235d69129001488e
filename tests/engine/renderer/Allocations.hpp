#pragma once

namespace tarvik::testing {

// Counts what the program and its libraries allocate with operator new between the two calls.
void startCountingAllocations();
int stopCountingAllocations();

} // namespace tarvik::testing
