// Marks the classes that the recording reader library exports. VOXA_BUILD is defined while the
// library is compiled.
#pragma once

#if !defined(_WIN32)
#define VOXA_API __attribute__((visibility("default")))
#elif defined(VOXA_BUILD)
#define VOXA_API __declspec(dllexport)
#else
#define VOXA_API __declspec(dllimport)
#endif
