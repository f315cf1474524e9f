// Reports of broken invariants in the parser. A report names the expression, the source unit and
// the line of the check, goes to one replaceable handler, and never ends the process: the code
// after it goes on as its own contract says.
#pragma once

namespace ZRKMetaData {

/// Receives a report. The texts are literals and outlive the call. It may be called from any
/// thread that uses the parser and must not throw.
using AssertionHandler = void (*)(const char* expression, const char* unit, int line);

/// Makes `handler` the receiver of every later report in this binary and returns the one before.
/// A null `handler` puts the default back, which writes one line to standard error. Safe from any
/// thread.
AssertionHandler setAssertionHandler(AssertionHandler handler);

/// Hands a report to the handler in force.
void reportAssertion(const char* expression, const char* unit, int line);

}  // namespace ZRKMetaData
