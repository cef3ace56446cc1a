#pragma once

/// Marks what the library exports; everything else stays inside it.
#define ORVEX_API __attribute__((visibility("default")))

/// Marks an entry function of an extension module, which the host finds by its plain name.
#define ORVEX_MODULE_API extern "C" __attribute__((visibility("default")))
