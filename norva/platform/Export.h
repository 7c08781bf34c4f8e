/// Marks what the shared library shows to its hosts.
#pragma once

#if defined(NORVA_STATIC)
#define NORVA_EXPORT
#else
#define NORVA_EXPORT __attribute__((visibility("default")))
#endif
