// Marks what the recording reader library hands to other binaries. Whoever builds the library
// defines VOXA_BUILD.
#pragma once

#if !defined(_WIN32)
#define VOXA_API __attribute__((visibility("default")))
#elif defined(VOXA_BUILD)
#define VOXA_API __declspec(dllexport)
#else
#define VOXA_API __declspec(dllimport)
#endif
