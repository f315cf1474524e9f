// Reports broken invariants in the parser. A report names the expression, the source unit and the
// line of the check. It goes to one replaceable handler and never ends the process: the code after
// it continues as its contract says.
#pragma once

namespace ZRKMetaData {

/// Receives a report. The texts are string literals. The handler is called on any thread that uses
/// the parser and must not throw.
using AssertionHandler = void (*)(const char* expression, const char* unit, int line);

/// Makes `handler` the receiver of every later report in this binary and returns the previous one.
/// Null restores the default, which writes one line to standard error. Safe from any thread.
AssertionHandler setAssertionHandler(AssertionHandler handler);

/// Passes a report to the current handler.
void reportAssertion(const char* expression, const char* unit, int line);

}  // namespace ZRKMetaData
