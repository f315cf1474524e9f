// Marks what the host library exports. The build of the library defines KESTOVA_BUILD.
#pragma once

#if !defined(_WIN32)
#define KESTOVA_API __attribute__((visibility("default")))
#elif defined(KESTOVA_BUILD)
#define KESTOVA_API __declspec(dllexport)
#else
#define KESTOVA_API __declspec(dllimport)
#endif
